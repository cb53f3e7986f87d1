#include "logic/program/Global.h"

#include <charconv>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "contract/text/TextCut.h"
#include "logic/program/DirectLine.h"
#include "logic/program/NoKeyring.h"

namespace tessel {

namespace {

constexpr std::string_view jetPrefix = "Microsoft.Jet.OLEDB.";

/// The number that a text begins with; 0 for none.
double LeadingNumber(std::string_view text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return number;
}

/// The version that a class name carries, if it is one of the Jet provider's.
std::optional<std::string> JetVersion(std::string name) {
  CutAtFirst(name, std::string_view("\0", 1));
  if (!EqualNoCase(std::string_view(name).substr(0, jetPrefix.size()), jetPrefix))
    return std::nullopt;
  std::string version = name.substr(jetPrefix.size());
  if (version.find_first_not_of("0123456789.") != std::string::npos) return std::nullopt;
  return version;
}

}  // namespace

void RaiseAppError(std::string description) {
  throw Error(errorNumber::application, "Tessel", std::move(description));
}

Global::Global(Platform platform)
    : platform_(std::move(platform)),
      settingsFilePath_(BesideExecutable("Tessel.ini.xml")),
      legacySettingsFilePath_(BesideExecutable("Tessel.ini")),
      jetProviderName_(std::string(jetPrefix).append("3.51")) {
  if (platform_.keyring != nullptr) return;
  noKeyring_ = std::make_shared<NoKeyring>(platform_.desktop.Events());
  platform_.keyring = noKeyring_.get();
}

std::string Global::BesideExecutable(std::string_view name) const {
  return platform_.appPath + pathSeparator + std::string(name);
}

void Global::DetectJetProvider() {
  std::string best = "3.51";
  try {
    for (int index = 0; platform_.registeredClass; ++index) {
      const auto name = platform_.registeredClass(index);
      if (!name) break;
      const auto version = JetVersion(*name);
      if (version && LeadingNumber(best) < LeadingNumber(*version)) best = *version;
    }
  } catch (const std::exception&) {
    // A registry that cannot be read to its end leaves what was found so far.
  }
  jetProviderName_ = std::string(jetPrefix) + best;
}

void Global::SetHelpFile() { helpFile_ = BesideExecutable("Tessel.chm"); }

std::unique_ptr<WorkLine> Global::MakeWorkLine() const {
  if (!platform_.makeWorkLine) return std::make_unique<DirectLine>();
  return platform_.makeWorkLine();
}

}  // namespace tessel
