#include "logic/plan/diagram/Diagram.h"

#include <gmock/gmock.h>

#include "contract/desktop/controls/Label.h"
#include "tests/headless/HeadlessDrawings.h"
#include "tests/logic/LogicFixture.h"

namespace tessel {
namespace {

using testing::HasSubstr;
using testing::Not;

Structure Shop() {
  Structure shop;
  shop.Table("customers").fields = {{"id", "integer", true, 1}, {"name", "text", false, 0}};
  shop.Table("orders").fields = {{"id", "integer", true, 1}, {"customer_id", "integer", false, 0}};
  shop.AddForeignKey({"fk", "orders", {"customer_id"}, "customers", {"id"}});
  return shop;
}

TEST(DiagramText, TablesAreJoinedByTheirKeys) {
  const DiagramText text = MakeDiagramText(Shop());
  EXPECT_THAT(text.text, HasSubstr("<b>customers</b>"));
  EXPECT_THAT(text.text, HasSubstr("<b>id</b> : integer"));
  EXPECT_THAT(text.text, HasSubstr("t1 -> t0;\n"));
  EXPECT_EQ(text.tables, 2U);
  EXPECT_EQ(text.keys, 1U);
}

TEST(DiagramText, WhatANameHoldsIsNoMarkup) {
  Structure hostile;
  hostile.Table("a<b>\"&\n}").fields = {{"x>y", "<img src=\"/etc/passwd\"/>", false, 0}};
  const DiagramText text = MakeDiagramText(hostile);
  EXPECT_THAT(text.text, HasSubstr("<b>a&lt;b&gt;&quot;&amp; }</b>"));
  EXPECT_THAT(text.text, HasSubstr("x&gt;y : &lt;img src=&quot;"));
}

TEST(DiagramText, OfVeryManyTablesThoseWithKeysAreDrawn) {
  Structure many = Shop();
  for (int i = 0; i < 400; ++i) many.Table("t" + std::to_string(i));
  const DiagramText text = MakeDiagramText(many);
  EXPECT_EQ(text.tables, 2U);
  EXPECT_EQ(text.leftOut, 400U);
}

TEST(DiagramText, ALongTableShowsItsKeysFirst) {
  Structure wide = Shop();
  TableFacts& table = wide.Table("wide");
  for (int i = 0; i < 40; ++i)
    table.fields.push_back({"f" + std::to_string(i), "", false, i == 39 ? 1 : 0});
  const std::string text = MakeDiagramText(wide).text;
  EXPECT_THAT(text, HasSubstr("<b>f39</b>"));
  EXPECT_THAT(text, HasSubstr("26 more"));
  EXPECT_THAT(text, Not(HasSubstr("f38")));
}

class DiagramTest : public test::LogicFixture {
 protected:
  using Window = test::HeadlessWindow;

  DiagramTest() { frame->Show(); }

  std::unique_ptr<tessel::Window> frame = desktop.MakeWindow("frmMDI");
  dlgAsync async{desktop, *frame};
  Diagram diagram{global, *frame, async};
  Structure shop = Shop();
};

TEST_F(DiagramTest, TheDrawingIsShownZoomedAndSaved) {
  programs.looksBeforeEnd = 3;
  desktop.OnModal("dlgDiagram", [this](Window& w) {
    auto& box = w.Find<test::HeadlessDiagramBox>("dgmDiagram");
    EXPECT_EQ(w.Caption(), "Shop - Diagram");
    EXPECT_EQ(w.Find<Label>("lblDiagram").Caption(), "2 tables, 1 foreign key");
    EXPECT_EQ(box.Zoom(), 50);
    w.Click("cmdZoomIn");
    EXPECT_EQ(box.Zoom(), 75);
    w.Click("cmdZoomOut");
    w.Click("cmdZoomOut");
    EXPECT_EQ(box.Zoom(), 25);
    w.Click("cmdFit");
    EXPECT_EQ(box.Zoom(), 50);
    desktop.AnswerFile(folder.File("d.svg"));
    w.Click("cmdSave");
    EXPECT_EQ(Content("d.svg"), "<svg/>");
    w.Click("cmdClose");
  });
  diagram.Show(&shop, "Shop");
  EXPECT_THAT(programs.input, HasSubstr("digraph"));
  EXPECT_EQ(programs.running, 0);
}

TEST_F(DiagramTest, WithoutTheProgramItSaysWhatToInstall) {
  programs.installed = false;
  desktop.ExpectMessage(
      "The diagram is laid out by the program \"dot\" of Graphviz, which is not installed: install "
      "the package graphviz, and try again.");
  diagram.Show(&shop, "Shop");
}

TEST_F(DiagramTest, AProgramThatFailsIsQuoted) {
  programs.exitStatus = 1;
  programs.complaints = "out of memory";
  desktop.ExpectMessage("The diagram could not be laid out: out of memory");
  diagram.Show(&shop, "Shop");
  programs.refuses = true;
  desktop.ExpectMessage("The diagram could not be laid out: /usr/bin/dot: Permission denied");
  diagram.Show(&shop, "Shop");
}

TEST_F(DiagramTest, WhatIsNoDrawingIsSaid) {
  programs.output = "nonsense";
  desktop.OnModal("dlgDiagram", [](Window& w) {
    EXPECT_EQ(w.Find<Label>("lblDiagram").Caption(),
              "What dot gave cannot be shown: it is no SVG.");
    w.Click("cmdClose");
  });
  diagram.Show(&shop, "Shop");
}

TEST_F(DiagramTest, ACancelEndsTheProgram) {
  programs.looksBeforeEnd = 1'000'000;
  desktop.OnProcessPending([this](int number) {
    if (number == 3) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  diagram.Show(&shop, "Shop");
  EXPECT_EQ(programs.running, 0);
}

TEST_F(DiagramTest, WithoutAKnownStructureItSaysHowToGetIt) {
  const std::string text =
      "No tables are known whose keys could be drawn: load the schema of a database that tells "
      "them (right-click, Load Schema from Database).";
  desktop.ExpectMessage(text);
  diagram.Show(nullptr, "");
  desktop.ExpectMessage(text);
  const Structure empty;
  diagram.Show(&empty, "Shop");
}

}  // namespace
}  // namespace tessel
