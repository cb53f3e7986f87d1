// What a value is shown as, and what is said of it. The bytes stay where they are: only what is
// shown as text is copied, and of a long text only its beginning.

#include "logic/results/values/ValueLook.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "contract/base/Error.h"
#include "contract/text/NumberText.h"
#include "contract/text/Utf8.h"
#include "logic/results/values/ValueKind.h"
#include "logic/text/dlgText.h"

namespace tessel {

namespace {

constexpr int findContext = 8606;
/// Bytes of a text that are shown beside the rows; the text window shows all of it.
constexpr std::size_t longestText = 1U << 20U;
/// Bytes that are copied as digits at most.
constexpr std::int64_t mostCopied = 4 << 20;
constexpr std::size_t sample = 4096;

bool IsBytes(const ValueView& value) { return std::holds_alternative<BinaryView>(value); }
bool IsText(const ValueView& value) { return std::holds_alternative<std::string_view>(value); }

/// "1 byte", "2048 bytes".
std::string Counted(std::int64_t count, const char* unit) {
  return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

/// Where bytes stand, how many they are, and how they begin and end: enough to tell a value from
/// another one without a look at all of it.
std::string PrintOf(std::string_view bytes) {
  const std::size_t end = bytes.size() - std::min(sample, bytes.size());
  return std::to_string(reinterpret_cast<std::uintptr_t>(bytes.data())) + " " +
         std::to_string(bytes.size()) + " " +
         std::to_string(std::hash<std::string_view>()(bytes.substr(0, sample))) + " " +
         std::to_string(std::hash<std::string_view>()(bytes.substr(end)));
}

std::string_view Beginning(std::string_view text) {
  return text.substr(0, CharacterStart(text, longestText));
}

}  // namespace

ValueLook::ValueLook(const Global& global, Window& window)
    : global_(global),
      help_(global),
      lblValue_(window.Find<Label>("lblValue")),
      cboValueAs_(window.Find<ComboBox>("cboValueAs")),
      hexValue_(window.Find<HexBox>("hexValue")),
      imgValue_(window.Find<ImageBox>("imgValue")),
      txtValue_(window.Find<EditorBox>("txtValue")),
      zoom_(global, txtValue_, "value zoom"),
      search_(window, hexValue_,
              [this](const std::string& said) {
                found_ = said;
                SayAll();
              }),
      indenting_(window.TimerNamed("tmrIndentValue"), global.TheDesktop().TheClock()) {
  indenting_.Progress = [this](int percent) {
    fault_ = "indenting: " + std::to_string(percent) + " %";
    SayAll();
  };
  indenting_.Ended = [this](const IndentedText& indented) {
    fault_.clear();
    PutIndented(indented_, indented);
    SayAll();
  };
  cboValueAs_.SetListIndex(0);
  cboValueAs_.Click = [this] { Update(); };
  hexValue_.CaretMoved = [this] { SayAll(); };
  imgValue_.Read = [this] { SayAll(); };
}

// --- the value -----------------------------------------------------------------------------------

void ValueLook::Show(LookedAt looked) {
  const bool same = looked_.value && looked_.cell == looked.cell;
  looked_ = std::move(looked);
  if (same && IsAsBefore(ReadBytes())) return;
  if (!same) {
    search_.SetSource(nullptr);
    hexValue_.SetSource(nullptr);
  }
  print_ = PrintOf(ReadBytes());
  Update();
}

void ValueLook::Clear() {
  if (!looked_.value) return;
  looked_ = {};
  indenting_.Stop();
  search_.SetSource(nullptr);
  hexValue_.SetSource(nullptr);
  imgValue_.SetPicture({});
  txtValue_.SetText("");
  ownText_.clear();
  what_.clear();
  SayAll();
}

/// Null once the rows are gone.
ValueView ValueLook::ReadValue() const {
  if (!looked_.value) return {};
  try {
    return looked_.value();
  } catch (const Error&) {
    return {};
  }
}

std::string_view ValueLook::ReadBytes() const {
  const ValueView value = ReadValue();
  if (const auto* binary = std::get_if<BinaryView>(&value)) return AsCharacters(binary->bytes);
  if (const auto* text = std::get_if<std::string_view>(&value)) return *text;
  ownText_ = ToText(value);
  return ownText_;
}

/// A short value is always shown anew: that takes no time.
bool ValueLook::IsAsBefore(std::string_view bytes) {
  return bytes.size() > sample && PrintOf(bytes) == print_;
}

// --- how it is shown -----------------------------------------------------------------------------

void ValueLook::Update() {
  indenting_.Stop();
  fault_.clear();
  found_.clear();
  const ValueView value = ReadValue();
  const std::string_view bytes = ReadBytes();
  Describe(value, bytes);
  const Look look = Chosen(value, bytes);
  if (look != Look::Picture) imgValue_.SetPicture({});
  switch (look) {
    case Look::Hex: ShowHex(); break;
    case Look::Picture: ShowPicture(bytes); break;
    case Look::Indented: ShowIndented(bytes); break;
    default: ShowText(bytes);
  }
  SayAll();
}

ValueLook::Look ValueLook::Chosen(const ValueView& value, std::string_view bytes) {
  const auto chosen = static_cast<Look>(std::max(cboValueAs_.ListIndex(), 0));
  return chosen == Look::Automatic ? AutomaticLook(value, bytes) : chosen;
}

ValueLook::Look ValueLook::AutomaticLook(const ValueView& value, std::string_view bytes) const {
  if (IsBytes(value)) return KindOfBytes(bytes).isPicture ? Look::Picture : Look::Hex;
  return IsText(value) && GuessStructure(bytes) != TextStructure::None ? Look::Indented
                                                                       : Look::Text;
}

void ValueLook::ShowHex() {
  const auto source = [this] { return AsBytes(ReadBytes()); };
  search_.SetSource(source);
  if (hexValue_.Size() == 0) hexValue_.SetSource(source);
  else hexValue_.Refresh();
  ShowOnly(hexValue_);
}

void ValueLook::ShowText(std::string_view bytes) {
  const std::string_view shown = Beginning(bytes);
  if (shown.size() < bytes.size())
    fault_ = "the first " + std::to_string(shown.size()) + " bytes are shown";
  txtValue_.SetSyntax(TextSyntax::Plain);
  txtValue_.SetText(ToText(BinaryView{AsBytes(shown)}));
  ShowOnly(txtValue_);
}

/// What cannot be indented is shown as it is, and why. A long text is indented in slices.
void ValueLook::ShowIndented(std::string_view bytes) {
  const TextStructure structure = GuessStructure(bytes);
  if (structure == TextStructure::None || bytes.size() > longestText) {
    ShowText(bytes);
    if (structure == TextStructure::None) fault_ = "neither JSON nor XML";
    else fault_ += ", not indented";
    return;
  }
  txtValue_.SetSyntax(structure == TextStructure::Json ? TextSyntax::Json : TextSyntax::Xml);
  ShowOnly(txtValue_);
  if (bytes.size() <= IndentSlices::longestAtOnce) return PutIndented(bytes, Indent(bytes));
  txtValue_.SetText("");
  fault_ = "indenting";
  indented_ = bytes;
  indenting_.Start(indented_);
}

void ValueLook::PutIndented(std::string_view bytes, const IndentedText& indented) {
  txtValue_.SetText(indented.fault ? bytes : std::string_view(indented.text));
  if (indented.fault)
    fault_ = "no " + std::string(StructureName(indented.structure)) + " at " +
             FaultText(bytes, *indented.fault);
}

void ValueLook::ShowPicture(std::string_view bytes) {
  imgValue_.SetPicture(AsBytes(bytes));
  ShowOnly(imgValue_);
}

/// Who had the keyboard in the one that goes gets it in the one that comes.
void ValueLook::ShowOnly(const Control& shown) {
  const bool focused = hexValue_.HasFocus() || imgValue_.HasFocus() || txtValue_.HasFocus();
  const auto show = [&](Control& control) { control.SetVisible(&control == &shown); };
  show(hexValue_);
  show(imgValue_);
  show(txtValue_);
  if (focused) SetFocus();
}

// --- what is said of it --------------------------------------------------------------------------

void ValueLook::Describe(const ValueView& value, std::string_view bytes) {
  what_ = looked_.name.empty() ? "" : looked_.name + ": ";
  if (IsNull(value)) what_ += "NULL";
  else if (IsBytes(value))
    what_ += std::string(KindOfBytes(bytes).name) + ", " +
             Counted(static_cast<std::int64_t>(bytes.size()), "byte");
  else if (IsText(value))
    what_ += std::string(StructureName(GuessStructure(bytes))) +
             (GuessStructure(bytes) == TextStructure::None ? "Text, " : " text, ") +
             Counted(static_cast<std::int64_t>(bytes.size()), "byte");
  else what_ += "Value";
}

void ValueLook::SayAll() {
  std::string text = what_;
  for (const std::string& more : {PictureText(), PlaceText(), fault_, found_})
    if (!more.empty()) text += "; " + more;
  lblValue_.SetCaption(text);
  lblValue_.SetToolTip(text);
}

/// "byte 16 (0x10)", and how many are selected when there are several.
std::string ValueLook::PlaceText() const {
  if (!hexValue_.Visible() || hexValue_.Size() == 0) return {};
  std::string text = "byte " + std::to_string(hexValue_.Caret()) + " (0x";
  std::string digits;
  for (auto rest = static_cast<std::uint64_t>(hexValue_.Caret()); rest != 0; rest /= 16)
    digits.insert(digits.begin(), hexDigits[rest % 16]);
  text += (digits.empty() ? "0" : digits) + ")";
  if (hexValue_.SelLength() > 1)
    text += ", " + Counted(hexValue_.SelLength(), "byte") + " selected";
  return text;
}

std::string ValueLook::PictureText() const {
  if (!imgValue_.Visible()) return {};
  const PictureFacts& facts = imgValue_.Facts();
  if (facts.state == PictureState::Failed) return facts.failure;
  if (facts.state != PictureState::Shown) return {};
  std::string text = facts.format + ", " + std::to_string(facts.width) + " x " +
                     std::to_string(facts.height) + " pixels";
  if (facts.frames > 1) text += ", the first of " + std::to_string(facts.frames) + " frames";
  return text;
}

// --- keys ----------------------------------------------------------------------------------------

bool ValueLook::HasFocus() const {
  return hexValue_.HasFocus() || imgValue_.HasFocus() || txtValue_.HasFocus() ||
         cboValueAs_.HasFocus();
}

void ValueLook::SetFocus() {
  hexValue_.SetFocus();
  imgValue_.SetFocus();
  txtValue_.SetFocus();
}

bool ValueLook::TakeKey(const KeyEvent& event) {
  if (txtValue_.HasFocus()) return zoom_.TakeKey(event);
  return hexValue_.HasFocus() && TakeHexKey(event);
}

bool ValueLook::TakeHexKey(const KeyEvent& event) {
  using namespace shiftState;
  if (event.shift == none) {
    if (event.keyCode == key::f3) return search_.Again();
    return event.keyCode == key::escape && search_.Stop();
  }
  if (event.shift != ctrl) return false;
  switch (event.keyCode) {
    case 'F': Find(); return true;
    case 'G': GoTo(); return true;
    case 'C': CopyBytes(); return true;
    default: return false;
  }
}

void ValueLook::Find() {
  constexpr const char* prompt =
      "Bytes to find, as hexadecimal digits (50 4B) or as text (\"PK\"):-";
  if (!GetText(global_, findContext, prompt, wanted_)) return;
  if (std::optional<std::string> bytes = BytesMeant(wanted_)) search_.Find(std::move(*bytes));
}

void ValueLook::GoTo() {
  std::string place;
  if (!GetText(global_, findContext, "Byte to go to, from 0 (16 or 0x10):-", place)) return;
  if (const auto offset = OffsetMeant(place, static_cast<std::size_t>(hexValue_.Size())))
    return hexValue_.Select(static_cast<std::int64_t>(*offset), 1);
  help_.Show("There is no byte '" + place + "': they are 0 to " +
                 std::to_string(hexValue_.Size() - 1) + ".",
             MessageIcon::Exclamation);
}

void ValueLook::CopyBytes() {
  const std::int64_t count = hexValue_.SelLength();
  if (count > mostCopied)
    return help_.Show("At most " + Counted(mostCopied, "byte") + " can be copied at once.",
                      MessageIcon::Exclamation);
  const std::string_view bytes = ReadBytes();
  const auto start = std::min(static_cast<std::size_t>(hexValue_.SelStart()), bytes.size());
  global_.TheDesktop().TheClipboard().SetText(
      HexText(bytes.substr(start, static_cast<std::size_t>(count))));
}

}  // namespace tessel
