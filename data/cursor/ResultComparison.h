#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/data/CombinedRows.h"
#include "data/combined/matching/RowMatching.h"
#include "data/cursor/rows/FixedRecordset.h"

namespace tessel {

/// The comparison of two results of this data layer. UI thread.
class ResultComparison final : public RowComparison {
 public:
  /// `parts` are A and B. `keys` and `sameness` are those of a CompareRequest, whose errors it
  /// raises.
  ResultComparison(std::vector<NamedPart> parts, const std::vector<std::string>& keys,
                   ValueSameness sameness);

  [[nodiscard]] std::int64_t Total() const override { return matching_->Total(); }
  [[nodiscard]] std::int64_t Done() const override { return matching_->Done(); }
  void Step(std::int64_t rows) override { matching_->Step(rows); }
  [[nodiscard]] const std::vector<std::string>& OnlyInA() const override { return onlyInA_; }
  [[nodiscard]] const std::vector<std::string>& OnlyInB() const override { return onlyInB_; }
  [[nodiscard]] const CompareCounts& Counts() const override { return matching_->Counts(); }
  [[nodiscard]] std::shared_ptr<Recordset> Rows() const override;
  [[nodiscard]] bool IsChanged(Bookmark row, std::size_t field) const override;

 private:
  [[nodiscard]] MatchedColumns Match(const UnitedColumns& united);

  std::vector<std::string> onlyInA_;
  std::vector<std::string> onlyInB_;
  std::unique_ptr<RowMatching> matching_;
};

}  // namespace tessel
