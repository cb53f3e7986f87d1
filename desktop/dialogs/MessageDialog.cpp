// The layout and the keys of a message box, for every question and notice of the program: icon,
// text and buttons, a help button when there is help, and letters that press a button.

#include "desktop/dialogs/MessageDialog.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QShortcut>
#include <algorithm>
#include <utility>
#include <vector>

#include "desktop/base/Text.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Scale.h"

namespace tessel {

namespace {

/// Texts beyond these scroll.
constexpr qsizetype longText = 1200;
constexpr qsizetype manyLines = 20;
constexpr int charactersAcross = 64;
constexpr int linesDown = 16;
constexpr int spacing = 16;
constexpr int iconSide = 40;  ///< At the ordinary font.

/// The buttons of a set, in the order in which its name has them.
std::vector<MessageResult> ResultsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok: return {MessageResult::Ok};
    case MessageButtons::OkCancel: return {MessageResult::Ok, MessageResult::Cancel};
    case MessageButtons::YesNo: return {MessageResult::Yes, MessageResult::No};
    case MessageButtons::YesNoCancel: break;
  }
  return {MessageResult::Yes, MessageResult::No, MessageResult::Cancel};
}

QDialogButtonBox::StandardButton ButtonOf(MessageResult result) {
  switch (result) {
    case MessageResult::Yes: return QDialogButtonBox::Yes;
    case MessageResult::No: return QDialogButtonBox::No;
    case MessageResult::Cancel: return QDialogButtonBox::Cancel;
    case MessageResult::Ok: break;
  }
  return QDialogButtonBox::Ok;
}

/// The drawing that tells what kind of message it is.
QString IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Critical: return QStringLiteral("message-critical");
    case MessageIcon::Question: return QStringLiteral("message-question");
    case MessageIcon::Exclamation: return QStringLiteral("message-warning");
    default: return QStringLiteral("message-information");
  }
}

bool HasMarkedLetter(const QAbstractButton& button) {
  return button.text().contains(QLatin1Char('&'));
}

/// The letter that presses a button: the marked one, else the first.
QString LetterOf(const QAbstractButton& button) {
  const QString text = button.text();
  const qsizetype mark = text.indexOf(QLatin1Char('&'));
  return text.mid(mark + 1, 1).toUpper();
}

/// The button that a letter presses: one where it is marked before one that only begins with it,
/// as "&Commit" and "Cancel" do. Null without one.
QAbstractButton* ButtonOfLetter(const QList<QAbstractButton*>& buttons, const QString& letter) {
  QAbstractButton* found = nullptr;
  for (QAbstractButton* button : buttons) {
    if (LetterOf(*button) != letter) continue;
    if (HasMarkedLetter(*button)) return button;
    if (found == nullptr) found = button;
  }
  return found;
}

bool IsLong(const QString& text) {
  return text.size() > longText || text.count(QLatin1Char('\n')) > manyLines;
}

}  // namespace

MessageDialog::MessageDialog(const Message& message, QWidget* owner)
    : QDialog(owner), text_(ToQt(message.text)), result_(ResultsOf(message.buttons).back()) {
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
  return new IconLabel(NamedIcon(IconOf(icon)), Scale().OfForm(QSize(iconSide, iconSide)).width());
}

QDialogButtonBox* MessageDialog::MakeButtons(const Message& message) {
  buttons_ = new QDialogButtonBox;
  const std::vector<MessageResult> results = ResultsOf(message.buttons);
  for (std::size_t i = 0; i < results.size(); ++i) {
    const MessageResult result = results[i];
    QPushButton* button = buttons_->addButton(ButtonOf(result));
    button->setIcon({});
    if (i < message.captions.size()) button->setText(ToQt(message.captions[i]));
    connect(button, &QAbstractButton::clicked, this, [this, result] { Pressed(result); });
  }
  if (message.help) AddHelp(*buttons_, message.help);
  default_ = buttons_->button(ButtonOf(message.defaultAnswer.value_or(results.front())));
  return buttons_;
}

void MessageDialog::AddHelp(QDialogButtonBox& box, std::function<void()> action) {
  QPushButton* help = box.addButton(QDialogButtonBox::Help);
  help->setAutoDefault(false);
  help->setIcon({});
  connect(help, &QPushButton::clicked, this, [action = std::move(action)] { action(); });
  const auto* key = new QShortcut(QKeySequence(Qt::Key_F1), this);
  connect(key, &QShortcut::activated, help, &QPushButton::click);
}

/// A platform theme may put the buttons in an order of its own, and Help first: which one Enter
/// presses is settled when all are in their places.
void MessageDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  default_->setDefault(true);
  default_->setFocus();
}

/// The text is not reached by Tab, but it can be copied.
void MessageDialog::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return QGuiApplication::clipboard()->setText(text_);
  const QString letter = event->text().toUpper();
  const bool plain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  if (plain && letter.size() == 1 && letter[0].isLetter())
    if (QAbstractButton* button = ButtonOfLetter(buttons_->buttons(), letter))
      return button->click();
  QDialog::keyPressEvent(event);
}

void MessageDialog::Pressed(MessageResult result) {
  result_ = result;
  accept();
}

MessageResult ShowMessageBox(const Message& message, QWidget* owner, EventLoops& loops) {
  MessageDialog dialog(message, owner);
  static_cast<void>(loops.Run(dialog));
  return dialog.Result();
}

}  // namespace tessel
