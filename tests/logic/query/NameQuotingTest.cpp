#include "logic/query/completion/NameQuoting.h"

#include <gtest/gtest.h>

#include "logic/query/completion/ReservedWords.h"

namespace tessel {
namespace {

TEST(QuoteIdentifierTest, BracketsNamesWithSpaceOrLeadingDigit) {
  EXPECT_EQ(QuoteIdentifier("Order Details"), "[Order Details]");
  EXPECT_EQ(QuoteIdentifier("2005Sales"), "[2005Sales]");
  EXPECT_EQ(QuoteIdentifier("Sales-2005"), "Sales-2005");
  EXPECT_EQ(QuoteIdentifier("a.b"), "a.b");
  EXPECT_EQ(QuoteIdentifier("a ]b"), "[a ]b]");
  EXPECT_EQ(QuoteIdentifier(""), "");
}

enum class IdentifierCase { Upper = 1, Lower = 2, Kept = 4 };

Properties Told(const std::string& quote, IdentifierCase kept) {
  Properties properties;
  properties.Set("Bracket Identifiers", std::int64_t{0});
  properties.Set("Identifier Quote Character", quote);
  properties.Set("Identifier Case Sensitivity", static_cast<std::int64_t>(kept));
  return properties;
}

NameQuoting Postgres() {
  Properties properties = Told("\"", IdentifierCase::Lower);
  properties.Set("Schema By Rowsets", std::int64_t{1});
  return NameQuoting(properties);
}

NameQuoting Maria() { return NameQuoting(Told("`", IdentifierCase::Kept)); }

TEST(NameQuotingTest, WithoutAWordOfTheProviderNamesAreQuotedAsEver) {
  Properties told;
  told.Set("Identifier Quote Character", std::string("\""));
  told.Set("Identifier Case Sensitivity", std::int64_t{2});
  for (const NameQuoting& quoting : {NameQuoting(), NameQuoting(told)}) {
    EXPECT_EQ(quoting.Name("Order ID"), "[Order ID]");
    EXPECT_EQ(quoting.Name("2nd"), "[2nd]");
    EXPECT_EQ(quoting.Name("OrderId"), "OrderId");
    EXPECT_EQ(quoting.Name("order"), "order");
    EXPECT_EQ(quoting.Table("dbo.Orders"), "dbo.Orders");
  }
  told.Set("Bracket Identifiers", std::int64_t{1});
  EXPECT_EQ(NameQuoting(told).Name("Order ID"), "[Order ID]");
}

TEST(NameQuotingTest, ADatabaseThatFoldsToSmallLettersGetsItsQuotesWhereTheyAreNeeded) {
  const NameQuoting quoting = Postgres();
  EXPECT_EQ(quoting.Name("Order ID"), "\"Order ID\"");
  EXPECT_EQ(quoting.Name("OrderId"), "\"OrderId\"");
  EXPECT_EQ(quoting.Name("order_id2"), "order_id2");
  EXPECT_EQ(quoting.Name("2nd"), "\"2nd\"");
  EXPECT_EQ(quoting.Name("order"), "\"order\"");
  EXPECT_EQ(quoting.Name("user"), "\"user\"");
  EXPECT_EQ(quoting.Name("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(quoting.Name("zo\xC3\xAB"), "\"zo\xC3\xAB\"");
  EXPECT_EQ(quoting.Name("a]b"), "\"a]b\"");
  EXPECT_EQ(quoting.Name(""), "\"\"");
}

TEST(NameQuotingTest, ADatabaseThatKeepsTheCaseTakesCapitalsAsTheyAre) {
  const NameQuoting quoting = Maria();
  EXPECT_EQ(quoting.Name("OrderId"), "OrderId");
  EXPECT_EQ(quoting.Name("Order ID"), "`Order ID`");
  EXPECT_EQ(quoting.Name("Key"), "`Key`");
  EXPECT_EQ(quoting.Name("a`b"), "`a``b`");
}

TEST(NameQuotingTest, ADatabaseThatFoldsToCapitalsHasSmallLettersInQuotes) {
  const NameQuoting quoting(Told("\"", IdentifierCase::Upper));
  EXPECT_EQ(quoting.Name("ORDERS"), "ORDERS");
  EXPECT_EQ(quoting.Name("orders"), "\"orders\"");
}

TEST(NameQuotingTest, AQuoteThatCannotBeOneIsTheStandardsOwn) {
  for (const char* told : {"", " ", "<<"})
    EXPECT_EQ(NameQuoting(Told(told, IdentifierCase::Kept)).Name("a b"), "\"a b\"");
}

TEST(NameQuotingTest, ListedTablesWithASchemaAreQuotedPartByPart) {
  const NameQuoting quoting = Postgres();
  EXPECT_EQ(quoting.Table("archive.orders"), "archive.orders");
  EXPECT_EQ(quoting.Table("My Archive.Orders"), "\"My Archive\".\"Orders\"");
  for (const auto& [schema, table] :
       {std::pair("a.b", "c"), std::pair("a", "b.c"), std::pair("", "a.b"),
        std::pair("\"odd", "x\"y"), std::pair("", "\"odd\""), std::pair("", "plain")}) {
    const std::string listed = quoting.ListedTable(schema, table);
    const std::string expected =
        (*schema == '\0' ? "" : quoting.Name(schema) + ".") + quoting.Name(table);
    EXPECT_EQ(quoting.Table(listed), expected) << listed;
  }
  EXPECT_EQ(quoting.ListedTable("archive", "orders"), "archive.orders");
  EXPECT_EQ(quoting.ListedTable("", "Order ID"), "Order ID");
}

TEST(NameQuotingTest, WhereTablesAreListedAloneADotIsPartOfTheirName) {
  EXPECT_EQ(Maria().Table("a.b"), "`a.b`");
}

TEST(NameQuotingTest, WrittenNamesStayAsSqlReadsThem) {
  const NameQuoting quoting = Postgres();
  EXPECT_EQ(quoting.Written("Orders"), "Orders");
  EXPECT_EQ(quoting.Written("archive.Orders"), "archive.Orders");
  EXPECT_EQ(quoting.Written("Zo\xC3\xAB$1"), "Zo\xC3\xAB$1");
  EXPECT_EQ(quoting.Written("my-table"), "\"my-table\"");
  EXPECT_EQ(quoting.Written("\"Order Details\""), "\"Order Details\"");
  EXPECT_EQ(quoting.Written("archive.\"Orders\""), "archive.\"Orders\"");
  EXPECT_EQ(quoting.Written("Order Details"), "\"Order Details\"");
  EXPECT_EQ(quoting.Written("[Order Details]"), "\"Order Details\"");
  EXPECT_EQ(quoting.Written("order"), "\"order\"");
  EXPECT_EQ(quoting.Written("a.\"b"), "\"a.\"\"b\"");
}

TEST(NameQuotingTest, WrittenNamesAreBracketedWhereBracketsAreTaken) {
  const NameQuoting quoting;
  EXPECT_EQ(quoting.Written("Orders"), "Orders");
  EXPECT_EQ(quoting.Written("Order Details"), "[Order Details]");
  EXPECT_EQ(quoting.Written("[Order Details]"), "[Order Details]");
  EXPECT_EQ(quoting.Written("dbo.\"Order Details\""), "dbo.[Order Details]");
  EXPECT_EQ(quoting.Written("dbo.Orders"), "dbo.Orders");
}

TEST(NameQuotingTest, TheLengthOfATablesNameCountsItsQuotes) {
  EXPECT_EQ(TableNameLength("orders where"), 6U);
  EXPECT_EQ(TableNameLength("[Order Details] o"), 15U);
  EXPECT_EQ(TableNameLength("a.\"b \"\"c\".d;"), 11U);
  EXPECT_EQ(TableNameLength("`a`"), 3U);
  EXPECT_EQ(TableNameLength("[Order"), 0U);
  EXPECT_EQ(TableNameLength("(select"), 0U);
  EXPECT_EQ(TableNameLength("a. b"), 0U);
  EXPECT_EQ(TableNameLength(""), 0U);
}

TEST(ReservedWordsTest, AreKnownInAnyCase) {
  for (const char* word : {"select", "SELECT", "Order", "user", "key", "zerofill", "accessible"})
    EXPECT_TRUE(IsReservedWord(word)) << word;
  for (const char* word : {"", "orders", "id", "name", "selects"})
    EXPECT_FALSE(IsReservedWord(word)) << word;
}

}  // namespace
}  // namespace tessel
