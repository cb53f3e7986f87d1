// What the editor shows beside the text of SQL, how large it is, and what is dropped on it.

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

#include "contract/desktop/controls/EditorBox.h"
#include "desktop/editor/SqlEditor.h"
#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class CodeEditorTest : public DesktopFixture {
 protected:
  CodeEditorTest() {
    box.SetFocus();
    host.Settle();
  }

  [[nodiscard]] SqlEditor& Editor() { return WidgetAs<SqlEditor>(*query, "txtQuery"); }
  [[nodiscard]] long Ask(unsigned int message, unsigned long first = 0, long second = 0) {
    return Editor().SendScintilla(message, first, second);
  }
  [[nodiscard]] bool HasWaveAt(long position) {
    return Ask(QsciScintillaBase::SCI_INDICATORALLONFOR, static_cast<unsigned long>(position)) != 0;
  }
  void TurnWheel(int eighths, Qt::KeyboardModifiers held) {
    QWheelEvent wheel(QPointF(20, 20), Editor().viewport()->mapToGlobal(QPointF(20, 20)), QPoint(),
                      QPoint(0, eighths), Qt::NoButton, held, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Editor().viewport(), &wheel);
    host.Settle();
  }
  /// Drops it; whether the widget took it.
  static bool DropOn(QWidget& widget, const QMimeData& data) {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &drop);
    return drop.isAccepted();
  }

  /// The toolkit tells it to the widgets only while the program's own loop runs.
  void ChangeFontOfDesktop(const QFont& font) {
    QApplication::setFont(font);
    QEvent change(QEvent::ApplicationFontChange);
    QApplication::sendEvent(&Editor(), &change);
    host.Settle();
  }

  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> query = ShowForm("frmMain");
  EditorBox& box = query->Find<EditorBox>("txtQuery");
};

