#pragma once

#include <QPainter>

#include "palette.h"

namespace orma::art {

/// Draws the display with `rect` inside it: it reaches 3 pixels further on every side, so that
/// opaque text boxes at the edge of `rect` keep within its round corners.
void DrawPanel(QPainter& painter, const Palette& palette, const QRectF& rect);

/// Rows of small holes that fill `area` evenly; `round` cuts them to an ellipse.
void DrawGrille(QPainter& painter, const Palette& palette, const QRectF& area, bool round);

/// The maker's line: name to the left, a short grille to the right.
void DrawBrand(QPainter& painter, const Palette& palette, const QRectF& row);

}  // namespace orma::art
