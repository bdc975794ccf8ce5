#include "type.h"

#include <QFontMetricsF>
#include <cmath>

namespace orma::art {

QFont Type(double pixels, QFont::Weight weight) {
    QFont font;
    font.setFamilies({"Inter", "DejaVu Sans"});
    font.setPixelSize(static_cast<int>(std::lround(pixels)));
    font.setWeight(weight);
    // Sharp baselines and x-heights at normal size; widths stay true to the design.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    return font;
}

namespace {

QFont Scaled(const QFont& font, const QPainter& painter) {
    QFont scaled = font;
    scaled.setPixelSize(
        static_cast<int>(std::lround(font.pixelSize() * painter.transform().m11())));
    return scaled;
}

}  // namespace

void DrawLine(QPainter& painter, const QString& line, const QFont& font, const QPointF& at,
              Qt::Alignment alignment, const QColor& colour) {
    QPointF point = painter.transform().map(at);
    const QFont scaled = Scaled(font, painter);
    const double width = QFontMetricsF(scaled).horizontalAdvance(line);
    if (alignment & Qt::AlignRight) point.rx() -= width;
    if (alignment & Qt::AlignHCenter) point.rx() -= width / 2;
    painter.save();
    painter.resetTransform();
    painter.setFont(scaled);
    painter.setPen(colour);
    painter.drawText(QPointF(std::round(point.x()), std::round(point.y())), line);
    painter.restore();
}

void DrawCentred(QPainter& painter, const QString& line, const QFont& font, const QRectF& box,
                 const QColor& colour) {
    const double scale = painter.transform().m11();
    const double capitals = QFontMetricsF(Scaled(font, painter)).capHeight() / scale;
    DrawLine(painter, line, font, {box.center().x(), box.center().y() + capitals / 2},
             Qt::AlignHCenter, colour);
}

}  // namespace orma::art
