#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

#include "ui/skin/layout.h"

namespace orma::art {

[[nodiscard]] inline QRectF ToQRectF(const ElementRect& rect) {
    return QRectF(rect.x, rect.y, rect.w, rect.h);
}

/// A picture of a part of the design screen, drawn in design pixels at a whole scale.
class Canvas {
  public:
    /// `part` in design pixels; the picture is scale times as large.
    Canvas(const QRect& part, int scale, const QColor& background);

    [[nodiscard]] QPainter& Painter() { return painter_; }
    /// Ends the drawing.
    [[nodiscard]] QImage Take();

  private:
    QImage image_;
    QPainter painter_;
};

/// `rect` moved and sized to whole pixels of the picture, for edges that must be sharp.
[[nodiscard]] QRectF Snapped(const QPainter& painter, const QRectF& rect);

}  // namespace orma::art
