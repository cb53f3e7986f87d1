#include "desktop/help/HelpPage.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextDocument>

#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

/// The colours that the style sheet of the book names.
constexpr const char* codeGround = "#eeeeee";
constexpr const char* headGround = "#dddddd";
constexpr const char* textOnThem = "#000000";

}  // namespace

QVariant HelpPage::loadResource(int type, const QUrl& name) {
  const QVariant found = QTextBrowser::loadResource(type, name);
  if (type != QTextDocument::StyleSheetResource) return found;
  const Tokens& tokens = CurrentTokens();
  QString sheet = QString::fromUtf8(found.toByteArray());
  sheet.replace(QLatin1String(codeGround), tokens.window.name());
  sheet.replace(QLatin1String(headGround), tokens.line.name());
  sheet.replace(QLatin1String(textOnThem), tokens.text.name());
  return sheet;
}

void HelpPage::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !source().isEmpty()) ShowAnew();
}

/// The place on the page stays.
void HelpPage::ShowAnew() {
  const int place = verticalScrollBar()->value();
  reload();
  verticalScrollBar()->setValue(place);
}

}  // namespace tessel
