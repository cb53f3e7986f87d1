#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Color.h"
#include "logic/connections/SavedConnection.h"
#include "logic/program/Global.h"

namespace pugi {
class xml_document;
class xml_node;
}  // namespace pugi

namespace tessel {

/// A colour as exactly 8 upper-case hexadecimal digits.
[[nodiscard]] std::string ColorToHex(Color value);
/// The colour that up to 8 hexadecimal digits spell; raises Error(application) for anything else.
[[nodiscard]] Color HexToColor(std::string_view text);

/// The settings file as a document in memory, of which this class owns the `Connections` element;
/// everything else is kept as it was loaded.
class SettingsFile {
 public:
  explicit SettingsFile(const Global& global);
  ~SettingsFile();

  /// Loads the file, or makes an empty document with what the older plain-text file lists. Returns
  /// the saved connections that could be read, in document order. A file that cannot be read or
  /// understood to its end is left alone from then on: CanSave is false.
  std::vector<SavedConnection> Load();

  /// Whether there is a `Connections` element to keep the list in.
  [[nodiscard]] bool CanSave() const;

  /// Replaces the list and writes the whole file, with what other programs wrote into it since it
  /// was loaded (MergeConnections). False on failure, with `reason` set when given; the file then
  /// stays as it was.
  bool Save(const std::vector<SavedConnection>& connections, std::string* reason = nullptr);

 private:
  void Write(const std::vector<SavedConnection>& list);
  [[nodiscard]] std::vector<SavedConnection>
  MergeWithFile(const std::vector<SavedConnection>& list);
  [[nodiscard]] bool ReadDocument(pugi::xml_document& document) const;
  void MakeDocument();
  void ImportLegacy(pugi::xml_node connections);
  [[nodiscard]] pugi::xml_node Connections() const;

  const Global& global_;
  std::unique_ptr<pugi::xml_document> document_;
  std::vector<SavedConnection> loaded_;  ///< The list as it was read or written last.
  bool readable_ = false;
};

}  // namespace tessel
