#pragma once

// How the rows of a recordset are arranged for who looks at them: in which order, and which of them
// are on show. Looking through many rows takes its time, so it is done in steps between which the
// interface lives (RowWork).

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"

namespace tessel {

/// One field to sort by.
struct SortKey {
  std::size_t field = 0;  ///< 0-based.
  bool descending = false;
  bool operator==(const SortKey&) const = default;
};

/// How texts are put in order. Either way texts that differ in nothing that counts keep the order
/// of their arrival.
enum class TextOrder {
  CodePoint,  ///< As Recordset::SetSort does: by code point without regard to ASCII case.
  Desktop     ///< As the desktop's language has it; where it names none, by code point.
};

/// Whether a text is one of those that are looked for. It is asked for very many texts, one after
/// the other, and never raises.
class TextTest {
 public:
  TextTest() = default;
  TextTest(const TextTest&) = delete;
  TextTest& operator=(const TextTest&) = delete;
  virtual ~TextTest() = default;

  /// `text` is UTF-8, or what the database gave as such: its bytes may be no valid characters. It
  /// is there only as long as the call takes.
  [[nodiscard]] virtual bool Holds(std::string_view text) const = 0;
};

/// How a cell is compared with a value: as rows are sorted, numbers by what they are worth,
/// whatever their types. Null is equal to null, and neither less nor more than anything; a value of
/// another kind, such as a text where a number is asked for, never passes but for NotEqual.
enum class Comparison { Equal, NotEqual, Less, AtMost, More, AtLeast };

/// What a row has to pass to be on show: a test of the texts of its cells, or a comparison.
struct RowCondition {
  /// The field that is looked at. Nothing: every field, and one that passes is enough.
  std::optional<std::size_t> field = {};
  /// The text of a value is that of ToText; null and bytes have none. Null: `value` is compared.
  std::shared_ptr<const TextTest> test = {};
  Comparison comparison = Comparison::Equal;
  Value value = {};
};

/// The order of rows and which of them are on show. Without keys and conditions all rows are on
/// show in the order of opening.
struct RowArrangement {
  /// The first counts most. Rows that are equal by all of them keep their order of arrival; with
  /// none that is the order. Nulls stand first, and last where the key is descending.
  std::vector<SortKey> sort = {};
  TextOrder textOrder = TextOrder::Desktop;
  /// A row is on show when it passes all of them.
  std::vector<RowCondition> conditions = {};
};

/// Work over the rows of a recordset, done in steps: whoever started it calls Step until it has
/// ended, and lets go of it to stop it. It may outlive its recordset, or the recordset may be
/// closed: then it does nothing more and has ended after the next step. No event is raised by it,
/// so whoever shows the rows is to look at them anew when it has ended. UI thread only.
class RowWork {
 public:
  RowWork() = default;
  RowWork(const RowWork&) = delete;
  RowWork& operator=(const RowWork&) = delete;
  virtual ~RowWork() = default;

  /// How much there is to do; never 0. It may change where rows change meanwhile.
  [[nodiscard]] virtual std::int64_t Total() const = 0;
  /// How much of it is done. It goes back where rows came or went and the work begins anew.
  [[nodiscard]] virtual std::int64_t Done() const = 0;
  /// Goes on for a few milliseconds, whatever there is to do: so that between two steps keys, mouse
  /// and painting have their turn. Does nothing once it has ended. What it raises ends it.
  virtual void Step() = 0;

  [[nodiscard]] bool HasEnded() const { return Done() >= Total(); }
  /// From 0 to 100.
  [[nodiscard]] int Percent() const {
    return static_cast<int>(100.0 * static_cast<double>(Done()) / static_cast<double>(Total()));
  }
};

/// What is looked for in the cells of the rows on show.
struct CellSearch {
  std::shared_ptr<const TextTest> test = {};  ///< Not null; texts are those of RowCondition.
  std::optional<std::size_t> field = {};      ///< Nothing: every field.
  std::int64_t from =
      0;  ///< The position to begin at. Behind the last row it goes on at the first.
  /// Called within Step with each cell that passes, row by row and in a row from the left. It must
  /// not change the rows.
  std::function<void(std::int64_t position, std::size_t field)> found = {};
};

}  // namespace tessel
