#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "contract/base/Error.h"
#include "data/rows/RowSink.h"
#include "data/rows/RowStore.h"

namespace tessel::test {

namespace {

Bytes BytesOf(std::string_view text) {
  const auto* first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

/// A store of one column.
RowStore StoreOf(const std::vector<Value>& values) {
  RowSink sink(1);
  for (const Value& value : values) {
    sink.Column(0).Append(value);
    sink.EndRow();
  }
  sink.CloseChunk();
  RowStore store;
  for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  return store;
}

std::vector<Value> ValuesOf(const RowStore& store) {
  std::vector<Value> values;
  for (std::int64_t row = 0; row < store.Rows(); ++row) values.push_back(ToValue(store.At(row, 0)));
  return values;
}

CellKind KindOf(const RowStore& store) { return store.Chunks().at(0)->columns.at(0).kind; }

const std::vector<Value> oneOfEach = {Value(true),
                                      Value(std::int64_t{-5}),
                                      Value(std::uint64_t{18446744073709551615U}),
                                      Value(1.5F),
                                      Value(-0.1),
                                      Value(Decimal{"1.10"}),
                                      Value(Moment{"2024-01-01"}),
                                      Value(std::string("text")),
                                      Value(BytesOf("bytes"))};

}  // namespace

TEST(RowStore, KeepsColumnsOfOneKindInTheirOwnForm) {
  for (const Value& value : oneOfEach) {
    const std::vector<Value> values = {value, value};
    const RowStore store = StoreOf(values);
    EXPECT_EQ(ValuesOf(store), values);
    EXPECT_EQ(static_cast<std::size_t>(KindOf(store)), value.index());
  }
}

TEST(RowStore, KeepsNullsBeforeBetweenAndBehindValues) {
  for (const Value& value : oneOfEach) {
    const std::vector<Value> values = {Value(), Value(), value, Value(), value, Value()};
    EXPECT_EQ(ValuesOf(StoreOf(values)), values);
  }
  const std::vector<Value> nulls(5);
  EXPECT_EQ(ValuesOf(StoreOf(nulls)), nulls);
  EXPECT_EQ(KindOf(StoreOf(nulls)), CellKind::Null);
}

TEST(RowStore, KeepsEveryKindBesideEveryOther) {
  for (const Value& first : oneOfEach) {
    std::vector<Value> values = {Value(), first, first, Value()};
    values.insert(values.end(), oneOfEach.begin(), oneOfEach.end());
    values.emplace_back();
    values.push_back(first);
    const RowStore store = StoreOf(values);
    EXPECT_EQ(KindOf(store), CellKind::Mixed);
    EXPECT_EQ(ValuesOf(store), values);
  }
}

TEST(RowStore, TellsEmptyTextFromNull) {
  const std::vector<Value> values = {Value(std::string()), Value(), Value(std::string()),
                                     Value(Bytes()), Value()};
  EXPECT_EQ(ValuesOf(StoreOf(values)), values);
}

TEST(RowStore, KeepsExtremeNumbersExactly) {
  const std::vector<Value> values = {Value(std::numeric_limits<std::int64_t>::min()),
                                     Value(std::numeric_limits<std::int64_t>::max()),
                                     Value(std::numeric_limits<double>::denorm_min()),
                                     Value(std::numeric_limits<double>::infinity()),
                                     Value(std::numeric_limits<float>::lowest())};
  EXPECT_EQ(ValuesOf(StoreOf(values)), values);
}

TEST(RowStore, KeepsTextThatIsNoValidUtf8AsItIs) {
  const std::string odd("a\xFF\xC3\0\xED\xA0\x80z", 8);
  EXPECT_EQ(ValuesOf(StoreOf({Value(odd)})), std::vector<Value>{Value(odd)});
}

TEST(RowStore, FindsRowsAcrossChunks) {
  RowSink sink(2);
  constexpr std::int64_t rows = 3 * 65536 + 17;
  for (std::int64_t row = 0; row < rows; ++row) {
    sink.Column(0).AppendInteger(row);
    if (row % 3 == 0) sink.Column(1).AppendNull();
    else sink.Column(1).AppendText(std::to_string(row));
    sink.EndRow();
  }
  sink.CloseChunk();
  RowStore store;
  for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  EXPECT_EQ(store.Chunks().size(), 4U);
  ASSERT_EQ(store.Rows(), rows);
  for (const std::int64_t row : {0L, 65535L, 65536L, 131071L, 196607L, rows - 1, 5L}) {
    EXPECT_EQ(ToValue(store.At(row, 0)), Value(row));
    const ValueView text = store.At(row, 1);
    EXPECT_EQ(ToText(text), row % 3 == 0 ? "" : std::to_string(row));
    EXPECT_EQ(IsNull(text), row % 3 == 0);
  }
}

TEST(RowStore, FindsRowsInChunksOfAnySize) {
  RowStore store;
  std::int64_t next = 0;
  for (const int size : {1, 1, 7, 300, 2}) {
    RowSink sink(1);
    for (int i = 0; i < size; ++i) {
      sink.Column(0).AppendInteger(next++);
      sink.EndRow();
    }
    sink.CloseChunk();
    for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  }
  for (std::int64_t row = store.Rows() - 1; row >= 0; --row)
    EXPECT_EQ(ToValue(store.At(row, 0)), Value(row));
}

TEST(RowStore, DropsARowThatWasNotEnded) {
  RowSink sink(3);
  for (int row = 0; row < 2; ++row) {
    sink.Column(0).AppendText("kept");
    sink.Column(1).AppendNull();
    sink.Column(2).AppendInteger(row);
    sink.EndRow();
  }
  sink.Column(0).AppendText("dropped");
  sink.Column(1).AppendDouble(1);
  sink.CloseChunk();
  RowStore store;
  for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  ASSERT_EQ(store.Rows(), 2);
  EXPECT_EQ(ToValue(store.At(1, 0)), Value(std::string("kept")));
  EXPECT_TRUE(IsNull(store.At(1, 1)));

  sink.Column(0).AppendInteger(1);  // The columns start anew.
  sink.Column(1).AppendText("x");
  sink.Column(2).AppendNull();
  sink.EndRow();
  sink.CloseChunk();
  const ChunkPtr next = sink.TakeChunks().at(0);
  EXPECT_EQ(next->rows, 1U);
  EXPECT_EQ(ToValue(next->columns[0].At(0)), Value(std::int64_t{1}));
  EXPECT_EQ(ToValue(next->columns[1].At(0)), Value(std::string("x")));
}

TEST(RowStore, DropsACellThatWasNotEndedInAMixedColumn) {
  RowSink sink(1);
  for (const Value& value : oneOfEach) {
    sink.Column(0).Append(value);
    sink.EndRow();
  }
  sink.Column(0).AppendText("dropped");
  sink.CloseChunk();
  const ChunkPtr chunk = sink.TakeChunks().at(0);
  EXPECT_EQ(chunk->rows, oneOfEach.size());
  EXPECT_EQ(ToValue(chunk->columns[0].At(oneOfEach.size() - 1)), oneOfEach.back());
}

TEST(RowStore, WithoutRowsHasNoChunks) {
  RowSink sink(2);
  sink.Column(0).AppendText("begun only");
  sink.CloseChunk();
  EXPECT_TRUE(sink.TakeChunks().empty());
  EXPECT_EQ(sink.Rows(), 0);
}

TEST(RowStore, ClosesAChunkEarlyWhenItsTextIsLarge) {
  RowSink sink(2);
  const std::string large(20U << 20U, 'l');
  for (int row = 0; row < 10; ++row) {
    sink.Column(0).AppendInteger(row);
    sink.Column(1).AppendText(large);
    sink.EndRow();
  }
  sink.CloseChunk();
  const std::vector<ChunkPtr> chunks = sink.TakeChunks();
  ASSERT_EQ(chunks.size(), 3U);
  EXPECT_EQ(chunks[0]->rows, 4U);
  EXPECT_EQ(sink.Rows(), 10);
  EXPECT_EQ(std::get<std::string_view>(chunks[2]->columns[1].At(1)), large);
}

TEST(RowStore, HoldsAValueOf100Megabytes) {
  std::string huge(100'000'000, 'h');
  huge.back() = 'e';
  const RowStore store =
      StoreOf({Value(std::string("before")), Value(huge), Value(BytesOf("after"))});
  EXPECT_EQ(std::get<std::string_view>(store.At(1, 0)), huge);
  EXPECT_EQ(ToText(store.At(0, 0)), "before");
  EXPECT_EQ(ToText(store.At(2, 0)), "after");
}

TEST(RowStore, RefusesAValueThatNoChunkCanHold) {
  ColumnBuilder column;
  const char none = 'x';
  const std::string_view pretended(&none, ColumnBuilder::largestCell + 1);
  EXPECT_THROW(column.AppendText(pretended), Error);
  EXPECT_EQ(column.Rows(), 0U);
}

TEST(RowStore, TakesHardlyMoreMemoryThanItsCells) {
  RowSink sink(4);
  constexpr std::int64_t rows = 200'000;
  std::size_t textBytes = 0;
  for (std::int64_t row = 0; row < rows; ++row) {
    const std::string text = "some text of row " + std::to_string(row);
    textBytes += text.size();
    sink.Column(0).AppendInteger(row);
    sink.Column(1).AppendDouble(0.5);
    sink.Column(2).AppendText(text);
    sink.Column(3).AppendBoolean(true);
    sink.EndRow();
  }
  sink.CloseChunk();
  RowStore store;
  for (ChunkPtr& chunk : sink.TakeChunks()) store.Add(std::move(chunk));
  const std::size_t cells = rows * (8 + 8 + 4 + 1) + textBytes;
  EXPECT_EQ(store.HeldBytes(), cells);
}

TEST(RowStore, NullsTakeABitInAColumnThatHasSome) {
  RowSink sink(2);
  for (int row = 0; row < 640; ++row) {
    sink.Column(0).AppendInteger(row);
    if (row == 100) sink.Column(1).AppendNull();
    else sink.Column(1).AppendInteger(row);
    sink.EndRow();
  }
  sink.CloseChunk();
  const ChunkPtr chunk = sink.TakeChunks().at(0);
  EXPECT_EQ(chunk->columns[0].HeldBytes(), 640U * 8);
  EXPECT_EQ(chunk->columns[1].HeldBytes(), 640U * 8 + 640 / 8);
}

}  // namespace tessel::test
