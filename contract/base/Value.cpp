#include "contract/base/Value.h"

#include "contract/text/NumberText.h"
#include "contract/text/Utf8.h"

namespace tessel {

namespace {

template <class... Cases>
struct Overload : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overload(Cases...) -> Overload<Cases...>;  // clang 14 does not deduce it.

void AppendBytesAsText(std::string_view bytes, std::string& out) {
  while (!bytes.empty()) {
    const std::size_t length = CharacterLength(bytes);
    if (length == 0) out += "\xEF\xBF\xBD";
    else out += bytes.substr(0, length);
    bytes.remove_prefix(length == 0 ? 1 : length);
  }
}

std::string_view AsChars(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

bool IsNumericType(DataType type) {
  switch (type) {
    case DataType::SmallInt:
    case DataType::Integer:
    case DataType::Single:
    case DataType::Double:
    case DataType::Currency:
    case DataType::Decimal:
    case DataType::TinyInt:
    case DataType::UnsignedTinyInt:
    case DataType::UnsignedSmallInt:
    case DataType::UnsignedInt:
    case DataType::BigInt:
    case DataType::UnsignedBigInt:
    case DataType::Numeric: return true;
    default: return false;
  }
}

Value ToValue(const ValueView& view) {
  return std::visit(
      Overload{[](DecimalView v) -> Value { return Decimal{std::string(v.digits)}; },
               [](MomentView v) -> Value { return Moment{std::string(v.text)}; },
               [](std::string_view v) -> Value { return std::string(v); },
               [](BinaryView v) -> Value { return Bytes(v.bytes.begin(), v.bytes.end()); },
               [](auto v) -> Value { return v; }},
      view);
}

ValueView ToView(const Value& value) {
  return std::visit(Overload{[](const Decimal& v) -> ValueView { return DecimalView{v.digits}; },
                             [](const Moment& v) -> ValueView { return MomentView{v.text}; },
                             [](const std::string& v) -> ValueView { return std::string_view(v); },
                             [](const Bytes& v) -> ValueView { return BinaryView{v}; },
                             [](auto v) -> ValueView { return v; }},
                    value);
}

void AppendText(const ValueView& value, std::string& out) {
  std::visit(Overload{[](std::monostate) {}, [&](bool v) { out += v ? "True" : "False"; },
                      [&](DecimalView v) { out += v.digits; }, [&](MomentView v) { out += v.text; },
                      [&](std::string_view v) { out += v; },
                      [&](BinaryView v) { AppendBytesAsText(AsChars(v.bytes), out); },
                      [&](auto number) { AppendNumber(number, out); }},
             value);
}

std::string ToText(const ValueView& value) {
  std::string text;
  AppendText(value, text);
  return text;
}

}  // namespace tessel
