// What the large editor has beyond other text boxes: the place of its caret, undoing, the mark of
// an error, its zoom.

#include <gtest/gtest.h>

#include <string>

#include "contract/desktop/controls/EditorBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

/// The query window in its frame, and its text.
struct Query {
  explicit Query(ContractHost& theHost) : host(theHost) {
    frame = ShowForm(host, "frmMDI");
    window = ShowForm(host, "frmMain");
    box = &window->Find<EditorBox>("txtQuery");
    box->SetFocus();
    host.Settle();
  }
  void Type(std::string_view text) { host.Type(*window, "txtQuery", text); }
  void PressKey(int keyCode) { host.PressKey(*window, keyCode); }

  ContractHost& host;
  std::unique_ptr<Window> frame;
  std::unique_ptr<Window> window;
  EditorBox* box = nullptr;
};

void TheCaretIsToldByLineAndColumn(ContractHost& host) {
  const Query query(host);
  query.box->SetText("a\xC3\xA9\xF0\x9F\x98\x80z\r\nsecond");
  EXPECT_EQ(query.box->CaretSpot(), (TextSpot{1, 1}));
  query.box->Select(7, 0);
  EXPECT_EQ(query.box->CaretSpot(), (TextSpot{1, 4})) << "characters count, not bytes";
  query.box->Select(10, 3);
  EXPECT_EQ(query.box->CaretSpot(), (TextSpot{2, 4})) << "the caret stands at the end";
}

void MovingTheCaretIsTold(ContractHost& host) {
  Query query(host);
  query.box->SetText("one\ntwo");
  host.Settle();
  int moved = 0;
  query.box->CaretMoved = [&] { ++moved; };
  query.box->Select(5, 0);
  host.Settle();
  EXPECT_GT(std::exchange(moved, 0), 0);
  query.Type("x");
  host.Settle();
  EXPECT_GT(moved, 0);
  query.box->CaretMoved = nullptr;
}

void ChangesAreUndoneAndMadeAgain(ContractHost& host) {
  Query query(host);
  query.box->SetText("one two");
  EXPECT_FALSE(query.box->CanUndo()) << "a new text is no change of this one";
  query.box->Select(4, 3);
  query.box->SetSelText("2");
  int changes = 0;
  query.box->Change = [&] { ++changes; };
  ASSERT_TRUE(query.box->CanUndo());
  query.box->Undo();
  EXPECT_EQ(query.box->Text(), "one two");
  EXPECT_EQ(std::exchange(changes, 0), 1);
  query.box->Undo();
  EXPECT_EQ(changes, 0) << "nothing is left to undo";
  ASSERT_TRUE(query.box->CanRedo());
  query.box->Redo();
  EXPECT_EQ(query.box->Text(), "one 2");
  EXPECT_EQ(changes, 1);
  query.box->Change = nullptr;
}

void ALockedTextIsNotUndone(ContractHost& host) {
  const Query query(host);
  query.box->SetText("one");
  query.box->SetSelText("x");
  query.box->SetLocked(true);
  query.box->Undo();
  EXPECT_EQ(query.box->Text(), "xone");
}

void EnterKeepsTheIndentation(ContractHost& host) {
  Query query(host);
  query.box->SetText("  \tselect 1");
  query.box->Select(11, 0);
  query.PressKey(key::enter);
  EXPECT_EQ(query.box->Text(), "  \tselect 1\n  \t");
  query.box->Undo();
  EXPECT_EQ(query.box->Text(), "  \tselect 1") << "line end and blanks are one change";
  query.box->Select(1, 0);
  query.PressKey(key::enter);
  EXPECT_EQ(query.box->Text(), " \n  \tselect 1") << "blanks behind the caret are there already";
}

void AMarkGoesWithItsText(ContractHost& host) {
  Query query(host);
  query.box->SetText("select a fro t");
  query.box->MarkError({9, 12});
  query.box->Select(0, 6);
  query.Type("with");
  EXPECT_EQ(query.box->MarkedError(), (TextRange{7, 10}));
  query.box->Select(query.box->Text().size(), 0);
  query.Type("x");
  EXPECT_EQ(query.box->MarkedError(), (TextRange{7, 10}));
  query.box->Select(8, 0);
  query.Type("x");
  EXPECT_EQ(query.box->MarkedError(), std::nullopt);
}

void AMarkGoesWithTheTextThatIsReplaced(ContractHost& host) {
  const Query query(host);
  query.box->SetText("select 1 fro");
  query.box->MarkError({9, 12});
  query.box->MarkError({0, 6});
  EXPECT_EQ(query.box->MarkedError(), (TextRange{0, 6}));
  query.box->SetText("select 2 fro");
  EXPECT_EQ(query.box->MarkedError(), std::nullopt);
  query.box->MarkError({0, 6});
  query.box->ClearError();
  EXPECT_EQ(query.box->MarkedError(), std::nullopt);
}

void ZoomHasItsLimits(ContractHost& host) {
  const Query query(host);
  EXPECT_EQ(query.box->Zoom(), 0);
  query.box->SetZoom(3);
  EXPECT_EQ(query.box->Zoom(), 3);
  query.box->SetZoom(1000);
  EXPECT_EQ(query.box->Zoom(), EditorBox::largestZoom);
  query.box->SetZoom(-1000);
  EXPECT_EQ(query.box->Zoom(), EditorBox::smallestZoom);
}

void ASyntaxLeavesTheTextAlone(ContractHost& host) {
  const Query query(host);
  EXPECT_EQ(query.box->Syntax(), TextSyntax::Sql) << "as the form has it";
  query.box->SetText("{\"a\": 1}");
  query.box->Select(2, 1);
  for (const auto syntax : {TextSyntax::Json, TextSyntax::Xml, TextSyntax::Plain}) {
    query.box->SetSyntax(syntax);
    EXPECT_EQ(query.box->Syntax(), syntax);
    EXPECT_EQ(query.box->Text(), "{\"a\": 1}");
    EXPECT_EQ(query.box->SelText(), "a");
  }
}

}  // namespace

std::vector<ContractCase> EditorContract() {
  return {{"TheCaretIsToldByLineAndColumn", &TheCaretIsToldByLineAndColumn},
          {"MovingTheCaretIsTold", &MovingTheCaretIsTold},
          {"ChangesAreUndoneAndMadeAgain", &ChangesAreUndoneAndMadeAgain},
          {"ALockedTextIsNotUndone", &ALockedTextIsNotUndone},
          {"EnterKeepsTheIndentation", &EnterKeepsTheIndentation},
          {"AMarkGoesWithItsText", &AMarkGoesWithItsText},
          {"AMarkGoesWithTheTextThatIsReplaced", &AMarkGoesWithTheTextThatIsReplaced},
          {"ZoomHasItsLimits", &ZoomHasItsLimits},
          {"ASyntaxLeavesTheTextAlone", &ASyntaxLeavesTheTextAlone}};
}

}  // namespace tessel::test
