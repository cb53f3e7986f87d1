#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/connections/text/LinkFields.h"
#include "logic/program/Global.h"

namespace tessel {

/// The page of fields in the window of a connection string: shows those of one kind of database at
/// a time. What was typed into the others stays for when their kind comes back.
class LinkForm {
 public:
  LinkForm(const Global& global, Window& window);

  /// The user changed a field. Changes by this class are not told.
  std::function<void()> onChanged;
  /// The user is about to choose a database.
  std::function<void()> onDatabaseEntered;

  void ShowKind(LinkKind kind);
  [[nodiscard]] LinkKind Kind() const { return kind_; }
  /// Fills the fields of the kind on show.
  void ShowPairs(const DataLinkPairs& pairs);
  /// Writes what they hold into the pairs, the password too.
  void WriteTo(DataLinkPairs& pairs) const;

  [[nodiscard]] std::string Password() const { return txtPassword_.Text(); }
  /// Without a notice.
  void SetPassword(const std::string& password);
  /// The list of databases to choose from; what was typed stays.
  void OfferDatabases(const std::vector<std::string>& names);

 private:
  struct Box {
    LinkField field;
    std::vector<const char*> controls;  ///< Shown and hidden together.
    std::function<std::string()> read;
    std::function<void(const std::string&)> write;
  };

  void AddText(LinkField field, std::vector<const char*> controls, const char* name);
  void AddCombo(LinkField field, std::vector<const char*> controls, const char* name);
  void WireBoxes();
  void cmdBrowse_Click();
  void Changed();
  void ModeClicked(CheckBox& clicked, CheckBox& other);
  void ShowSslMode(const std::string& mode);
  [[nodiscard]] std::string SslMode() const;
  [[nodiscard]] std::string Mode(const std::string& before) const;
  void Quietly(const std::function<void()>& change);

  const Global& global_;
  Window& window_;
  TextBox& txtPassword_;
  ComboBox& cboDatabase_;
  ComboBox& cboSSL_;
  CheckBox& chkCreate_;
  CheckBox& chkReadOnly_;
  std::vector<Box> boxes_;
  LinkKind kind_ = LinkKind::Other;
  bool quiet_ = false;
};

}  // namespace tessel