TEST_F(CodeEditorTest, LinesAreNumberedAndTheMarginGrowsWithThem) {
  box.SetText("one");
  host.Settle();
  const int narrow = Editor().marginWidth(0);
  EXPECT_GT(narrow, 0);
  std::string many;
  for (int i = 0; i < 100'000; ++i) many += "x\n";
  box.SetText(many);
  host.Settle();
  EXPECT_GT(Editor().marginWidth(0), narrow);
}

TEST_F(CodeEditorTest, ATextThatIsNoSqlHasNoNumbers) {
  const auto text = ShowForm("frmText");
  auto& viewer = WidgetAs<SqlEditor>(*text, "txtText");
  EXPECT_EQ(viewer.marginWidth(0), 0);
  EXPECT_EQ(viewer.SendScintilla(QsciScintillaBase::SCI_GETCARETLINEVISIBLE), 0);
}

TEST_F(CodeEditorTest, NumbersAndCurrentLineCanBeReadOnEveryGround) {
  for (const Color ground :
       {color::windowBackground, Color(0xFFFFFF), Color(0x402000), Color(0xC0FFC0)}) {
    box.SetBackColor(ground);
    host.Settle();
    const auto style = [&](unsigned int message) {
      return static_cast<Color>(Ask(message, QsciScintillaBase::STYLE_LINENUMBER));
    };
    EXPECT_GE(Contrast(style(QsciScintillaBase::SCI_STYLEGETFORE),
                       style(QsciScintillaBase::SCI_STYLEGETBACK)),
              readableContrast);
    const auto line = static_cast<Color>(Ask(QsciScintillaBase::SCI_GETCARETLINEBACK));
    const auto text = static_cast<Color>(Ask(QsciScintillaBase::SCI_STYLEGETFORE, 0));
    EXPECT_GE(Contrast(text, line), readableContrast);
    EXPECT_NE(line, static_cast<Color>(Ask(QsciScintillaBase::SCI_STYLEGETBACK, 0)));
  }
}

TEST_F(CodeEditorTest, AWaveStandsUnderAnErrorUntilItIsEdited) {
  box.SetText("select fro t");
  box.MarkError({7, 10});
  EXPECT_TRUE(HasWaveAt(7));
  EXPECT_TRUE(HasWaveAt(9));
  EXPECT_FALSE(HasWaveAt(10));
  EXPECT_FALSE(HasWaveAt(6));
  box.Select(10, 0);
  TypeText("m");
  host.Settle();
  EXPECT_FALSE(HasWaveAt(7));
}

TEST_F(CodeEditorTest, ALongTextTellsItsChangesAndMovesItsMark) {
  int changes = 0;
  box.Change = [&] { ++changes; };
  box.SetText(std::string(2'000'000, '-') + "\nfro");
  changes = 0;
  box.MarkError({2'000'001, 2'000'004});
  box.Select(0, 0);
  TypeText("x");
  host.Settle();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(box.MarkedError(), (TextRange{2'000'002, 2'000'005}));
  box.Undo();
  host.Settle();
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(box.MarkedError(), (TextRange{2'000'001, 2'000'004}));
  box.Select(2'000'004, 0);
  TypeText("m");
  host.Settle();
  EXPECT_FALSE(box.MarkedError());
}

/// The component counts the characters before a change that it tells of afterwards.
TEST_F(CodeEditorTest, OnlyOfAShortTextIsAChangeToldAfterwards) {
  const auto told = [&] { return Ask(QsciScintillaBase::SCI_GETMODEVENTMASK); };
  constexpr long changed = QsciScintillaBase::SC_MOD_INSERTTEXT |
                           QsciScintillaBase::SC_MOD_DELETETEXT |
                           QsciScintillaBase::SC_PERFORMED_USER;
  box.SetText("select 1");
  EXPECT_NE(told() & changed, 0);
  box.SetText(std::string(2'000'000, '-'));
  EXPECT_EQ(told() & changed, 0);
  box.SetText("select 1");
  EXPECT_NE(told() & changed, 0);
  box.SetSelText(std::string(2'000'000, '-'));
  TypeText("x");
  host.Settle();
  EXPECT_EQ(told() & changed, 0) << "it has grown";
}

TEST_F(CodeEditorTest, BracketsThatBelongTogetherAreShown) {
  std::string text = "select (1, ')', /* ) */ (2))";
  box.SetText(text);
  Editor().SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
  box.Select(8, 0);
  host.Settle();
  const auto styled = [&](long place) {
    return Ask(QsciScintillaBase::SCI_BRACEMATCH, static_cast<unsigned long>(place));
  };
  EXPECT_EQ(styled(7), static_cast<long>(text.size()) - 1) << "what the component itself finds";
  QImage shown = Editor().grab().toImage();
  box.Select(0, 0);
  host.Settle();
  EXPECT_NE(shown, Editor().grab().toImage());
}

TEST_F(CodeEditorTest, CtrlAndTheWheelZoom) {
  int zoomed = 0;
  box.Zoomed = [&] { ++zoomed; };
  TurnWheel(120, Qt::ControlModifier);
  EXPECT_EQ(box.Zoom(), 1);
  TurnWheel(-240, Qt::ControlModifier);
  EXPECT_EQ(box.Zoom(), -1);
  EXPECT_EQ(zoomed, 2);
  TurnWheel(120, Qt::NoModifier);
  EXPECT_EQ(box.Zoom(), -1);
  box.Zoomed = nullptr;
}

TEST_F(CodeEditorTest, TheTextHasTheSizeOfTheDesktop) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSizeF(before.pointSizeF() * 2);
  box.SetText("select 1");
  const long height = Ask(QsciScintillaBase::SCI_TEXTHEIGHT);
  ChangeFontOfDesktop(large);
  EXPECT_GT(Ask(QsciScintillaBase::SCI_TEXTHEIGHT), height * 3 / 2);
  ChangeFontOfDesktop(before);
  EXPECT_EQ(Ask(QsciScintillaBase::SCI_TEXTHEIGHT), height);
}

TEST_F(CodeEditorTest, FilesThatAreDroppedAreTold) {
  std::vector<std::string> dropped;
  box.FilesDropped = [&](const std::vector<std::string>& paths) { dropped = paths; };
  query->Hide();
  query->Show();
  host.Settle();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile("/tmp/a b.sql"), QUrl::fromLocalFile("/tmp/\xC3\xA9.db")});
  data.setText("file:///tmp/a");
  EXPECT_TRUE(DropOn(*Editor().viewport(), data));
  EXPECT_EQ(dropped, (std::vector<std::string>{"/tmp/a b.sql", "/tmp/\xC3\xA9.db"}));
  EXPECT_EQ(box.Text(), "") << "no path is inserted";
  dropped.clear();
  EXPECT_TRUE(DropOn(*Editor().window(), data)) << "anywhere on the window";
  EXPECT_EQ(dropped.size(), 2U);
  box.FilesDropped = nullptr;
  EXPECT_FALSE(DropOn(*Editor().window(), data)) << "nobody wants them";
}

TEST_F(CodeEditorTest, TextThatIsDroppedIsInserted) {
  box.SetText("");
  int changes = 0;
  box.Change = [&] { ++changes; };
  QMimeData data;
  data.setText("select 1");
  EXPECT_TRUE(DropOn(*Editor().viewport(), data));
  host.Settle();
  EXPECT_EQ(box.Text(), "select 1");
  EXPECT_GT(changes, 0);
  box.Change = nullptr;
}

}  // namespace

}  // namespace tessel::test
