#include <QApplication>
#include <QCommandLineParser>
#include <iostream>

#include <gtest/gtest.h>

#include "tests/desktop/Screenshots.h"

namespace {

/// What a window system without a screen cannot do is no news.
void PassOn(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
  if (!text.startsWith("This plugin does not support")) std::cerr << text.toStdString() << '\n';
}

}  // namespace

/// Runs the tests; with "--screenshots <folder> [--dark]" it draws the windows there in their
/// place. Without a display the windows are drawn off screen.
int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(&PassOn);
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption screenshots("screenshots", "Draws every window there.", "folder");
  const QCommandLineOption dark("dark", "Draws them dark.");
  parser.addOptions({screenshots, dark});
  parser.process(application);
  if (parser.isSet(screenshots))
    return tessel::test::DrawScreenshots(parser.value(screenshots).toStdString(),
                                         parser.isSet(dark));
  return RUN_ALL_TESTS();
}
