#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryFile>
#include <iostream>

#include <gtest/gtest.h>

#include "tests/desktop/Screenshots.h"

namespace {

/// What a window system without a screen cannot do is no news.
void PassOn(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
  if (!text.startsWith("This plugin does not support")) std::cerr << text.toStdString() << '\n';
}

/// Off screen there is a small screen unless a file describes another one.
constexpr const char* screenDescription = R"({"synchronousWindowSystemEvents": false,
  "windowFrameMargins": true, "screens": [{"name": "screen", "x": 0, "y": 0, "width": 1280,
  "height": 1024, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

void UseOrdinaryScreen(QTemporaryFile& file) {
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  const bool offScreen =
      platform == "offscreen" || (platform.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY"));
  if (!offScreen || !file.open()) return;
  file.write(screenDescription);
  file.flush();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toLocal8Bit());
}

}  // namespace

/// Runs the tests; with "--screenshots <folder> [--dark]" it draws the windows there in their
/// place. Without a display the windows are drawn off screen.
int main(int argc, char** argv) {
  QTemporaryFile screen;
  UseOrdinaryScreen(screen);
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
