// Reading and writing the file of saved connections without losing what else stands in it: what
// other programs wrote, what a person added by hand, and an older file that is taken over once.

#include "logic/connections/SettingsFile.h"

#include <charconv>
#include <pugixml.hpp>
#include <sstream>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "contract/text/NumberText.h"
#include "logic/connections/MergeConnections.h"

namespace tessel {

namespace {

constexpr int lockMilliseconds = 3000;
constexpr unsigned parseEverything = pugi::parse_full | pugi::parse_ws_pcdata;

/// An attribute that must be there; raises Error(application) when it is not.
std::string Attribute(const pugi::xml_node& element, const char* name) {
  const pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) RaiseAppError(std::string("A saved connection has no ") + name + ".");
  return attribute.value();
}

SavedConnection ReadConnection(const pugi::xml_node& element) {
  return {Attribute(element, "connectionString"), Attribute(element, "caption"),
          HexToColor(Attribute(element, "backColor")), HexToColor(Attribute(element, "foreColor"))};
}

/// Adds all that could be read to `list`, also when one of them raises.
void ReadConnections(const pugi::xml_node& connections, std::vector<SavedConnection>& list) {
  for (const pugi::xml_node element : connections.children("Connection"))
    list.push_back(ReadConnection(element));
}

void AppendConnection(pugi::xml_node connections, const SavedConnection& connection) {
  connections.append_child(pugi::node_pcdata).set_value("\n    ");
  pugi::xml_node element = connections.append_child("Connection");
  element.append_attribute("connectionString").set_value(connection.connectionString.c_str());
  element.append_attribute("caption").set_value(connection.caption.c_str());
  element.append_attribute("backColor").set_value(ColorToHex(connection.backColor).c_str());
  element.append_attribute("foreColor").set_value(ColorToHex(connection.foreColor).c_str());
}

/// The whole document as UTF-8, each part of its top level on a line of its own.
std::string DocumentText(const pugi::xml_document& document) {
  std::ostringstream text;
  for (pugi::xml_node part : document.children()) {
    if (part.type() == pugi::node_declaration && part.attribute("encoding"))
      part.attribute("encoding").set_value("UTF-8");
    part.print(text, "", pugi::format_raw);
    text << '\n';
  }
  return text.str();
}

}  // namespace

std::string ColorToHex(Color value) {
  std::string digits;
  for (int shift = 24; shift >= 0; shift -= 8)
    digits += ByteToHex(static_cast<unsigned char>(value >> shift));
  return digits;
}

Color HexToColor(std::string_view text) {
  Color value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (error != std::errc() || end != text.data() + text.size())
    RaiseAppError("'" + std::string(text) + "' is not a colour.");
  return value;
}

SettingsFile::SettingsFile(const Global& global)
    : global_(global), document_(std::make_unique<pugi::xml_document>()) {}

SettingsFile::~SettingsFile() = default;

std::vector<SavedConnection> SettingsFile::Load() {
  std::vector<SavedConnection> list;
  readable_ = false;
  try {
    if (!global_.TheFiles().FileExists(global_.SettingsFilePath())) MakeDocument();
    else if (!ReadDocument(*document_)) return list;
    ReadConnections(Connections(), list);
    readable_ = true;
    loaded_ = list;
  } catch (const Error&) {
    // What was read so far is what there is; the file is not written then, so that nothing of it is
    // lost.
  }
  return list;
}

bool SettingsFile::ReadDocument(pugi::xml_document& document) const {
  const std::string text = global_.TheFiles().ReadWhole(global_.SettingsFilePath());
  return document.load_buffer(text.data(), text.size(), parseEverything) &&
         document.document_element();
}

void SettingsFile::MakeDocument() {
  pugi::xml_node declaration = document_->append_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
  pugi::xml_node root = document_->append_child("Tessel");
  root.append_child(pugi::node_pcdata).set_value("\n  ");
  pugi::xml_node connections = root.append_child("Connections");
  root.append_child(pugi::node_pcdata).set_value("\n");
  ImportLegacy(connections);
}

/// The older file: one connection string a line.
void SettingsFile::ImportLegacy(pugi::xml_node connections) {
  if (!global_.TheFiles().FileExists(global_.LegacySettingsFilePath())) return;
  std::istringstream lines(global_.TheFiles().ReadWhole(global_.LegacySettingsFilePath()));
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    const std::string_view connectionString = TrimSpaces(line);
    if (!connectionString.empty())
      AppendConnection(connections, {std::string(connectionString), ""});
  }
}

pugi::xml_node SettingsFile::Connections() const {
  return document_->document_element().child("Connections");
}

bool SettingsFile::CanSave() const { return readable_ && Connections(); }

/// No other program writes between the reading and the writing.
bool SettingsFile::Save(const std::vector<SavedConnection>& list, std::string* reason) {
  const std::string& path = global_.SettingsFilePath();
  try {
    if (!CanSave()) RaiseAppError(path + ": It holds no list of connections that can be read");
    const auto lock = global_.TheFiles().Lock(path, lockMilliseconds);
    if (lock == nullptr) RaiseAppError(path + ": Another program is writing it");
    Write(MergeWithFile(list));
    return true;
  } catch (const Error& error) {
    if (reason != nullptr) *reason = error.Description();
    return false;
  }
}

void SettingsFile::Write(const std::vector<SavedConnection>& list) {
  pugi::xml_node connections = Connections();
  connections.remove_children();
  for (const SavedConnection& connection : list) AppendConnection(connections, connection);
  connections.append_child(pugi::node_pcdata).set_value("\n  ");
  global_.TheFiles().ReplaceWhole(global_.SettingsFilePath(), DocumentText(*document_), true);
  loaded_ = list;
}

/// Takes the file as it is now for the document. A file that is gone is written anew; one that can
/// no longer be understood is left alone.
std::vector<SavedConnection> SettingsFile::MergeWithFile(const std::vector<SavedConnection>& list) {
  if (!global_.TheFiles().FileExists(global_.SettingsFilePath())) return list;
  auto document = std::make_unique<pugi::xml_document>();
  if (!ReadDocument(*document) || !document->document_element().child("Connections"))
    RaiseAppError(global_.SettingsFilePath() + ": It holds no list of connections any more");
  std::vector<SavedConnection> theirs;
  ReadConnections(document->document_element().child("Connections"), theirs);
  document_ = std::move(document);
  return MergeConnections(loaded_, theirs, list);
}

}  // namespace tessel
