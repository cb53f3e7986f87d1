#include "desktop/help/HelpBook.h"

#include <QDir>
#include <QFile>
#include <QTextDocument>
#include <QXmlStreamReader>
#include <algorithm>

namespace tessel {

namespace {

const QString folder = QStringLiteral(":/help/");

QString ReadResource(const QString& name) {
  QFile file(folder + name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool HoldsAll(const QString& text, const QStringList& words) {
  return std::ranges::all_of(
      words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

bool HoldsAny(const QString& text, const QStringList& words) {
  return std::ranges::any_of(
      words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

}  // namespace

HelpBook::HelpBook() {
  QXmlStreamReader xml(ReadResource(QStringLiteral("book.xml")));
  while (!xml.atEnd())
    if (xml.readNext() == QXmlStreamReader::StartElement) Read(xml);
  std::ranges::sort(index_, [](const HelpTopic& a, const HelpTopic& b) {
    return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
  });
  ReadPages();
}

void HelpBook::Read(QXmlStreamReader& xml) {
  const auto given = [attributes = xml.attributes()](const char* name) {
    return attributes.value(QLatin1String(name)).toString();
  };
  const QString kind = xml.name().toString();
  if (kind == QLatin1String("book")) {
    title_ = given("title");
    start_ = given("start");
  } else if (kind == QLatin1String("topic")) {
    contents_.push_back(ReadTopic(xml));
  } else if (kind == QLatin1String("context")) {
    contexts_.insert(given("number").toInt(), given("page"));
  } else if (kind == QLatin1String("form")) {
    forms_.insert(given("name"), given("page"));
  } else if (kind == QLatin1String("word")) {
    index_.push_back({given("text"), given("page"), {}});
  }
}

/// Up to the end of the topic's element.
HelpTopic HelpBook::ReadTopic(QXmlStreamReader& xml) {
  const auto attributes = xml.attributes();
  HelpTopic topic{attributes.value(QLatin1String("title")).toString(),
                  attributes.value(QLatin1String("page")).toString(),
                  {}};
  while (xml.readNextStartElement()) topic.below.push_back(ReadTopic(xml));
  return topic;
}

void HelpBook::ReadPages() {
  const QStringList pages = QDir(folder).entryList({QStringLiteral("*.html")}, QDir::Files);
  for (const QString& page : pages) {
    QTextDocument document;
    document.setHtml(ReadResource(page));
    const QString title = document.metaInformation(QTextDocument::DocumentTitle);
    texts_.push_back({{title, page, {}}, document.toPlainText()});
  }
}

std::vector<HelpTopic> HelpBook::Search(const QString& text) const {
  const QStringList words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  std::vector<HelpTopic> found;
  if (words.isEmpty()) return found;
  for (const PageText& page : texts_)
    if (HoldsAll(page.text, words)) found.push_back(page.topic);
  std::ranges::stable_partition(
      found, [&](const HelpTopic& topic) { return HoldsAny(topic.title, words); });
  return found;
}

QString HelpBook::ResourceOf(const QString& page) { return QStringLiteral("qrc:/help/") + page; }

}  // namespace tessel
