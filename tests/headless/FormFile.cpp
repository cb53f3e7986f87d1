#include "tests/headless/FormFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <pugixml.hpp>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel::test {

namespace {

constexpr std::array<std::pair<std::string_view, ControlKind>, 20> kinds{{
    {"QLabel", ControlKind::Label},
    {"QFrame", ControlKind::PictureBox},
    {"QGroupBox", ControlKind::PictureBox},
    {"QPushButton", ControlKind::Button},
    {"QToolButton", ControlKind::Button},
    {"QCheckBox", ControlKind::CheckBox},
    {"QRadioButton", ControlKind::OptionButton},
    {"QLineEdit", ControlKind::TextBox},
    {"QPlainTextEdit", ControlKind::TextBox},
    {"QsciScintilla", ControlKind::RichTextBox},
    {"tessel::HexView", ControlKind::HexBox},
    {"tessel::PictureView", ControlKind::ImageBox},
    {"QComboBox", ControlKind::ComboBox},
    {"QListView", ControlKind::ListBox},
    {"QTreeWidget", ControlKind::ListView},
    {"QTreeView", ControlKind::TreeView},
    {"QTableView", ControlKind::DataGrid},
    {"QProgressBar", ControlKind::ProgressBar},
    {"tessel::ChartWidget", ControlKind::ChartBox},
    {"tessel::DiagramWidget", ControlKind::DiagramBox},
}};

/// Widgets that only hold others.
constexpr std::array<std::string_view, 6> holders{"QWidget",    "QMdiArea",   "QSplitter",
                                                  "QTabWidget", "QStatusBar", "Line"};

const ControlKind* FindKind(std::string_view className) {
  for (const auto& [name, kind] : kinds)
    if (name == className) return &kind;
  return nullptr;
}

bool IsHolder(std::string_view className) {
  for (const std::string_view name : holders)
    if (name == className) return true;
  return false;
}

int ChildNumber(const pugi::xml_node& node, const char* child) {
  return node.child(child).text().as_int() * twipsPerPixel;
}

Rect ReadBounds(const pugi::xml_node& element) {
  const auto rect = element.find_child_by_attribute("property", "name", "geometry").child("rect");
  return {ChildNumber(rect, "x"), ChildNumber(rect, "y"), ChildNumber(rect, "width"),
          ChildNumber(rect, "height")};
}

FormProperties ReadProperties(const pugi::xml_node& element) {
  FormProperties properties;
  for (const pugi::xml_node property : element.children("property"))
    properties.Set(property.attribute("name").value(), property.first_child().text().get());
  return properties;
}

std::string OwnText(const pugi::xml_node& element) {
  return element.find_child_by_attribute("property", "name", "text").child("string").text().get();
}

std::vector<std::string> ReadTexts(const pugi::xml_node& widget, const char* element) {
  std::vector<std::string> texts;
  for (const pugi::xml_node child : widget.children(element)) texts.push_back(OwnText(child));
  return texts;
}

std::vector<std::string> ReadEntries(const pugi::xml_node& menu) {
  std::vector<std::string> entries;
  for (const pugi::xml_node entry : menu.children("addaction"))
    entries.emplace_back(entry.attribute("name").value());
  return entries;
}

class FormReader {
 public:
  explicit FormReader(FormFile& form) : form_(form) {}

  void Read(const pugi::xml_node& ui) {
    for (const pugi::xml_node custom : ui.child("customwidgets").children("customwidget"))
      extends_[custom.child("class").text().get()] = custom.child("extends").text().get();
    const pugi::xml_node root = ui.child("widget");
    form_.properties = ReadProperties(root);
    form_.bounds = ReadBounds(root);
    ReadChildren(root, "");
    for (const auto& action : root.select_nodes(".//action")) AddCommand(action.node());
    for (const pugi::xml_node stop : ui.child("tabstops").children("tabstop"))
      form_.tabStops.emplace_back(stop.text().get());
    MarkMenuBar();
  }

 private:
  void ReadChildren(const pugi::xml_node& element, const std::string& container) {
    for (const pugi::xml_node child : element.children()) {
      const std::string_view tag = child.name();
      if (tag == "widget") ReadWidget(child, container);
      else if (tag == "layout" || tag == "item") ReadChildren(child, container);
    }
  }

  void ReadWidget(const pugi::xml_node& widget, const std::string& container) {
    const std::string className = KnownClass(widget.attribute("class").value());
    if (className == "QMenuBar") {
      menuBar_ = ReadEntries(widget);
      return ReadChildren(widget, container);
    }
    if (className == "QMenu") return AddTitle(widget);
    if (IsHolder(className)) return ReadChildren(widget, container);
    AddControl(widget, className, container);
  }

  /// The class itself when it stands for a kind of control, else the first that it extends and
  /// that does.
  [[nodiscard]] std::string KnownClass(std::string className) const {
    while (FindKind(className) == nullptr) {
      const auto base = extends_.find(className);
      if (base == extends_.end()) return className;
      className = base->second;
    }
    return className;
  }

