#include "contract/base/Properties.h"

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel {

void Properties::Set(std::string_view name, Value value) {
  for (Property& item : items_) {
    if (!EqualNoCase(item.name, name)) continue;
    item.value = std::move(value);
    return;
  }
  items_.push_back({std::string(name), std::move(value)});
}

const Property* Properties::Find(std::string_view name) const {
  for (const Property& item : items_)
    if (EqualNoCase(item.name, name)) return &item;
  return nullptr;
}

const Value& Properties::At(std::string_view name) const {
  if (const Property* item = Find(name)) return item->value;
  throw Error(errorNumber::itemNotFound, "Tessel",
              "There is no property '" + std::string(name) + "'.");
}

std::int64_t Properties::Number(std::string_view name, std::int64_t fallback) const {
  const Property* item = Find(name);
  if (item == nullptr) return fallback;
  if (const auto* number = std::get_if<std::int64_t>(&item->value)) return *number;
  if (const auto* flag = std::get_if<bool>(&item->value)) return *flag ? 1 : 0;
  return fallback;
}

}  // namespace tessel
