#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QString>

namespace orma::art {

/// Inter in the given weight, DejaVu Sans where it is missing. `pixels` is the em height.
[[nodiscard]] QFont Type(double pixels, QFont::Weight weight);

/// Draws one line with its baseline and its left edge, middle or right edge (`alignment`) at a
/// point in design pixels. The font's size is in design pixels, too; the baseline falls on a whole
/// pixel.
void DrawLine(QPainter& painter, const QString& line, const QFont& font, const QPointF& at,
              Qt::Alignment alignment, const QColor& colour);

/// The same, centred in `box` by the height of its capitals.
void DrawCentred(QPainter& painter, const QString& line, const QFont& font, const QRectF& box,
                 const QColor& colour);

}  // namespace orma::art
