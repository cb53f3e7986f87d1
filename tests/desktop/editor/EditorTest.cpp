// The large editor: every byte, its keys, its colours, its speed.

#include <QAccessible>
#include <QAction>
#include <QScrollBar>
#include <QTest>
#include <algorithm>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/TextBox.h"
#include "desktop/editor/SqlEditor.h"
#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"
#include "desktop/look/theme/Theme.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class EditorTest : public DesktopFixture {
 protected:
  EditorTest() {
    box.Change = [this] { ++changes; };
    box.SetFocus();
    host.Settle();
  }
  ~EditorTest() override { SystemTheme::Force(false); }

  [[nodiscard]] SqlEditor& Editor() { return WidgetAs<SqlEditor>(*query, "txtQuery"); }
  [[nodiscard]] long Ask(unsigned int message, unsigned long argument = 0) {
    return Editor().SendScintilla(message, argument);
  }
  /// Colour of the character at a position, as drawn.
  [[nodiscard]] QColor ColorAt(unsigned long position) {
    Editor().SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
    const auto style = static_cast<unsigned long>(Ask(QsciScintillaBase::SCI_GETSTYLEAT, position));
    return ToQColor(static_cast<Color>(Ask(QsciScintillaBase::SCI_STYLEGETFORE, style)), {});
  }
  [[nodiscard]] QColor Ground() {
    return ToQColor(static_cast<Color>(Ask(QsciScintillaBase::SCI_STYLEGETBACK, 0)), {});
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> query = ShowForm("frmMain");
  RichTextBox& box = query->Find<RichTextBox>("txtQuery");
  int changes = 0;
};

TEST_F(EditorTest, ALargeTextComesBackByteForByte) {
  std::string text;
  while (text.size() < (50U << 20U))
    text += "SELECT 'caf\xC3\xA9 \xF0\x9F\x98\x80' FROM t;\r\n-- \xFF no UTF-8\n";
  text[100] = '\0';
  box.SetText(text);
  host.Settle();
  EXPECT_TRUE(box.Text() == text);
  box.Select(text.size(), 0);
  host.Settle();
  box.SetSelText("end");
  EXPECT_EQ(box.SelStart(), text.size() + 3);
}

TEST_F(EditorTest, KeysOfTheProgramDoNotEdit) {
  box.SetText("one two\nthree");
  for (const char letter : std::string("TLDUKFEGHIJOPQRBM")) PressKeyCode(letter, shiftState::ctrl);
  PressKeyCode('L', shiftState::ctrl | shiftState::shift);
  PressKeyCode('T', shiftState::ctrl | shiftState::shift);
  PressKeyCode(key::fullStop, shiftState::ctrl);
  EXPECT_EQ(box.Text(), "one two\nthree");
}

TEST_F(EditorTest, OrdinaryKeysEdit) {
  box.SetText("one two");
  PressKeyCode(key::right, shiftState::ctrl);
  PressKeyCode(key::end, shiftState::ctrl | shiftState::shift);
  EXPECT_EQ(box.SelText(), "two");
  PressKeyCode('X', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "one ");
  PressKeyCode('V', shiftState::ctrl);
  PressKeyCode('V', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "one twotwo");
  PressKeyCode('Z', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "one two");
  PressKeyCode('Y', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "one twotwo");
  PressKeyCode('A', shiftState::ctrl);
  EXPECT_EQ(box.SelLength(), 10U);
}

TEST_F(EditorTest, ChangesOfTheContextMenuAreTold) {
  box.SetText("abc");
  TypeText("x");
  changes = 0;
  Editor().undo();
  EXPECT_EQ(changes, 0) << "told from the event loop, once the editor is ready for changes again";
  host.Settle();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(box.Text(), "abc");
}

TEST_F(EditorTest, AHandlerOfChangeMayChangeTheText) {
  box.Change = [this] {
    if (box.Text() == "a") box.SetText("changed");
  };
  TypeText("a");
  EXPECT_EQ(box.Text(), "changed");
}

TEST_F(EditorTest, ANewTextCannotBeUndone) {
  box.SetText("first");
  box.SetText("second");
  PressKeyCode('Z', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "second");
}

