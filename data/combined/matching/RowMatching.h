#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "contract/data/CombinedRows.h"
#include "data/combined/matching/DifferingRows.h"
#include "data/combined/matching/RowSameness.h"
#include "data/combined/matching/RowTable.h"

namespace tessel {

/// The columns that two parts have in common.
struct MatchedColumns {
  std::vector<std::uint32_t> fields;  ///< Among the united ones, in order.
  std::vector<ColumnPair> pairs;      ///< The columns of each of `fields`.
  /// Those by which rows are found. Empty: by all of them.
  std::vector<ColumnPair> keys;
};

/// Finds the rows of two parts that are one another's, in small steps, by the rules of
/// RowComparison.
///
/// The rows of A go into a table by their keys, and each row of B is looked up in it. What equals
/// its row of A has been found then. Any other row of B waits: an equal one may still come. In the
/// end each takes the next row of A with its key that is left.
///
/// Meanwhile it takes for each row of A 12 to 24 bytes of the table and 4 for its partner, 8 bytes
/// for each row of B that waits, and as much as for A for those whose key A does not have.
class RowMatching {
 public:
  /// Raises Error(notSupported) for more rows than a table takes.
  RowMatching(std::vector<NamedPart> parts, MatchedColumns columns, ValueSameness values);

  [[nodiscard]] std::int64_t Total() const { return total_; }
  [[nodiscard]] std::int64_t Done() const { return done_; }
  void Step(std::int64_t rows);

  [[nodiscard]] const CompareCounts& Counts() const { return counts_; }
  [[nodiscard]] const std::shared_ptr<DifferingRows>& Differing() const { return differing_; }

 private:
  using Row = RowTable::Row;
  using Group = RowTable::Group;

  /// What is to be known of each of the two parts.
  struct Side {
    std::shared_ptr<const FixedRows> rows;
    std::vector<std::size_t> keys;
    std::vector<std::size_t> columns;  ///< All that are compared.

    [[nodiscard]] bool Same(const ValueSameness& values, const std::vector<std::size_t>& of,
                            std::int64_t x, std::int64_t y) const;
  };
  /// A part of the work: a function that does some of its rows, at most `most`, when `done` of them
  /// are done, and gives how many it did.
  struct Phase {
    std::int64_t rows = 0;
    std::int64_t (RowMatching::*work)(std::int64_t done, std::int64_t most) = nullptr;
  };
  /// A row of B that waits for what is left.
  struct Waiting {
    Group group = 0;
    Row row = 0;
  };
  /// What is forgotten when all is found.
  struct Tables {
    Tables(std::int64_t rowsOfA, std::int64_t rowsOfB);

    RowTable byKey;            ///< Rows of A.
    RowTable byColumns;        ///< Rows of A whose key several have, by all columns.
    RowTable onlyInB;          ///< Rows of B whose key A does not have.
    ZeroedArray<Row> partner;  ///< For each row of A: 0, that of B counted from 1, or `equal`.
    std::vector<bool> isOneOfSeveral;  ///< Rows of A.
    std::vector<bool> isVisited;       ///< Groups of `byKey` that a row of B has.
    std::vector<bool> isVisitedAgain;
    std::vector<bool> hasPartner;  ///< Rows of B.
    std::deque<Waiting> waiting;
    bool anySeveral = false;
  };
  static constexpr Row equal = 0xFFFFFFFF;

  // The phases, in their order.
  std::int64_t TakeIn(std::int64_t done, std::int64_t most);
  std::int64_t TakeInSeveral(std::int64_t done, std::int64_t most);
  std::int64_t LookUp(std::int64_t done, std::int64_t most);
  std::int64_t Settle(std::int64_t done, std::int64_t most);
  std::int64_t CollectA(std::int64_t done, std::int64_t most);
  std::int64_t CollectB(std::int64_t done, std::int64_t most);
  std::int64_t Finish(std::int64_t done, std::int64_t most);

  /// A row of B, with what was found of it at the first look.
  struct Looked {
    std::uint64_t hash = 0;
    Group group = 0;        ///< One whose hash fits.
    bool otherKey = false;  ///< The group is of another key.
    bool differs = false;   ///< Its first row has the key, and is not the same.
  };
  void LookAtAll(std::int64_t first, std::size_t count);
  void FindWhole(Row row, const Looked& looked);
  void FindByKey(Row row, Looked looked);
  void FindAmongSeveral(Row row, Group group);
  void NoteVisit(Group group);
  void NoteOnlyInB(Row row, std::uint64_t hash);
  void MatchEqual(Row a, Row b);

  Side a_;
  Side b_;
  MatchedColumns columns_;
  bool byKey_;
  std::vector<ColumnPair> others_;  ///< Those that are no keys.
  ValueSameness values_;
  RowSameness sameness_;
  std::shared_ptr<DifferingRows> differing_;
  CompareCounts counts_;
  std::optional<Tables> tables_;

  std::vector<Phase> phases_;
  std::size_t phase_ = 0;
  std::int64_t doneOfPhase_ = 0;
  std::int64_t done_ = 0;
  std::int64_t total_ = 0;

  // Of the rows that one step looks at, so that it need not make them anew.
  std::vector<std::uint64_t> hashes_;
  std::vector<Looked> looked_;
  std::vector<RowPair> pairs_;
  std::vector<std::uint8_t> otherKey_;
  std::vector<std::uint8_t> differ_;
};

}  // namespace tessel