  void AddControl(const pugi::xml_node& widget, const std::string& className,
                  const std::string& container) {
    const ControlKind* kind = FindKind(className);
    const std::string name = widget.attribute("name").value();
    if (kind == nullptr)
      throw std::runtime_error("Form " + form_.name + ": " + name + " is a " + className +
                               ", which is no kind of control.");
    form_.widgets.push_back({name, className, *kind, container, ReadProperties(widget),
                             ReadBounds(widget), ReadTexts(widget, "item"),
                             ReadTexts(widget, "column")});
    if (*kind == ControlKind::PictureBox) ReadChildren(widget, name);
  }

  void AddTitle(const pugi::xml_node& menu) {
    FormMenuItem title;
    title.name = menu.attribute("name").value();
    title.properties = ReadProperties(menu);
    title.caption = title.properties.Text("title");
    title.isTitle = true;
    title.entries = ReadEntries(menu);
    form_.menus.push_back(std::move(title));
    ReadChildren(menu, "");
  }

  void AddCommand(const pugi::xml_node& action) {
    FormMenuItem command;
    command.name = action.attribute("name").value();
    command.properties = ReadProperties(action);
    command.caption = command.properties.Text("text");
    const std::string shortcut = command.properties.Text("shortcut");
    if (!shortcut.empty()) command.shortcut = ParseShortcut(shortcut);
    form_.menus.push_back(std::move(command));
  }

  void MarkMenuBar() {
    for (FormMenuItem& item : form_.menus)
      for (const std::string& name : menuBar_)
        if (item.name == name) item.inMenuBar = true;
  }

  FormFile& form_;
  std::map<std::string, std::string> extends_;
  std::vector<std::string> menuBar_;
};

constexpr int slash = 191;

constexpr std::array<std::pair<std::string_view, int>, 17> keyNames{{
    {"Ins", key::insert},
    {"Insert", key::insert},
    {"Del", key::del},
    {"Delete", key::del},
    {"Esc", key::escape},
    {"Return", key::enter},
    {"Enter", key::enter},
    {"Tab", key::tab},
    {"Space", key::space},
    {"Left", key::left},
    {"Right", key::right},
    {"Up", key::up},
    {"Down", key::down},
    {"=", key::equals},
    {"/", slash},
    {".", key::fullStop},
    {"'", key::apostrophe},
}};

std::optional<int> FunctionKey(std::string_view name) {
  int number = 0;
  if (name.size() < 2 || name.front() != 'F') return std::nullopt;
  const auto [end, error] = std::from_chars(name.data() + 1, name.data() + name.size(), number);
  if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return key::f1 + number - 1;
}

int KeyOfName(std::string_view name) {
  if (const auto function = FunctionKey(name)) return *function;
  for (const auto& [text, code] : keyNames)
    if (EqualNoCase(text, name)) return code;
  if (name.size() == 1) return static_cast<unsigned char>(AsciiUpper(name.front()));
  throw std::runtime_error("Unknown key in a shortcut: " + std::string(name));
}

int ShiftOfName(std::string_view name) {
  if (name == "Ctrl") return shiftState::ctrl;
  if (name == "Shift") return shiftState::shift;
  if (name == "Alt") return shiftState::alt;
  throw std::runtime_error("Unknown key in a shortcut: " + std::string(name));
}

}  // namespace

std::string FormProperties::Text(const std::string& name, std::string_view fallback) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::string(fallback) : found->second;
}

bool FormProperties::Flag(const std::string& name, bool fallback) const {
  return Text(name, fallback ? "true" : "false") == "true";
}

int FormProperties::Number(const std::string& name, int fallback) const {
  const std::string text = Text(name);
  int number = fallback;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

FormShortcut ParseShortcut(std::string_view text) {
  FormShortcut shortcut;
  for (auto plus = text.find('+'); plus != std::string_view::npos && plus + 1 < text.size();
       plus = text.find('+')) {
    shortcut.shift |= ShiftOfName(text.substr(0, plus));
    text.remove_prefix(plus + 1);
  }
  shortcut.keyCode = KeyOfName(text);
  return shortcut;
}

std::vector<std::string> FormFile::NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(folder))
    if (file.path().extension() == ".ui") names.push_back(file.path().stem().string());
  std::ranges::sort(names);
  return names;
}

FormFile FormFile::Read(const std::string& folder, std::string_view name) {
  FormFile form;
  form.name = name;
  pugi::xml_document document;
  const std::string path = folder + "/" + form.name + ".ui";
  const pugi::xml_parse_result result = document.load_file(path.c_str());
  if (result.status == pugi::status_file_not_found)
    throw Error(errorNumber::itemNotFound, "Tessel", "There is no form " + form.name + ".");
  if (!result) throw std::runtime_error(path + ": " + result.description());
  FormReader(form).Read(document.child("ui"));
  return form;
}

}  // namespace tessel::test