TEST_F(EditorTest, EnterEndsLinesAsTheTextDoes) {
  box.SetText("a\r\nb");
  PressKeyCode(key::enter);
  EXPECT_EQ(box.Text(), "\r\na\r\nb");
  box.SetText("a\nb");
  PressKeyCode(key::enter);
  EXPECT_EQ(box.Text(), "\na\nb");
}

TEST_F(EditorTest, TheMarginDecidesOnWrapping) {
  EXPECT_EQ(Editor().wrapMode(), QsciScintilla::WrapWord);
  box.SetRightMargin(960000);
  EXPECT_EQ(Editor().wrapMode(), QsciScintilla::WrapNone);
  box.SetRightMargin(0);
  EXPECT_EQ(Editor().wrapMode(), QsciScintilla::WrapWord);
}

TEST_F(EditorTest, SqlIsColouredForItsGround) {
  box.SetText("SELECT 'text' -- remark");
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    host.Settle();
    EXPECT_EQ(IsDark(Ground()), dark);
    const Tokens& colors = CurrentTokens();
    EXPECT_EQ(ColorAt(0), colors.keyword);
    EXPECT_EQ(ColorAt(8), colors.string);
    EXPECT_EQ(ColorAt(16), colors.comment);
  }
}

TEST_F(EditorTest, AGroundOfItsOwnStays) {
  box.SetText("SELECT 1");
  box.SetBackColor(0x402000);
  EXPECT_EQ(Ground(), QColor(0x00, 0x20, 0x40));
  EXPECT_EQ(ColorAt(0), TokensOn(QColor(Qt::black)).keyword) << "readable on it";
  box.SetBackColor(color::windowBackground);
  EXPECT_EQ(Ground(), Editor().palette().color(QPalette::Base));
}

TEST_F(EditorTest, TextCanBeReadOnAConnectionsGround) {
  box.SetText("SELECT 'text', 1 FROM \"t\" -- remark");
  for (const Color ground : {0x000000U, 0x400000U, 0x808080U, 0x0000C0U, 0x00C000U, 0xC0FFFFU}) {
    box.SetBackColor(ground);
    for (const int at : {0, 8, 13, 15, 22, 28})
      EXPECT_GE(Contrast(FromQColor(ColorAt(at)), ground), readableContrast)
          << std::hex << ground << " at " << at;
  }
}

/// A text window on the screen whose text cannot be edited.
class ViewerTest : public EditorTest {
 protected:
  ViewerTest() {
    viewer->Find<CheckBox>("chkWordWrap").SetValue(false);
    view.SetLocked(true);
  }
  [[nodiscard]] SqlEditor& View() { return WidgetAs<SqlEditor>(*viewer, "txtText"); }
  static std::string OneLine(std::size_t bytes) {
    std::string text = "(";
    for (int n = 1; text.size() < bytes; ++n) text += std::to_string(n) + ", ";
    return text + "NULL)";
  }

  std::unique_ptr<Window> viewer = ShowForm("frmText");
  RichTextBox& view = viewer->Find<RichTextBox>("txtText");
};

