#include "desktop/grid/cells/GridColors.h"

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr double alternateTint = 0.03;
constexpr double currentTint = 0.12;
constexpr double lineTint = 0.15;
constexpr double mutedTint = 0.65;
constexpr double markedTint = 0.25;
constexpr QColor warm(255, 160, 0);

/// On a ground of the connection's own.
GridColors OnOwnGround(const QColor& base, const QColor& text) {
  const QColor accent = TokensOn(base).accent;
  return {base,
          Blend(base, text, alternateTint),
          Blend(base, accent, currentTint),
          Blend(base, warm, markedTint),
          Blend(base, text, lineTint),
          text,
          ReadableOn(base, Blend(base, text, mutedTint), text),
          ReadableOn(base, accent, text)};
}

}  // namespace

GridColors GridColorsOf(const QPalette& palette) {
  const Tokens& tokens = CurrentTokens();
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  if (base != tokens.base) return OnOwnGround(base, text);
  return {base, tokens.alternate, tokens.currentRow, Blend(base, warm, markedTint), tokens.line,
          text, tokens.muted,     tokens.accent};
}

}  // namespace tessel
