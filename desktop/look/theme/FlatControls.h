#pragma once

#include <QPainter>
#include <QStyleOption>

namespace tessel {

// The controls that are put together of several pieces, as the style draws them. Rectangles are in
// the coordinates of the option.

void DrawComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRect& arrow);

void DrawHeaderSection(QPainter& painter, const QStyleOptionHeader& section);

/// A tab without a frame; the one that is chosen is underlined in the accent.
void DrawTab(QPainter& painter, const QStyleOptionTab& tab);

void DrawProgressGroove(QPainter& painter, const QRect& rect);
void DrawProgress(QPainter& painter, const QStyleOptionProgressBar& bar);

/// A bar without buttons at its ends: what can be dragged, on a ground of the edge's colour.
void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar, const QRect& slider);
/// Where in a scroll bar without buttons a part of it stands.
[[nodiscard]] QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part,
                                  int shortestSlider);

}  // namespace tessel
