// The window behind "OLE DB...": a connection string as the fields of its provider, or as a table
// of its keys. The pairs are the truth; both pages show them and change them.

#include "logic/connections/link/dlgDataLink.h"

#include <memory>
#include <optional>
#include <utility>

#include "contract/desktop/controls/ListView.h"
#include "contract/text/Ascii.h"
#include "logic/connections/link/LinkForm.h"
#include "logic/connections/password/KeepBox.h"
#include "logic/connections/text/PasswordPlace.h"

namespace tessel {

namespace {

using Kind = KeyringAnswer::Kind;

constexpr std::string_view providerKey = "Provider";

/// The window of one prompt.
class dlgDataLink {
 public:
  dlgDataLink(const Global& global, TypedLogin login)
      : global_(global),
        login_(std::move(login)),
        window_(global.TheDesktop().MakeWindow("dlgDataLink")),
        cboProvider_(window_->Find<ComboBox>("cboProvider")),
        lsvPairs_(window_->Find<ListView>("lsvPairs")),
        txtKey_(window_->Find<TextBox>("txtKey")),
        txtValue_(window_->Find<TextBox>("txtValue")),
        lblResult_(window_->Find<Label>("lblResult")),
        cmdTest_(window_->Find<Button>("cmdTest")),
        form_(global, *window_),
        keep_(global, *window_),
        test_(global.Data()),
        databases_(global.Data()) {
    for (const std::string& name : OfferedProviders()) cboProvider_.AddItem(name);
    Wire();
  }

  std::string Prompt(Window& owner, const std::string& connectionString) {
    Load(connectionString);
    keep_.Look();
    if (AsksKeyring(pairs_)) ReadPassword();
    window_->ShowModal(&owner);
    window_->Unload();
    return accepted_ ? JoinDataLink(pairs_) : connectionString;
  }

 private:
  void Wire();
  void WireButton(const char* name, void (dlgDataLink::*handler)()) {
    window_->Find<Button>(name).Click = [this, handler] { (this->*handler)(); };
  }
  [[nodiscard]] std::vector<std::string> OfferedProviders() const;
  void Load(const std::string& connectionString);

  // --- both pages ---
  void ShowFields();
  void ShowPairs();
  void ShowPair(int row);
  void PairsChanged();
  void FieldsChanged();
  void ProviderChanged();
  void TakeProvider();
  void TakeTypedPair();
  void ShowKindOf(const std::string& provider);

  // --- the page of keys ---
  void cmdSet_Click();
  void cmdRemovePair_Click();

  // --- the server ---
  void cmdTest_Click();
  void EndTest(const std::string& words);
  void TestEnded(const ServerTalk::Result& result);
  void ListDatabases();
  [[nodiscard]] TypedLogin Login() const;
  void Say(const std::string& words) { lblResult_.SetCaption(words); }

  // --- the keyring ---
  void chkKeep_Click();
  void ReadPassword();
  void TakePassword(const KeyringAnswer& answer);
  [[nodiscard]] bool HasToKeep() const;
  void KeepPassword();
  void TakeKept(const KeyringAnswer& answer);

  void cmdOK_Click();
  void Accept() {
    accepted_ = true;
    window_->Hide();
  }

