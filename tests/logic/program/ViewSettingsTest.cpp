#include "logic/program/view/ViewSettings.h"

#include <filesystem>

#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

class ViewSettingsTest : public test::LogicFixture {
 protected:
  ViewSettings settings{global};
};

TEST_F(ViewSettingsTest, NumbersAreKeptByName) {
  EXPECT_EQ(settings.Number("editor zoom", 7), 7);
  settings.SetNumber("editor zoom", -2);
  settings.SetNumber("grid zoom", 3);
  EXPECT_EQ(settings.Number("editor zoom", 7), -2);
  EXPECT_EQ(Content("Tessel.view.txt"), "editor zoom=-2\ngrid zoom=3\n");
  EXPECT_EQ(ViewSettings(global).Number("grid zoom", 0), 3);
}

TEST_F(ViewSettingsTest, WhatAnotherProgramWroteStays) {
  settings.SetNumber("a", 1);
  folder.Write("Tessel.view.txt", "a=1\nb=2\r\nnonsense\nc=x\n");
  settings.SetNumber("a", 5);
  EXPECT_EQ(Content("Tessel.view.txt"), "a=5\nb=2\n");
}

TEST_F(ViewSettingsTest, AFileThatCannotBeWrittenIsNoFailure) {
  const std::string path = folder.File("Tessel.view.txt");
  std::filesystem::create_directory(path);
  settings.SetNumber("a", 1);
  EXPECT_EQ(settings.Number("a", 4), 4);
}

}  // namespace
}  // namespace tessel
