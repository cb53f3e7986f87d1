#include "desktop/look/Tokens.h"

#include <QGuiApplication>
#include <algorithm>
#include <utility>

#include "desktop/look/Colors.h"

namespace tessel {

namespace {

/// What a desktop's palette does not say, as parts of the way from one of its colours to another.
constexpr double currentRowTint = 0.10;
constexpr double selectionTint = 0.30;
constexpr double groundShade = 0.06;
constexpr double lineStrength = 0.15;
constexpr double edgeStrength = 0.45;
constexpr double mutedStrength = 0.72;
constexpr int accentSteps = 10;

bool CanBeRead(const QColor& text, const QColor& ground) {
  return Contrast(FromQColor(text), FromQColor(ground)) >= readableContrast;
}

bool CanBeReadOnAll(const QColor& text, std::initializer_list<QColor> grounds) {
  return std::ranges::all_of(grounds,
                             [&](const QColor& ground) { return CanBeRead(text, ground); });
}

/// The colours of SQL and of errors for a ground, where they can be read on it.
void TakeSqlColors(Tokens& tokens) {
  const Tokens& own = TokensOn(tokens.base);
  tokens.keyword = ReadableOn(tokens.base, own.keyword, tokens.text);
  tokens.string = ReadableOn(tokens.base, own.string, tokens.text);
  tokens.number = ReadableOn(tokens.base, own.number, tokens.text);
  tokens.comment = ReadableOn(tokens.base, own.comment, tokens.text);
  tokens.error = ReadableOn(tokens.base, own.error, tokens.text);
}

/// A selection on which the ordinary text can be read: the desktop's, else a tint of it.
QColor SelectionOf(const QPalette& desktop, const QColor& text) {
  const QColor selection = desktop.color(QPalette::Highlight);
  if (CanBeRead(text, selection)) return selection;
  return Blend(desktop.color(QPalette::Base), selection, selectionTint);
}

/// The desktop's own accent: its links, else its selection, else that of the program, as near to
/// the text as it must be to be read.
QColor AccentOf(const QPalette& desktop) {
  const QColor window = desktop.color(QPalette::Window);
  const QColor base = desktop.color(QPalette::Base);
  for (const auto role : {QPalette::Link, QPalette::Highlight})
    if (CanBeReadOnAll(desktop.color(role), {window, base})) return desktop.color(role);
  QColor accent = TokensOn(base).accent;
  for (int step = 0; step < accentSteps && !CanBeReadOnAll(accent, {window, base}); ++step)
    accent = Blend(accent, desktop.color(QPalette::Text), 1.0 / accentSteps);
  return accent;
}

/// The roles that hold colours of the program in a palette.
constexpr std::pair<QColor Tokens::*, QPalette::ColorRole> roles[] = {
    {&Tokens::window, QPalette::Window},
    {&Tokens::base, QPalette::Base},
    {&Tokens::alternate, QPalette::AlternateBase},
    {&Tokens::currentRow, QPalette::Midlight},
    {&Tokens::selection, QPalette::Highlight},
    {&Tokens::ground, QPalette::Dark},
    {&Tokens::line, QPalette::Mid},
    {&Tokens::edge, QPalette::Shadow},
    {&Tokens::text, QPalette::Text},
    {&Tokens::muted, QPalette::PlaceholderText},
    {&Tokens::accent, QPalette::Link}};

Tokens TokensOfRoles(const QPalette& palette) {
  Tokens tokens;
  for (const auto& [token, role] : roles) tokens.*token = palette.color(QPalette::Active, role);
  TakeSqlColors(tokens);
  return tokens;
}

/// What is disabled has the muted text, on the window's ground.
void SetDisabled(QPalette& palette, const Tokens& tokens) {
  for (const auto role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
    palette.setColor(QPalette::Disabled, role, tokens.muted);
  palette.setColor(QPalette::Disabled, QPalette::Base, tokens.window);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, tokens.alternate);
}

}  // namespace

const Tokens& LightTokens() {
  static const Tokens tokens{
      QColor(0xF4, 0xF5, 0xF7), QColor(0xFF, 0xFF, 0xFF), QColor(0xF7, 0xF8, 0xFA),
      QColor(0xEE, 0xF4, 0xFD), QColor(0xD6, 0xE6, 0xFB), QColor(0xE6, 0xE9, 0xEE),
      QColor(0xD9, 0xDD, 0xE3), QColor(0x88, 0x91, 0x9D), QColor(0x1B, 0x1F, 0x24),
      QColor(0x5C, 0x66, 0x72), QColor(0x1F, 0x6F, 0xD0), QColor(0x0B, 0x5C, 0xAD),
      QColor(0x9A, 0x34, 0x12), QColor(0x7A, 0x3E, 0x9D), QColor(0x3F, 0x6B, 0x2E),
      QColor(0xB4, 0x23, 0x18)};
  return tokens;
}

const Tokens& DarkTokens() {
  static const Tokens tokens{
      QColor(0x1F, 0x23, 0x29), QColor(0x16, 0x19, 0x1E), QColor(0x1B, 0x1F, 0x25),
      QColor(0x1C, 0x27, 0x34), QColor(0x1F, 0x43, 0x74), QColor(0x12, 0x15, 0x19),
      QColor(0x34, 0x3B, 0x45), QColor(0x6B, 0x75, 0x82), QColor(0xE6, 0xE9, 0xEE),
      QColor(0x9A, 0xA4, 0xB1), QColor(0x5A, 0xA2, 0xFF), QColor(0x7A, 0xB8, 0xFF),
      QColor(0xF0, 0xA6, 0x7A), QColor(0xC9, 0xA1, 0xE8), QColor(0x8F, 0xBF, 0x7A),
      QColor(0xFF, 0x8F, 0x85)};
  return tokens;
}

const Tokens& TokensOn(const QColor& ground) {
  return IsDark(ground) ? DarkTokens() : LightTokens();
}

/// Kept for as long as the palette is the same: a painting widget asks for them again and again.
const Tokens& CurrentTokens() {
  static Tokens tokens;
  static qint64 key = 0;
  const QPalette palette = QGuiApplication::palette();
  if (key != palette.cacheKey()) {
    tokens = TokensOfRoles(palette);
    key = palette.cacheKey();
  }
  return tokens;
}

Tokens TokensOfDesktop(const QPalette& desktop) {
  Tokens tokens;
  tokens.window = desktop.color(QPalette::Window);
  tokens.base = desktop.color(QPalette::Base);
  tokens.alternate = desktop.color(QPalette::AlternateBase);
  tokens.text = desktop.color(QPalette::Text);
  tokens.accent = AccentOf(desktop);
  tokens.currentRow = Blend(tokens.base, tokens.accent, currentRowTint);
  tokens.selection = SelectionOf(desktop, tokens.text);
  tokens.ground = Blend(tokens.window, QColor(Qt::black), groundShade);
  tokens.line = Blend(tokens.window, tokens.text, lineStrength);
  tokens.edge = Blend(tokens.window, tokens.text, edgeStrength);
  tokens.muted = Blend(tokens.window, tokens.text, mutedStrength);
  TakeSqlColors(tokens);
  return tokens;
}

bool AreReadable(const Tokens& tokens) {
  const std::initializer_list<QColor> grounds{tokens.window, tokens.base, tokens.alternate,
                                              tokens.currentRow, tokens.ground};
  const bool sql = std::ranges::all_of(
      std::initializer_list<QColor>{tokens.keyword, tokens.string, tokens.number, tokens.comment,
                                    tokens.error},
      [&](const QColor& color) {
        return CanBeReadOnAll(color, {tokens.base, tokens.alternate, tokens.currentRow});
      });
  return sql && CanBeReadOnAll(tokens.text, grounds) && CanBeReadOnAll(tokens.muted, grounds) &&
         CanBeRead(tokens.text, tokens.selection) &&
         CanBeReadOnAll(tokens.accent, {tokens.window, tokens.base});
}

QPalette PaletteOf(const Tokens& tokens) {
  QPalette palette(tokens.text, tokens.window, tokens.base, tokens.ground, tokens.line, tokens.text,
                   Qt::white, tokens.base, tokens.window);
  for (const auto& [token, role] : roles) palette.setColor(role, tokens.*token);
  palette.setColor(QPalette::HighlightedText, tokens.text);
  palette.setColor(QPalette::LinkVisited, tokens.muted);
  palette.setColor(QPalette::ToolTipBase, tokens.base);
  palette.setColor(QPalette::ToolTipText, tokens.text);
  SetDisabled(palette, tokens);
  return palette;
}

}  // namespace tessel
