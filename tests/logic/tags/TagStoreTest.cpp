#include "logic/tags/TagStore.h"

#include <gtest/gtest.h>

#include "contract/base/Error.h"

namespace tessel {
namespace {

using Values = TagStore::Values;

class TagStoreTest : public ::testing::Test {
 protected:
  template <class Action>
  static std::string Failure(Action action) {
    try {
      action();
      return "no failure";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::application);
      return error.Description();
    }
  }
  void Give(std::string_view name, const Values& values) {
    for (const std::string& value : values) store.SetCurrent(name, value);
  }

  TagStore store;
};

TEST_F(TagStoreTest, BeginsEmpty) {
  EXPECT_FALSE(store.Has("a"));
  EXPECT_TRUE(store.ValuesOf("a").empty());
}

TEST_F(TagStoreTest, FindsATagInUpperAndLowerCase) {
  store.Add("\xC3\x84rea");
  EXPECT_EQ(TagStore::KeyOf("\xC3\xA4rea"), "\xC3\x84REA");
  EXPECT_TRUE(store.Has("\xC3\xA4REA"));
  store.SetCurrent("\xC3\xA4rea", "1");
  EXPECT_EQ(store.ValuesOf("\xC3\x84REA"), Values{"1"});
}

TEST_F(TagStoreTest, ATagThatWasAddedHasNoValue) {
  store.Add("a");
  EXPECT_TRUE(store.Has("A"));
  EXPECT_TRUE(store.ValuesOf("a").empty());
}

TEST_F(TagStoreTest, ATakenNameIsRefused) {
  store.Add("a");
  Give("a", {"1"});
  EXPECT_EQ(Failure([this] { store.Add("A"); }), "There is already a tag 'A'.");
  EXPECT_EQ(store.ValuesOf("a"), Values{"1"});
}

TEST_F(TagStoreTest, NewValuesComeLast) {
  store.Add("a");
  Give("a", {"1", "2", "3"});
  EXPECT_EQ(store.ValuesOf("a"), (Values{"1", "2", "3"}));
}

TEST_F(TagStoreTest, AValueRememberedBeforeMovesToTheEndAndTheOthersKeepTheirOrder) {
  store.Add("a");
  Give("a", {"1", "2", "3", "1"});
  EXPECT_EQ(store.ValuesOf("a"), (Values{"2", "3", "1"}));
  Give("a", {"1"});
  EXPECT_EQ(store.ValuesOf("a"), (Values{"2", "3", "1"}));
  Give("a", {"x", "X"});
  EXPECT_EQ(store.ValuesOf("a"), (Values{"2", "3", "1", "x", "X"}));
  store.SetCurrent("a", store.ValuesOf("a").front());
  EXPECT_EQ(store.ValuesOf("a"), (Values{"3", "1", "x", "X", "2"}));
}

TEST_F(TagStoreTest, ARenamedTagKeepsItsValues) {
  store.Add("a");
  Give("a", {"1", "2"});
  store.Rename("A", "b");
  EXPECT_FALSE(store.Has("a"));
  EXPECT_EQ(store.ValuesOf("B"), (Values{"1", "2"}));
}

TEST_F(TagStoreTest, ARenamingToTheSameNameInAnotherCaseChangesNothing) {
  store.Add("a");
  Give("a", {"1"});
  store.Rename("a", "A");
  EXPECT_EQ(store.ValuesOf("a"), Values{"1"});
}

TEST_F(TagStoreTest, ARenamingToATakenNameChangesNothing) {
  store.Add("a");
  store.Add("b");
  Give("a", {"1"});
  Give("b", {"2"});
  EXPECT_EQ(Failure([this] { store.Rename("a", "B"); }), "There is already a tag 'B'.");
  EXPECT_EQ(store.ValuesOf("a"), Values{"1"});
  EXPECT_EQ(store.ValuesOf("b"), Values{"2"});
}

TEST_F(TagStoreTest, WhatIsNotThereCannotBeRenamedOrGivenAValue) {
  EXPECT_EQ(Failure([this] { store.Rename("a", "b"); }), "Undefined tag: 'a'");
  EXPECT_EQ(Failure([this] { store.SetCurrent("a", "1"); }), "Undefined tag: 'a'");
  EXPECT_FALSE(store.Has("a") || store.Has("b"));
}

TEST_F(TagStoreTest, ARemovedTagForgetsItsValues) {
  store.Add("a");
  Give("a", {"1"});
  store.Remove("A");
  EXPECT_FALSE(store.Has("a"));
  store.Remove("a");
  store.Add("a");
  EXPECT_TRUE(store.ValuesOf("a").empty());
}

}  // namespace
}  // namespace tessel
