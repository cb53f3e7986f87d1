#include "desktop/grid/GridCopy.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "contract/base/Error.h"
#include "desktop/base/Text.h"

namespace tessel {

namespace {

constexpr std::size_t longestText = 512U << 20U;
/// An HTML table of more cells would take longer to make and to read than it is worth.
constexpr std::int64_t htmlCells = 100'000;
constexpr std::size_t htmlText = 32U << 20U;
constexpr std::string_view lineEnd = "\r\n";

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

bool NeedsQuotes(const std::string& text) {
  return text.starts_with('"') || text.find_first_of("\t\r\n") != std::string::npos;
}

void AppendRow(const RecordsModel& model, const CellsToCopy& cells, std::int64_t row,
               std::string& out) {
  for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
    if (column > cells.firstColumn) out += '\t';
    const std::string text = model.FullText(row, column);
    out += NeedsQuotes(text) ? Quoted(text) : text;
  }
  if (out.size() > longestText)
    throw Error(errorNumber::application, "Tessel",
                "The selected cells are too large for the clipboard.");
}

QString EscapedLines(const std::string& text) {
  QString html = ToQt(text).toHtmlEscaped();
  html.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
  return html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

QString HtmlHead(const RecordsModel& model, const CellsToCopy& cells) {
  QString html = QStringLiteral("<tr>");
  for (int column = cells.firstColumn; column <= cells.lastColumn; ++column)
    html +=
        QStringLiteral("<th>") + EscapedLines(model.FieldName(column)) + QStringLiteral("</th>");
  return html + QStringLiteral("</tr>\n");
}

void AppendHtmlRow(const RecordsModel& model, const CellsToCopy& cells, std::int64_t row,
                   QString& html) {
  html += QStringLiteral("<tr>");
  for (int column = cells.firstColumn; column <= cells.lastColumn; ++column)
    html += QStringLiteral("<td>") + EscapedLines(model.FullText(row, column)) +
            QStringLiteral("</td>");
  html += QStringLiteral("</tr>\n");
}

/// Calls `use` with the position of every row that is still there.
template <class Use>
void ForEachRow(const CellsToCopy& cells, Use use) {
  for (std::int64_t at = 0; at < cells.rowCount; ++at)
    if (const std::int64_t position = cells.positionOf(at); position >= 0) use(position);
}

}  // namespace

std::string CopiedText(const RecordsModel& model, const CellsToCopy& cells) {
  std::string text;
  if (cells.IsOneCell()) {
    ForEachRow(cells, [&](std::int64_t row) { text = model.FullText(row, cells.firstColumn); });
    return text;
  }
  bool first = true;
  ForEachRow(cells, [&](std::int64_t row) {
    if (!std::exchange(first, false)) text += lineEnd;
    AppendRow(model, cells, row, text);
  });
  return text;
}

QString CopiedHtml(const RecordsModel& model, const CellsToCopy& cells) {
  if (cells.rowCount * (cells.lastColumn - cells.firstColumn + 1) > htmlCells) return {};
  QString html = QStringLiteral("<table>\n") + HtmlHead(model, cells);
  ForEachRow(cells, [&](std::int64_t row) { AppendHtmlRow(model, cells, row, html); });
  return html + QStringLiteral("</table>");
}

void CopyToClipboard(const RecordsModel& model, const CellsToCopy& cells) {
  auto data = std::make_unique<QMimeData>();
  const std::string text = CopiedText(model, cells);
  data->setText(ToQt(text));
  const QString html = text.size() > htmlText ? QString() : CopiedHtml(model, cells);
  if (!html.isEmpty()) data->setHtml(html);
  QGuiApplication::clipboard()->setMimeData(data.release());
}

}  // namespace tessel
