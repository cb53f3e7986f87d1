#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Error.h"
#include "logic/tags/TagsPanel.h"
#include "tests/headless/HeadlessListView.h"
#include "tests/headless/HeadlessLists.h"
#include "tests/logic/LogicFixture.h"

namespace tessel::test {

/// Stands for the frame and the query window.
class FakeTagsHost : public TagsHost, public SqlTarget {
 public:
  void FocusQueryWindow() override { ++focused; }
  void InsertText(std::string_view text) override { inserted.emplace_back(text); }

  int focused = 0;
  std::vector<std::string> inserted;
};

/// The tags panel in its frame, and what a user does there.
class TagsFixture : public LogicFixture {
 protected:
  using Values = TagStore::Values;

  TagsFixture() { frame->Show(); }

  HeadlessWindow& W() { return desktop.WindowOf("frmMDI"); }
  HeadlessListView& List() { return W().Find<HeadlessListView>("lsvTags"); }
  HeadlessComboBox& Editor() { return W().Find<HeadlessComboBox>("cboTagValue"); }
  bool EditorShows() { return W().VisibleInFact("cboTagValue"); }

  void AddTag(const std::string& name) {
    W().Click("cmdAddTag");
    W().EditLabel("lsvTags", name);
  }
  void ClickValue(int row) {
    W().ClickCell("lsvTags", row, 1, {MouseButton::Left, shiftState::none, 0, 0});
  }
  /// Puts a text into the value editor of a tag, without confirming it.
  void TypeValue(int row, const std::string& text) {
    ClickValue(row);
    Editor().SetText("");
    W().Type("cboTagValue", text);
  }
  void GiveValue(int row, const std::string& text) {
    TypeValue(row, text);
    W().PressKey(key::enter);
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int row = 0; row < List().Count(); ++row) names.push_back(List().Row(row).text);
    return names;
  }
  std::vector<std::string> EditorList() {
    std::vector<std::string> entries;
    for (int index = 0; index < Editor().ListCount(); ++index)
      entries.push_back(Editor().List(index));
    return entries;
  }
  std::string ShownValue(int row) { return List().Row(row).subItems.at(0); }
  std::string ValueOf(const std::string& name) { return panel.GetTagValue(name, false, false); }
  std::string Failure(const std::string& name) {
    try {
      return "no failure: " + ValueOf(name);
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errorNumber::application);
      return error.Description();
    }
  }
  void ExpectNotice(const std::string& text) {
    desktop.ExpectMessage(text, MessageResult::Ok, [this](const Message& message) {
      EXPECT_EQ(message.icon, MessageIcon::Exclamation);
      EXPECT_EQ(message.buttons, MessageButtons::Ok);
      message.help();
      EXPECT_EQ(desktop.HelpRequests().back().data, 9200);
    });
  }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  TagStore store;
  FakeTagsHost host;
  TagsPanel panel{{global, *frame, store, host, host}};
};

}  // namespace tessel::test
