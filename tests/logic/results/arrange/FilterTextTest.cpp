#include "logic/results/arrange/FilterText.h"

#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

class FilterTextTest : public test::RecordsFixture {
 protected:
  FilterTextTest() {
    EXPECT_TRUE(Connect());
    data.Answer("select",
                {MemoryField("n", DataType::Integer), MemoryField("t"),
                 MemoryField("d", DataType::DBDate), MemoryField("b", DataType::Boolean)},
                {});
    EXPECT_TRUE(Run("select"));
  }

  [[nodiscard]] std::optional<RowCondition>
  Of(const char* text, std::optional<std::size_t> field = {}, FindOptions options = {}) {
    return ConditionOf(text, field, *Grid().DataSource(), options);
  }
};

TEST_F(FilterTextTest, ATextIsToBeHeld) {
  const auto condition = Of("  wien ", 1);
  ASSERT_TRUE(condition && condition->test);
  EXPECT_EQ(condition->field, 1U);
  EXPECT_TRUE(condition->test->Holds("in WIEN"));
  EXPECT_FALSE(Of("   "));
  EXPECT_TRUE(Of("=")->test) << "a sign alone";
  EXPECT_TRUE(Of("\">5\"")->test->Holds("x>5"));
  EXPECT_TRUE(Of("^a.c", 1, {.regularExpression = true})->test->Holds("abcd"));
  EXPECT_THROW(static_cast<void>(Of("(", 1, {.regularExpression = true})), Error);
}

TEST_F(FilterTextTest, SignsCompareValuesOfTheColumnsType) {
  EXPECT_EQ(Of(">= 5.50", 0)->value, Value(Decimal{"5.50"}));
  EXPECT_EQ(Of(">= 5.50", 0)->comparison, Comparison::AtLeast);
  EXPECT_EQ(Of("<>x", 1)->value, Value(std::string("x")));
  EXPECT_EQ(Of("<>x", 1)->comparison, Comparison::NotEqual);
  EXPECT_EQ(Of("<2024-05", 2)->value, Value(Moment{"2024-05"}));
  EXPECT_EQ(Of("=true", 3)->value, Value(true));
  EXPECT_EQ(Of("=\"5\"", 1)->value, Value(std::string("5")));
  EXPECT_EQ(Of("<=null", 1)->value, Value());
  EXPECT_EQ(Of(">7")->value, Value(Decimal{"7"}));
  EXPECT_EQ(Of("=seven")->value, Value(std::string("seven")));
}

TEST_F(FilterTextTest, AValueThatIsNoneOfTheColumnIsToldOf) {
  try {
    static_cast<void>(Of(">abc", 0));
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "'abc' is no value of the column 'n'.");
  }
}

}  // namespace
}  // namespace tessel
