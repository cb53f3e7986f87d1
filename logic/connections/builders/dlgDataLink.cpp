#include "logic/connections/builders/dlgDataLink.h"

#include <memory>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "contract/text/Ascii.h"
#include "logic/connections/text/DataLinkText.h"

namespace tessel {

namespace {

constexpr std::string_view providerKey = "Provider";

/// The window of one prompt.
class dlgDataLink {
 public:
  dlgDataLink(const Global& global, DataLinkTest test)
      : window_(global.TheDesktop().MakeWindow("dlgDataLink")),
        cboProvider_(window_->Find<ComboBox>("cboProvider")),
        lsvPairs_(window_->Find<ListView>("lsvPairs")),
        txtKey_(window_->Find<TextBox>("txtKey")),
        txtValue_(window_->Find<TextBox>("txtValue")),
        lblResult_(window_->Find<Label>("lblResult")),
        test_(std::move(test)) {
    for (const std::string& name : global.Data().ProviderNames()) cboProvider_.AddItem(name);
    lsvPairs_.ItemClick = [this](int row) { ShowPair(row); };
    Wire("cmdSet", &dlgDataLink::cmdSet_Click);
    Wire("cmdRemovePair", &dlgDataLink::cmdRemovePair_Click);
    Wire("cmdTest", &dlgDataLink::cmdTest_Click);
    Wire("cmdOK", &dlgDataLink::cmdOK_Click);
    window_->Find<Button>("cmdCancel").Click = [this] { window_->Unload(); };
  }

  std::string Prompt(Window& owner, const std::string& connectionString) {
    pairs_ = SplitDataLink(connectionString);
    ShowPairs();
    cboProvider_.SetText(ValueOf(providerKey));
    lblResult_.SetCaption("");
    window_->ShowModal(&owner);
    window_->Unload();
    return accepted_ ? JoinDataLink(pairs_) : connectionString;
  }

 private:
  void Wire(const char* name, void (dlgDataLink::*handler)()) {
    window_->Find<Button>(name).Click = [this, handler] { (this->*handler)(); };
  }

  [[nodiscard]] std::string ValueOf(std::string_view key) const {
    for (const auto& [name, value] : pairs_)
      if (EqualNoCase(name, key)) return value;
    return {};
  }

  void ShowPairs() {
    lsvPairs_.Clear();
    for (const auto& [key, value] : pairs_) {
      ListRow row;
      row.text = key;
      row.subItems = {value};
      lsvPairs_.Insert(lsvPairs_.Count(), std::move(row));
    }
  }

  void ShowPair(int row) {
    if (row < 0) return;
    txtKey_.SetText(lsvPairs_.Row(row).text);
    txtValue_.SetText(lsvPairs_.Row(row).subItems.at(0));
  }

  void cmdSet_Click() {
    const std::string key(TrimSpaces(txtKey_.Text()));
    if (key.empty()) return txtKey_.SetFocus();
    SetDataLinkPair(pairs_, key, txtValue_.Text());
    if (EqualNoCase(key, providerKey)) cboProvider_.SetText(txtValue_.Text());
    ShowPairs();
  }

  void cmdRemovePair_Click() {
    const int row = lsvPairs_.SelectedIndex();
    if (row < 0) return;
    if (EqualNoCase(pairs_[static_cast<std::size_t>(row)].first, providerKey))
      cboProvider_.SetText("");
    pairs_.erase(pairs_.begin() + row);
    ShowPairs();
  }

  /// The provider box stands for its pair, which comes first.
  void TakeProvider() {
    const std::string provider = cboProvider_.Text();
    if (provider == ValueOf(providerKey)) return;
    std::erase_if(pairs_, [](const auto& pair) { return EqualNoCase(pair.first, providerKey); });
    if (!provider.empty()) pairs_.insert(pairs_.begin(), {std::string(providerKey), provider});
    ShowPairs();
  }

  void cmdTest_Click() {
    TakeProvider();
    lblResult_.SetCaption(test_(JoinDataLink(pairs_)));
  }

  void cmdOK_Click() {
    TakeProvider();
    accepted_ = true;
    window_->Hide();
  }

  std::unique_ptr<Window> window_;
  ComboBox& cboProvider_;
  ListView& lsvPairs_;
  TextBox& txtKey_;
  TextBox& txtValue_;
  Label& lblResult_;
  DataLinkTest test_;
  DataLinkPairs pairs_;
  bool accepted_ = false;
};

}  // namespace

std::string PromptDataLink(const Global& global, Window& owner, const std::string& connectionString,
                           DataLinkTest test) {
  return dlgDataLink(global, std::move(test)).Prompt(owner, connectionString);
}

}  // namespace tessel
