#include "platform/desktop/dialogs/MessageDialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <algorithm>

#include "platform/desktop/base/Text.h"

namespace tessel {

namespace {

/// Texts beyond these scroll.
constexpr qsizetype longText = 1200;
constexpr qsizetype manyLines = 20;
constexpr int charactersAcross = 64;
constexpr int linesDown = 16;
constexpr int spacing = 16;

QDialogButtonBox::StandardButtons ButtonsFor(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok: return QDialogButtonBox::Ok;
    case MessageButtons::OkCancel: return QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
    case MessageButtons::YesNo: return QDialogButtonBox::Yes | QDialogButtonBox::No;
    case MessageButtons::YesNoCancel: break;
  }
  return QDialogButtonBox::Yes | QDialogButtonBox::No | QDialogButtonBox::Cancel;
}

/// What closing the box without a button means.
MessageResult WithoutButton(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok: return MessageResult::Ok;
    case MessageButtons::YesNo: return MessageResult::No;
    default: return MessageResult::Cancel;
  }
}

MessageResult ResultOf(QDialogButtonBox::StandardButton button) {
  switch (button) {
    case QDialogButtonBox::Yes: return MessageResult::Yes;
    case QDialogButtonBox::No: return MessageResult::No;
    case QDialogButtonBox::Cancel: return MessageResult::Cancel;
    default: return MessageResult::Ok;
  }
}

bool IsLong(const QString& text) {
  return text.size() > longText || text.count(QLatin1Char('\n')) > manyLines;
}

}  // namespace

MessageDialog::MessageDialog(const Message& message, QWidget* owner)
    : QDialog(owner), result_(WithoutButton(message.buttons)) {
  setWindowTitle(AsWindowTitle(message.title));
  auto* layout = new QGridLayout(this);
  layout->setHorizontalSpacing(spacing);
  layout->setVerticalSpacing(spacing);
  if (QWidget* icon = MakeIcon(message.icon)) layout->addWidget(icon, 0, 0, Qt::AlignTop);
  layout->addWidget(MakeText(message), 0, 1);
  layout->addWidget(MakeButtons(message), 1, 0, 1, 2);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(0, 1);
}

QWidget* MessageDialog::MakeText(const Message& message) {
  const QString text = ToQt(message.text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
  const int across = fontMetrics().averageCharWidth() * charactersAcross;
  if (IsLong(text)) {
    auto* lines = new QPlainTextEdit(text);
    lines->setReadOnly(true);
    lines->setTabChangesFocus(true);
    lines->setMinimumSize(across, fontMetrics().lineSpacing() * linesDown);
    lines->setAccessibleName(tr("Message"));
    return lines;
  }
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setWordWrap(true);
  const int natural = fontMetrics().boundingRect(QRect(), Qt::AlignLeft, text).width() + spacing;
  label->setMinimumWidth(std::min(natural, across));
  return label;
}

QWidget* MessageDialog::MakeIcon(MessageIcon icon) {
  if (icon == MessageIcon::None) return nullptr;
  QStyle::StandardPixmap shape = QStyle::SP_MessageBoxInformation;
  if (icon == MessageIcon::Critical) shape = QStyle::SP_MessageBoxCritical;
  if (icon == MessageIcon::Question) shape = QStyle::SP_MessageBoxQuestion;
  if (icon == MessageIcon::Exclamation) shape = QStyle::SP_MessageBoxWarning;
  const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
  auto* label = new QLabel;
  label->setPixmap(style()->standardIcon(shape).pixmap(QSize(side, side), devicePixelRatioF()));
  return label;
}

/// The first button is the default one.
QDialogButtonBox* MessageDialog::MakeButtons(const Message& message) {
  auto* box = new QDialogButtonBox(ButtonsFor(message.buttons));
  for (QAbstractButton* button : box->buttons()) {
    const auto standard = box->standardButton(button);
    connect(button, &QAbstractButton::clicked, this, [this, standard] { Pressed(standard); });
  }
  const auto first = (ButtonsFor(message.buttons) & QDialogButtonBox::Yes) != 0
                         ? QDialogButtonBox::Yes
                         : QDialogButtonBox::Ok;
  box->button(first)->setDefault(true);
  box->button(first)->setFocus();
  if (!message.help) return box;
  const QPushButton* help = box->addButton(QDialogButtonBox::Help);
  connect(help, &QPushButton::clicked, this, [action = message.help] { action(); });
  const auto* key = new QShortcut(QKeySequence(Qt::Key_F1), this);
  connect(key, &QShortcut::activated, help, &QPushButton::click);
  return box;
}

void MessageDialog::Pressed(QDialogButtonBox::StandardButton button) {
  result_ = ResultOf(button);
  accept();
}

MessageResult ShowMessageBox(const Message& message, QWidget* owner, EventLoops& loops) {
  MessageDialog dialog(message, owner);
  static_cast<void>(loops.Run(dialog));
  return dialog.Result();
}

}  // namespace tessel
