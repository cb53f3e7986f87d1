// The smallest program with a main window of sub-windows and an editor in one of them: what its
// start takes is what the start of every such program takes at the least.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <Qsci/qsciscintilla.h>

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QMainWindow window;
  auto* area = new QMdiArea;
  window.setCentralWidget(area);
  area->addSubWindow(new QsciScintilla);
  window.resize(1000, 700);
  window.show();
  return QApplication::exec();
}