TEST_F(ViewerTest, AVeryLongLineIsShownInPiecesAndIsWholeAllTheSame) {
  const std::string text = "first\r\n" + OneLine(100'000) + "\nlast";
  view.SetText(text);
  EXPECT_GT(View().lines(), 20);
  EXPECT_TRUE(view.Text() == text);
  view.Select(7, 50'000);
  EXPECT_EQ(view.SelStart(), 7U);
  EXPECT_EQ(view.SelLength(), 50'000U);
  EXPECT_TRUE(view.SelText() == text.substr(7, 50'000));
  View().copy();
  EXPECT_TRUE(TheDesktop().TheClipboard().Text() == text.substr(7, 50'000));
  view.Select(0, text.size() + 1);
  EXPECT_TRUE(view.SelText() == text);
}

TEST_F(ViewerTest, AVeryLongLineIsPutTogetherToBeEdited) {
  const std::string text = OneLine(30'000);
  view.SetText(text);
  ASSERT_GT(View().lines(), 1);
  view.Select(20'000, 4);
  view.SetSelText("new");
  EXPECT_TRUE(view.Text() == std::string(text).replace(20'000, 4, "new"));
  EXPECT_EQ(view.SelStart(), 20'003U);
  EXPECT_GT(View().lines(), 1);
  view.SetLocked(false);
  EXPECT_EQ(View().lines(), 1);
  EXPECT_TRUE(view.Text() == std::string(text).replace(20'000, 4, "new"));
  view.SetText(text);
  EXPECT_EQ(View().lines(), 1);
}

TEST_F(ViewerTest, ALineOfManyMegabytesIsShownInShortPieces) {
  constexpr int longestPiece = 2048;
  const std::string text = OneLine(3'000'000);
  for (const int margin : {960000, 0}) {
    view.SetText("");
    view.SetRightMargin(margin);
    view.SetText(text);
    ASSERT_GT(View().lines(), 1'000);
    int longest = 0;
    for (int line = 0; line < View().lines(); ++line)
      longest = std::max(longest, View().lineLength(line));
    EXPECT_LE(longest, longestPiece + 1) << "with the break behind it";
    EXPECT_TRUE(view.Text() == text);
  }
}

/// The same window with many lines in it that are wider than it is, and wrap.
class WrappedViewerTest : public ViewerTest {
 protected:
  WrappedViewerTest() {
    std::string line = "\xC3\xA9 " + std::string(200, 'x') + ", \xE2\x82\xAC,";
    for (const char* start : {"\r\n", "\r\nx"}) {  // A blank at every place of a line.
      line += start;
      for (int word = 0; word < 100; ++word) line += "x ";
    }
    line += "\r\n";
    while (text.size() < 3'000'000) text += line;
    view.SetRightMargin(0);
    view.SetText(text);
    host.Settle();
  }
  [[nodiscard]] bool CaretIsInView() {
    const Rect caret = view.CaretBounds();
    return caret.top >= 0 && caret.top + caret.height <= view.Bounds().height;
  }
  /// Pixels of the widest of the first lines.
  [[nodiscard]] int WidestOf(int lines) {
    int widest = 0;
    for (int line = 0; line < lines; ++line) {
      const QByteArray shown = View().text(line).remove('\r').remove('\n').toUtf8();
      const long width = View().SendScintilla(QsciScintillaBase::SCI_TEXTWIDTH, 0UL,
                                              static_cast<const char*>(shown.constData()));
      widest = std::max(widest, static_cast<int>(width));
    }
    return widest;
  }
  void Press(int key, int shift = shiftState::none) {
    view.SetFocus();
    PressKeyCode(key, shift);
    View().viewport()->repaint();
  }

  std::string text;
};

TEST_F(WrappedViewerTest, LinesAreAsWideAsTheWindowAndWholeAllTheSame) {
  EXPECT_EQ(View().wrapMode(), QsciScintilla::WrapNone) << "nothing is left to be laid out";
  constexpr int padding = 4;
  const int width = View().viewport()->width() - padding;
  EXPECT_LE(WidestOf(50), width);
  EXPECT_GT(WidestOf(50), width * 3 / 4);
  EXPECT_FALSE(View().horizontalScrollBar()->isVisible());
  EXPECT_TRUE(view.Text() == text);
  view.Select(1'000, 1'000'000);
  View().copy();
  EXPECT_TRUE(TheDesktop().TheClipboard().Text() == text.substr(1'000, 1'000'000));
}

TEST_F(WrappedViewerTest, TheCaretMovesAndStaysInView) {
  Press(key::end, shiftState::ctrl);
  EXPECT_EQ(view.SelStart(), text.size());
  EXPECT_TRUE(CaretIsInView());
  Press(key::up);
  Press(key::pageUp);
  EXPECT_LT(view.SelStart(), text.size());
  EXPECT_TRUE(CaretIsInView());
  Press(key::home, shiftState::ctrl);
  EXPECT_EQ(view.SelStart(), 0U);
  Press(key::pageDown);
  EXPECT_GT(view.SelStart(), 0U);
  EXPECT_TRUE(CaretIsInView());
  Press('A', shiftState::ctrl);
  EXPECT_EQ(view.SelLength(), text.size());
}

TEST_F(WrappedViewerTest, AnotherWidthBreaksAnewAndKeepsThePlace) {
  view.Select(1'500'000, 20);
  host.Settle();
  const std::size_t selected = view.SelStart();
  const int lines = View().lines();
  const Rect before = viewer->Bounds();
  viewer->SetBounds({before.left, before.top, before.width * 2, before.height});
  EXPECT_TRUE(QTest::qWaitFor([&] { return View().lines() < lines; }, 5'000));
  EXPECT_LE(WidestOf(50), View().viewport()->width());
  EXPECT_EQ(view.SelStart(), selected);
  EXPECT_EQ(view.SelLength(), 20U);
  EXPECT_TRUE(CaretIsInView());
  EXPECT_TRUE(view.Text() == text);
}

TEST_F(WrappedViewerTest, WrappingIsTurnedOffAndOn) {
  const int wrapped = View().lines();
  const auto whole = static_cast<int>(std::ranges::count(text, '\n')) + 1;
  view.SetRightMargin(960'000);
  EXPECT_EQ(View().lines(), whole);
  host.Settle();
  EXPECT_TRUE(View().horizontalScrollBar()->isVisible());
  view.SetRightMargin(0);
  host.Settle();
  EXPECT_EQ(View().lines(), wrapped);
  EXPECT_FALSE(View().horizontalScrollBar()->isVisible());
  view.SetLocked(false);
  EXPECT_EQ(View().lines(), whole);
  EXPECT_EQ(View().wrapMode(), QsciScintilla::WrapWord);
  EXPECT_TRUE(view.Text() == text);
  view.SetLocked(true);
  EXPECT_EQ(View().lines(), wrapped);
}

TEST_F(WrappedViewerTest, ATextFilledInBeforeTheWindowShowsIsWrappedToo) {
  viewer->Hide();
  view.SetText("");
  view.SetText(text);
  viewer->Show();
  host.Settle();
  EXPECT_LE(WidestOf(50), View().viewport()->width());
  EXPECT_EQ(View().wrapMode(), QsciScintilla::WrapNone);
}

TEST_F(WrappedViewerTest, ShortTextsAreLeftToTheComponent) {
  view.SetText("short");
  EXPECT_EQ(View().wrapMode(), QsciScintilla::WrapWord);
  EXPECT_EQ(View().lines(), 1);
}

TEST_F(WrappedViewerTest, OnlyShortTextsAreToldToAssistiveTools) {
  const auto access = [&] { return QAccessible::queryAccessibleInterface(&View()); };
  EXPECT_EQ(access()->textInterface(), nullptr) << "all characters would be counted for each key";
  EXPECT_EQ(access()->text(QAccessible::Name).toStdString(), View().accessibleName().toStdString());
  view.SetText("short");
  ASSERT_NE(access()->textInterface(), nullptr);
  EXPECT_EQ(access()->textInterface()->text(0, 5), "short");
}

TEST_F(EditorTest, PlainTextIsNotColoured) {
  const auto text = ShowForm("frmText");
  text->Find<RichTextBox>("txtText").SetText("SELECT 'x'");
  EXPECT_EQ(WidgetAs<SqlEditor>(*text, "txtText").lexer(), nullptr);
}

TEST_F(EditorTest, WhatIsTypedAndPastedEndsItsLinesAsTheDocumentDoes) {
  for (const std::string lineEnd : {"\n", "\r\n"}) {
    box.SetText("one" + lineEnd + "two");
    box.Select(0, 0);
    host.PressKey(*query, key::enter);
    TheDesktop().TheClipboard().SetText("x\r\ny\nz");
    host.PressKey(*query, 'V', shiftState::ctrl);
    EXPECT_EQ(box.Text(), lineEnd + "x" + lineEnd + "y" + lineEnd + "zone" + lineEnd + "two");
  }
}

TEST_F(EditorTest, TheFirstLineEndThatIsInsertedIsTheDocumentsFromThenOn) {
  box.SetText("");
  box.SetSelText("SELECT\r\n");
  host.PressKey(*query, key::enter);
  EXPECT_EQ(box.Text(), "SELECT\r\n\r\n");
}

TEST_F(EditorTest, AnInsertionInPlaceOfTheWholeTextCanBeUndone) {
  box.SetText("mine");
  box.Select(0, 4);
  box.SetSelText("theirs");
  host.PressKey(*query, 'Z', shiftState::ctrl);
  EXPECT_EQ(box.Text(), "mine");
}

}  // namespace

}  // namespace tessel::test