  const Global& global_;
  TypedLogin login_;
  std::unique_ptr<Window> window_;
  ComboBox& cboProvider_;
  ListView& lsvPairs_;
  TextBox& txtKey_;
  TextBox& txtValue_;
  Label& lblResult_;
  Button& cmdTest_;
  LinkForm form_;
  KeepBox keep_;
  ServerTalk test_;
  ServerTalk databases_;
  DataLinkPairs pairs_;
  LinkKind fieldsOf_ = LinkKind::Other;  ///< The kind whose keys the fields stand for.
  bool showing_ = false;                 ///< What changes is shown, not typed.
  bool pairTyped_ = false;               ///< The boxes of the table hold what was not set yet.
  bool testing_ = false;
  bool accepted_ = false;
  std::string listedFor_;  ///< Whose databases are listed, or could not be.
  /// What the keyring holds, and under which name.
  std::optional<std::pair<std::string, std::string>> kept_;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

void dlgDataLink::Wire() {
  cboProvider_.Change = [this] { ProviderChanged(); };
  cboProvider_.Click = [this] { ProviderChanged(); };
  lsvPairs_.ItemClick = [this](int row) { ShowPair(row); };
  txtKey_.Change = [this] { pairTyped_ = !showing_; };
  txtValue_.Change = [this] { pairTyped_ = !showing_; };
  form_.onChanged = [this] { FieldsChanged(); };
  form_.onDatabaseEntered = [this] { ListDatabases(); };
  window_->Find<CheckBox>("chkKeep").Click = [this] { chkKeep_Click(); };
  WireButton("cmdSet", &dlgDataLink::cmdSet_Click);
  WireButton("cmdRemovePair", &dlgDataLink::cmdRemovePair_Click);
  WireButton("cmdTest", &dlgDataLink::cmdTest_Click);
  WireButton("cmdOK", &dlgDataLink::cmdOK_Click);
  window_->Find<Button>("cmdCancel").Click = [this] { window_->Unload(); };
}

/// The native ones, ODBC, then others that need no form. A name with a star stands for many, which
/// ODBC serves.
std::vector<std::string> dlgDataLink::OfferedProviders() const {
  const std::vector<std::string> known = global_.Data().ProviderNames();
  std::vector<std::string> offered = NativeProviders(known);
  offered.emplace_back(odbcName);
  for (const std::string& name : known)
    if (LinkKindOf(name) == LinkKind::Other && !name.ends_with('*')) offered.push_back(name);
  return offered;
}

/// An empty string begins with the first provider of the list.
void dlgDataLink::Load(const std::string& connectionString) {
  pairs_ = SplitDataLink(connectionString);
  const std::string provider = ProviderOf(pairs_);
  const bool nothing = pairs_.empty() && cboProvider_.ListCount() > 0;
  showing_ = true;
  if (nothing) cboProvider_.SetListIndex(0);
  else cboProvider_.SetText(provider.empty() ? odbcName : std::string_view(provider));
  ShowKindOf(cboProvider_.Text());
  showing_ = false;
  ShowFields();
  ShowPairs();
  Say("");
}

// --- both pages ----------------------------------------------------------------------------------

void dlgDataLink::ShowFields() {
  showing_ = true;
  form_.ShowPairs(pairs_);
  keep_.SetChecked(AsksKeyring(pairs_));
  showing_ = false;
}

void dlgDataLink::ShowPairs() {
  lsvPairs_.Clear();
  for (const auto& [key, value] : pairs_) {
    ListRow row;
    row.text = key;
    row.subItems = {value};
    lsvPairs_.Insert(lsvPairs_.Count(), std::move(row));
  }
}

void dlgDataLink::ShowPair(int row) {
  if (row < 0) return;
  showing_ = true;
  txtKey_.SetText(lsvPairs_.Row(row).text);
  txtValue_.SetText(lsvPairs_.Row(row).subItems.at(0));
  showing_ = false;
  pairTyped_ = false;
}

/// What a test has said goes for what was on show then.
void dlgDataLink::PairsChanged() {
  ShowPairs();
  if (testing_) test_.Leave();
  EndTest("");
}

void dlgDataLink::FieldsChanged() {
  if (showing_) return;
  TakeProvider();
  form_.WriteTo(pairs_);
  const bool kept = keep_.Checked() && HasField(form_.Kind(), LinkField::Password);
  SetKeptInKeyring(pairs_, kept);
  PairsChanged();
}

/// A kind without a form leaves the keys as they are; between two others the values move along.
void dlgDataLink::ProviderChanged() {
  if (showing_) return;
  const LinkKind kind = LinkKindOf(TrimSpaces(cboProvider_.Text()));
  const bool moves = kind != LinkKind::Other && fieldsOf_ != LinkKind::Other && kind != fieldsOf_;
  if (moves) RemoveFields(pairs_, fieldsOf_);
  ShowKindOf(cboProvider_.Text());
  if (moves) return FieldsChanged();
  TakeProvider();
  ShowFields();
  PairsChanged();
}

void dlgDataLink::ShowKindOf(const std::string& provider) {
  const LinkKind kind = LinkKindOf(TrimSpaces(provider));
  form_.ShowKind(kind);
  keep_.Show(HasField(kind, LinkField::Password));
  if (kind != LinkKind::Other) fieldsOf_ = kind;
}

/// The provider box stands for its pair, which comes first. ODBC needs none.
void dlgDataLink::TakeProvider() {
  std::string provider = cboProvider_.Text();
  if (EqualNoCase(TrimSpaces(provider), odbcName)) provider.clear();
  if (provider == ProviderOf(pairs_)) return;
  std::erase_if(pairs_, [](const auto& pair) { return EqualNoCase(pair.first, providerKey); });
  if (!provider.empty()) pairs_.insert(pairs_.begin(), {std::string(providerKey), provider});
}

// --- the page of keys ----------------------------------------------------------------------------

void dlgDataLink::cmdSet_Click() {
  const std::string key(TrimSpaces(txtKey_.Text()));
  if (key.empty()) return txtKey_.SetFocus();
  SetDataLinkPair(pairs_, key, txtValue_.Text());
  pairTyped_ = false;
  if (EqualNoCase(key, providerKey)) cboProvider_.SetText(txtValue_.Text());
  ShowFields();
  PairsChanged();
}

void dlgDataLink::cmdRemovePair_Click() {
  const int row = lsvPairs_.SelectedIndex();
  if (row < 0) return;
  const bool provider = EqualNoCase(pairs_[static_cast<std::size_t>(row)].first, providerKey);
  pairs_.erase(pairs_.begin() + row);
  pairTyped_ = false;
  if (provider) cboProvider_.SetText("");
  ShowFields();
  PairsChanged();
}

/// What was typed counts, set or not.
void dlgDataLink::TakeTypedPair() {
  if (pairTyped_ && !TrimSpaces(txtKey_.Text()).empty()) cmdSet_Click();
}

// --- the server ----------------------------------------------------------------------------------

TypedLogin dlgDataLink::Login() const {
  const std::string password = form_.Password();
  return {login_.user, password.empty() ? login_.password : password};
}

/// The same button ends what it began.
void dlgDataLink::cmdTest_Click() {
  if (testing_) {
    Say("Cancelling...");
    return test_.Cancel();
  }
  TakeTypedPair();
  TakeProvider();
  testing_ = true;
  cmdTest_.SetCaption("S&top");
  Say("Connecting...");
  const bool server = HasField(form_.Kind(), LinkField::SslMode);
  test_.Start(JoinDataLink(pairs_), Login(), server,
              [this](const ServerTalk::Result& result) { TestEnded(result); });
}

void dlgDataLink::EndTest(const std::string& words) {
  testing_ = false;
  cmdTest_.SetCaption("&Test");
  Say(words);
}

void dlgDataLink::TestEnded(const ServerTalk::Result& result) {
  if (result.cancelled) return EndTest("Cancelled.");
  EndTest(result.failure.value_or("The connection works."));
  if (!result.databases.empty()) form_.OfferDatabases(result.databases);
}

/// Of a server, and once for each login. Every PostgreSQL has a database of that name to ask in.
void dlgDataLink::ListDatabases() {
  const LinkKind kind = form_.Kind();
  const TypedLogin login = Login();
  const bool server = HasField(kind, LinkField::SslMode);
  const bool someone = !login.user.empty() || !FieldOf(pairs_, kind, LinkField::User).empty();
  const bool somewhere = !FieldOf(pairs_, kind, LinkField::Server).empty();
  if (!server || !someone || !somewhere || databases_.Busy()) return;
  DataLinkPairs pairs = pairs_;
  SetField(pairs, kind, LinkField::Database, kind == LinkKind::PostgreSql ? "postgres" : "");
  const std::string asked = JoinDataLink(pairs);
  const std::string by = asked + "\n" + login.password;
  if (by == std::exchange(listedFor_, by)) return;
  databases_.Start(asked, login, true, [this](const ServerTalk::Result& result) {
    if (result.failure && !testing_) Say("There is no list of databases: " + *result.failure);
    if (!result.databases.empty()) form_.OfferDatabases(result.databases);
  });
}

// --- the keyring ---------------------------------------------------------------------------------

/// A password that came from the keyring does not get into a file by a cleared box.
void dlgDataLink::chkKeep_Click() {
  if (showing_) return;
  const bool stays = !keep_.Checked() && kept_ && kept_->second == form_.Password();
  if (stays) form_.SetPassword("");
  keep_.Say(stays ? "The password stays in the keyring, and leaves this connection." : "");
  FieldsChanged();
}

void dlgDataLink::ReadPassword() {
  keep_.Say("Waiting for the desktop's keyring...");
  const std::string name = KeyringName(pairs_);
  global_.TheKeyring().Read(name, alive_, [this, name](const KeyringAnswer& answer) {
    if (answer.kind == Kind::Done) kept_ = {name, answer.secret};
    TakePassword(answer);
  });
}

/// What was typed meanwhile stays.
void dlgDataLink::TakePassword(const KeyringAnswer& answer) {
  keep_.Say(answer.kind == Kind::Missing ? "The keyring gives no password for it: type it here."
                                         : answer.reason);
  if (answer.kind == Kind::Done && keep_.Checked() && form_.Password().empty())
    form_.SetPassword(answer.secret);
}

bool dlgDataLink::HasToKeep() const {
  const std::string password = form_.Password();
  return AsksKeyring(pairs_) && !password.empty() &&
         kept_ != std::pair(KeyringName(pairs_), password);
}

void dlgDataLink::KeepPassword() {
  window_->Find<Button>("cmdOK").SetEnabled(false);
  Say("Handing the password to the keyring...");
  global_.TheKeyring().Keep(KeyringName(pairs_), form_.Password(), alive_,
                            [this](const KeyringAnswer& answer) { TakeKept(answer); });
}

void dlgDataLink::TakeKept(const KeyringAnswer& answer) {
  window_->Find<Button>("cmdOK").SetEnabled(true);
  if (answer.kind == Kind::Done) return Accept();
  Say("The password is not kept: " + answer.reason);
}

void dlgDataLink::cmdOK_Click() {
  TakeTypedPair();
  TakeProvider();
  if (HasToKeep()) KeepPassword();
  else Accept();
}

}  // namespace

std::string PromptDataLink(const Global& global, Window& owner, const std::string& connectionString,
                           const TypedLogin& login) {
  return dlgDataLink(global, login).Prompt(owner, connectionString);
}

}  // namespace tessel
