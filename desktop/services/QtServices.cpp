#include "desktop/services/QtServices.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>
#include <QProcess>
#include <QTime>

#include "contract/base/Error.h"
#include "desktop/base/Text.h"

namespace tessel {

namespace {

class NoticeEvent final : public QEvent {
 public:
  NoticeEvent(std::weak_ptr<const void> owner, std::function<void()> notice)
      : QEvent(User), owner_(std::move(owner)), notice_(std::move(notice)) {}
  void Deliver() const {
    if (const auto alive = owner_.lock()) notice_();
  }

 private:
  std::weak_ptr<const void> owner_;
  std::function<void()> notice_;
};

}  // namespace

std::string QtClipboard::Text() const { return FromQt(QGuiApplication::clipboard()->text()); }

std::string QtClipboard::Html() const {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data != nullptr && data->hasHtml() ? FromQt(data->html()) : std::string();
}

void QtClipboard::SetText(std::string_view text) {
  QGuiApplication::clipboard()->setText(ToQt(text));
}

/// The locale's long format without the time zone that some have at its end.
std::string QtClock::LongTime() const {
  QString format = QLocale::system().timeFormat(QLocale::LongFormat);
  format.remove(QLatin1Char('t')).remove(QLatin1String("()"));
  return FromQt(QLocale::system().toString(QTime::currentTime(), format.trimmed()));
}

std::string QtClock::ShortTimeOf(std::chrono::system_clock::time_point moment) const {
  const QDateTime time =
      QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(moment));
  return FromQt(time.toString(QStringLiteral("HH:mm")));
}

std::string QtClock::UtcStamp() const {
  return FromQt(QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
}

void QtEventQueue::Post(std::weak_ptr<const void> owner, std::function<void()> notice) {
  QCoreApplication::postEvent(this, new NoticeEvent(std::move(owner), std::move(notice)));
}

bool QtEventQueue::event(QEvent* event) {
  const auto* notice = dynamic_cast<NoticeEvent*>(event);
  if (notice == nullptr) return QObject::event(event);
  notice->Deliver();
  return true;
}

void StartDetached(const std::string& path) {
  QProcess process;
  process.setProgram(ToQt(path));
  if (process.startDetached()) return;
  throw Error(errorNumber::file, "Tessel", FromQt(process.errorString()));
}

}  // namespace tessel
