#include "logic/results/runs/HistoryRing.h"

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel {
namespace {

HistoryEntry Entry(const std::string& sql, const std::string& tagged = "") {
  return {tagged.empty() ? sql : tagged, 0, sql, 1};
}

TEST(HistoryRingTest, StartsEmpty) {
  const HistoryRing ring;
  EXPECT_EQ(ring.Position(), -1);
  EXPECT_EQ(ring.Count(), 0);
}

TEST(HistoryRingTest, TheSameSqlTwiceInARowIsOneEntryAndAnotherTaggedTextASecond) {
  HistoryRing ring;
  ring.RecordNew(Entry("select 1"));
  ring.RecordNew(Entry("select 1"));
  EXPECT_EQ(ring.Count(), 1);
  ring.RecordNew(Entry("select 1", "select <%?x%>"));
  EXPECT_EQ(ring.Count(), 2);
  ring.RecordNew(Entry("SELECT 1", "select <%?x%>"));
  EXPECT_EQ(ring.Count(), 3);
}

TEST(HistoryRingTest, ARepeatedQueryKeepsItsTagKindAndTakesTheNewCount) {
  HistoryRing ring;
  ring.RecordNew({"t", 1, "select 1", 5});
  ring.RecordNew({"t", 2, "select 1", 7});
  EXPECT_EQ(ring.At(0).tagKind, 1);
  EXPECT_EQ(ring.At(0).recordCount, 7);
}

TEST(HistoryRingTest, The33rdQueryDropsTheOldest) {
  HistoryRing ring;
  for (int i = 0; i < 32; ++i) ring.RecordNew(Entry(std::to_string(i)));
  EXPECT_EQ(ring.Position(), 31);
  ring.RecordNew(Entry("32"));
  EXPECT_EQ(ring.Position(), 31);
  EXPECT_EQ(ring.Count(), 32);
  EXPECT_EQ(ring.At(0).sql, "1");
  EXPECT_EQ(ring.At(31).sql, "32");
}

TEST(HistoryRingTest, ANewQueryAfterSteppingBackCutsTheForwardEntries) {
  HistoryRing ring;
  for (int i = 0; i < 5; ++i) ring.RecordNew(Entry(std::to_string(i)));
  ring.RecordRerun(2, "2", 9);
  EXPECT_EQ(ring.Count(), 5);
  ring.RecordNew(Entry("new"));
  EXPECT_EQ(ring.Position(), 3);
  EXPECT_EQ(ring.Count(), 4);
  EXPECT_FALSE(ring.Has(4));
}

TEST(HistoryRingTest, After32767DroppedEntriesTheNextAdditionFails) {
  HistoryRing ring;
  for (int i = 0; i < 32 + 32767; ++i) ring.RecordNew(Entry(std::to_string(i)));
  EXPECT_THROW(ring.RecordNew(Entry("one more")), Error);
  EXPECT_EQ(ring.At(31).sql, std::to_string(32 + 32767 - 1));
}

TEST(ShortenForTipTest, CutsBehind80Characters) {
  const std::string eighty(80, 'x');
  EXPECT_EQ(ShortenForTip(eighty), eighty);
  EXPECT_EQ(ShortenForTip(eighty + "y"), eighty + "...");
  std::string umlauts;
  for (int i = 0; i < 80; ++i) umlauts += "ü";
  EXPECT_EQ(ShortenForTip(umlauts), umlauts);
  EXPECT_EQ(ShortenForTip(umlauts + "ü"), umlauts + "...");
}

TEST(ShortenForTipTest, PutsTheTextInOneLine) {
  EXPECT_EQ(ShortenForTip("a\r\nb\tc\nd"), "a  b c  d") << "either line end that the editor has";
  EXPECT_EQ(ShortenForTip("a\rb\r"), "a\rb\r");
}

}  // namespace
}  // namespace tessel
