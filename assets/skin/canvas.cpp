#include "canvas.h"

#include <cmath>

namespace orma::art {

Canvas::Canvas(const QRect& part, int scale, const QColor& background)
    : image_(part.size() * scale, QImage::Format_RGB32) {
    image_.fill(background);
    painter_.begin(&image_);
    painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter_.setPen(Qt::NoPen);
    painter_.scale(scale, scale);
    painter_.translate(-part.topLeft());
}

QImage Canvas::Take() {
    painter_.end();
    return image_;
}

QRectF Snapped(const QPainter& painter, const QRectF& rect) {
    const QTransform& toPicture = painter.transform();
    const QRectF mapped = toPicture.mapRect(rect);
    const double width = std::max(1.0, std::round(mapped.width()));
    const double height = std::max(1.0, std::round(mapped.height()));
    const QRectF whole(std::round(mapped.center().x() - width / 2 - 0.01),
                       std::round(mapped.center().y() - height / 2 - 0.01), width, height);
    return toPicture.inverted().mapRect(whole);
}

}  // namespace orma::art
