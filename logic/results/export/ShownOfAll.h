#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "contract/data/CombinedRows.h"

namespace tessel {

/// The rows on show of several results, one result behind the other, as they are sorted and
/// filtered. Merged rows have the order of opening, and this tells where each row stands in them.
/// UI thread.
class ShownOfAll {
 public:
  /// Those of which the merged rows were made. They have to be open.
  explicit ShownOfAll(const std::vector<NamedRows>& parts);
  ShownOfAll(const ShownOfAll&) = delete;
  ShownOfAll& operator=(const ShownOfAll&) = delete;
  ~ShownOfAll();

  [[nodiscard]] std::int64_t Count() const { return count_; }
  /// The position in the merged rows of row number `row` of those on show. Raises Error when it is
  /// not there any more.
  [[nodiscard]] std::int64_t Merged(std::int64_t row) const;

 private:
  struct Part {
    std::shared_ptr<Recordset> rows;
    std::shared_ptr<Recordset> opened;  ///< The same in the order of opening.
    std::int64_t firstShown = 0;
    std::int64_t firstMerged = 0;
  };

  std::vector<Part> parts_;  ///< Those that have rows on show.
  std::int64_t count_ = 0;
};

}  // namespace tessel
