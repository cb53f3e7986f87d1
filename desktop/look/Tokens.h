#pragma once

#include <QColor>
#include <QPalette>

namespace tessel {

/// The program's colours, each named by what it is used for. A widget asks CurrentTokens() when it
/// paints, or again at each QEvent::PaletteChange: so a change of theme reaches it at once.
struct Tokens {
  QColor window;      ///< Dialogs, tool rows, the sidebar.
  QColor base;        ///< Editor, grid, lists, boxes.
  QColor alternate;   ///< Every second row.
  QColor currentRow;  ///< The record that is current, the line with the caret.
  QColor selection;   ///< What is selected; the text on it keeps the colour `text`.
  QColor ground;      ///< Behind the document windows.
  QColor line;        ///< Lines of the grid, separators, frames that only divide.
  QColor edge;        ///< Around boxes, check boxes and buttons: 3 to 1 on `window` and on `base`.
  QColor text;        ///< Can be read on every ground, `selection` too.
  QColor muted;       ///< Headers, hints, line numbers, NULL; not for use on `selection`.
  QColor accent;      ///< Ring of what has the focus, default button, links, the current match.
  QColor keyword;     ///< Of SQL, as the three that follow. On `selection` SQL has `text`.
  QColor string;
  QColor number;
  QColor comment;
  QColor error;  ///< A mark at an error's place; text that tells of one.

  bool operator==(const Tokens&) const = default;
};

/// The program's own colours, for a desktop that gives none.
[[nodiscard]] const Tokens& LightTokens();
[[nodiscard]] const Tokens& DarkTokens();
/// LightTokens or DarkTokens, whichever is for grounds like this one.
[[nodiscard]] const Tokens& TokensOn(const QColor& ground);

/// The colours in use: those of the application's palette. UI thread.
[[nodiscard]] const Tokens& CurrentTokens();

/// The colours made of a desktop's palette: its grounds and its text, and what is missing between
/// them. Whether they can be read is for AreReadable to say.
[[nodiscard]] Tokens TokensOfDesktop(const QPalette& desktop);

/// Whether every text of the program can be read on each ground it may stand on.
[[nodiscard]] bool AreReadable(const Tokens& tokens);

/// The palette by which the toolkit draws in these colours. Each has a role, but for those of SQL
/// and errors, which follow from `base`.
[[nodiscard]] QPalette PaletteOf(const Tokens& tokens);

}  // namespace tessel
