#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

class QXmlStreamReader;

namespace tessel {

/// A line of the contents: its page (with "#" and a place in it, perhaps) and what stands below it.
struct HelpTopic {
  QString title;
  QString page;
  std::vector<HelpTopic> below;
};

/// The help book that is built into the program: its pages, contents and index.
class HelpBook {
 public:
  HelpBook();

  [[nodiscard]] const QString& Title() const { return title_; }
  /// The page that is shown first.
  [[nodiscard]] const QString& StartPage() const { return start_; }
  [[nodiscard]] const std::vector<HelpTopic>& Contents() const { return contents_; }
  /// Words and their pages, sorted.
  [[nodiscard]] const std::vector<HelpTopic>& Index() const { return index_; }
  /// Empty when the book has none.
  [[nodiscard]] QString PageOfContext(int context) const { return contexts_.value(context); }
  [[nodiscard]] QString PageOfForm(const QString& form) const { return forms_.value(form); }

  /// The pages that hold every word of `text`, whatever its case; those with a word in their title
  /// first. Nothing for an empty text.
  [[nodiscard]] std::vector<HelpTopic> Search(const QString& text) const;

  /// Where a page lies among the program's resources.
  [[nodiscard]] static QString ResourceOf(const QString& page);

 private:
  struct PageText {
    HelpTopic topic;
    QString text;
  };

  void Read(QXmlStreamReader& xml);
  void ReadPages();
  [[nodiscard]] static HelpTopic ReadTopic(QXmlStreamReader& xml);

  QString title_;
  QString start_;
  std::vector<HelpTopic> contents_;
  std::vector<HelpTopic> index_;
  QHash<int, QString> contexts_;
  QHash<QString, QString> forms_;
  std::vector<PageText> texts_;
};

}  // namespace tessel
