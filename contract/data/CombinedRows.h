#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"

namespace tessel {

/// Rows, and what a person calls the place that they came from: the caption of a connection. Names
/// need not differ.
struct NamedRows {
  std::string name;
  /// Open; of the same DataAccess. Null: a result without columns, which has no rows either.
  std::shared_ptr<Recordset> rows;
};

// Merged and compared rows are read-only recordsets without a connection. They copy no value: they
// refer to the rows of their parts, and keep them when the parts are closed and their connections
// are gone. They stand for the moment at which they were made: with the rows that had come by then,
// in the order of opening whatever the parts are sorted by, and as the database was last seen to
// hold them, without a change that is pending. What is changed, added or deleted in a part later is
// not seen in them.

/// What is to be compared, and how.
struct CompareRequest {
  NamedRows a;
  NamedRows b;
  /// Names of the columns by which a row of one is found in the other, as FindField takes them;
  /// both have them. Empty: whole rows are counted, and none is changed.
  std::vector<std::string> keys;
  /// True is the number 1 and false is 0; else a boolean never equals a number.
  bool booleansAreNumbers = false;
};

/// How many rows there are of each state. A pair of rows that were found to be one another's is
/// counted once, as changed or equal.
struct CompareCounts {
  std::int64_t onlyInA = 0;
  std::int64_t onlyInB = 0;
  std::int64_t changed = 0;
  std::int64_t equal = 0;
  /// Keys that several rows of one result have. Of such rows first those that are equal find each
  /// other, then what is left in the order of arrival.
  std::int64_t keysNotUnique = 0;
};

/// Compares two results, in small steps, so that the interface lives meanwhile. Letting go of it
/// ends it. UI thread only.
///
/// Columns are matched by their names, without regard to case: the second of a name with the second
/// of that name. Values are compared, not their texts:
/// - Numbers of all kinds by what they are worth: 1.50 is 1.5, -0.0 is 0, and not-a-number equals
///   itself. A floating number is worth the shortest decimal that reads back the same, which is
///   what is shown of it: 0.1 is the decimal 0.1, in single and in double precision. A whole one of
///   less than 2 to the 64th is worth exactly itself.
/// - Moments with a time zone by their instant, others by what they name: 10:00:00.50 is
/// 10:00:00.5,
///   a date is its midnight. One with a zone never equals one without.
/// - Text by its code points, bytes by bytes, null is null and nothing else. Values of unlike
/// kinds,
///   such as a text and a number, never are equal.
class RowComparison {
 public:
  RowComparison() = default;
  RowComparison(const RowComparison&) = delete;
  RowComparison& operator=(const RowComparison&) = delete;
  virtual ~RowComparison() = default;

  /// How much there is to do, in rows looked at; the same from the beginning on. Never 0.
  [[nodiscard]] virtual std::int64_t Total() const = 0;
  /// How much of it is done. Done() == Total(): it has ended.
  [[nodiscard]] virtual std::int64_t Done() const = 0;
  /// Does some more, at most `rows` (more than 0) and no more than a few milliseconds' worth; at
  /// least one. Does nothing once it has ended.
  virtual void Step(std::int64_t rows) = 0;

  /// Names of the columns that only one of the two has: they are not compared.
  [[nodiscard]] virtual const std::vector<std::string>& OnlyInA() const = 0;
  [[nodiscard]] virtual const std::vector<std::string>& OnlyInB() const = 0;

  /// Only after the end, as all that follows.
  [[nodiscard]] virtual const CompareCounts& Counts() const = 0;
  /// The rows that differ: those of A, in their order, each changed one followed by its row of B;
  /// then those only in B. The fields are "State" ("only in <A>", "only in <B>", "changed"),
  /// "Connection", "Changed" (the names of the columns that differ, joined by ", "; null unless the
  /// state is "changed"), then the columns of both united as by DataAccess::MergeRows.
  [[nodiscard]] virtual std::shared_ptr<Recordset> Rows() const = 0;
  /// Whether that cell of Rows, or of a clone, differs from the one of the other row of its pair.
  [[nodiscard]] virtual bool IsChanged(Bookmark row, std::size_t field) const = 0;
};

}  // namespace tessel
