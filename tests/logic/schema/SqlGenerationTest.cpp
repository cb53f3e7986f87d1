#include "logic/schema/sql/SqlGeneration.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(SqlGenerationTest, TheFieldListStandsWithSeparatorsBetweenAndASuffixBehindEachField) {
  EXPECT_EQ(CheckedFieldList({"a", "b", "c"}, ", "), "a, b, c");
  EXPECT_EQ(CheckedFieldList({"a", "b"}, " AND ", " = "), "a =  AND b = ");
  EXPECT_EQ(CheckedFieldList({"a"}, ", ", " = "), "a = ");
  EXPECT_EQ(CheckedFieldList({}, ", ", " = "), "");
}

TEST(SqlGenerationTest, NamesWithASpaceOrALeadingDigitAreBracketedAndOthersAreNot) {
  EXPECT_EQ(CheckedFieldList({"Order ID", "2nd"}, ", "), "[Order ID], [2nd]");
  EXPECT_EQ(CheckedFieldList({"Sales-2005", "straße"}, ", "), "Sales-2005, straße");
}

TEST(SqlGenerationTest, SelectTakesTheCheckedFieldsOrAll) {
  EXPECT_EQ(TableSelectText("Orders", {}), "SELECT * FROM Orders\r\n");
  EXPECT_EQ(TableSelectText("Order Details", {"Order ID", "2nd"}),
            "SELECT [Order ID], [2nd] FROM [Order Details]\r\n");
}

TEST(SqlGenerationTest, CountGroupsOnlyByCheckedFields) {
  EXPECT_EQ(TableCountText("Orders", {}), "SELECT COUNT(*) AS n FROM Orders\r\n");
  EXPECT_EQ(TableCountText("Orders", {"a", "Order ID"}),
            "SELECT a, [Order ID], COUNT(*) AS n FROM Orders\r\nGROUP BY a, [Order ID]\r\n");
}

TEST(SqlGenerationTest, InsertBreaksItsLineBeforeTheValuesOnlyWithFields) {
  EXPECT_EQ(TableInsertText("Orders", {}), "INSERT INTO Orders VALUES()\r\n");
  EXPECT_EQ(TableInsertText("Orders", {"a", "b"}), "INSERT INTO Orders(a, b)\r\n VALUES()\r\n");
}

TEST(SqlGenerationTest, UpdateDeleteAndWhereLeaveTheValuesToBeTyped) {
  EXPECT_EQ(TableUpdateText("Orders", {"a", "b"}), "UPDATE Orders SET a = , b = \r\n");
  EXPECT_EQ(TableUpdateText("Orders", {}), "UPDATE Orders SET \r\n");
  EXPECT_EQ(TableDeleteText("Orders", {"a", "b"}), "DELETE FROM Orders WHERE a =  AND b = \r\n");
  EXPECT_EQ(TableDeleteText("Orders", {}), "DELETE FROM Orders WHERE \r\n");
  EXPECT_EQ(TableWhereText({"a", "b"}), "WHERE a =  AND b = ");
  EXPECT_EQ(TableWhereText({}), "WHERE ");
}

TEST(SqlGenerationTest, AFieldGivesItsExtremesAndItsDistinctValues) {
  EXPECT_EQ(FieldMinMaxText("Order Details", "Unit Price"),
            "SELECT MIN([Unit Price]) AS a, MAX([Unit Price]) AS b FROM [Order Details]\r\n");
  EXPECT_EQ(FieldMinMaxText("Orders", "id"), "SELECT MIN(id) AS a, MAX(id) AS b FROM Orders\r\n");
  EXPECT_EQ(DistinctValuesText("Orders", "ship to"), "SELECT DISTINCT [ship to] FROM Orders");
}

}  // namespace
}  // namespace tessel
