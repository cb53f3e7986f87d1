#pragma once

#include <QWidget>
#include <memory>
#include <string_view>

namespace tessel {

/// The widgets of the form of that name; null when there is no such form.
[[nodiscard]] std::unique_ptr<QWidget> MakeForm(std::string_view name);

}  // namespace tessel
