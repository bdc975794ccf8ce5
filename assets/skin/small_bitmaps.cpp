#include "small_bitmaps.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "canvas.h"
#include "keys.h"
#include "type.h"

namespace orma::art {
namespace {

/// Turns a picture drawn on the display's colour into what the display must be combined with.
QImage AgainstPanel(QImage image, const Palette& palette) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb combined = (image.pixel(x, y) ^ palette.panel.rgb()) & RGB_MASK;
            image.setPixel(x, y, combined | 0xFF000000U);
        }
    }
    return image;
}

void DrawTicks(QPainter& painter, const Palette& palette, const QPointF& middle, double from,
               double to) {
    constexpr int kTicks = 11;
    for (int i = 0; i < kTicks; ++i) {  // over the knob's 300 degrees
        const double angle = (240 - 30.0 * i) * std::numbers::pi / 180;
        const QPointF out(std::cos(angle), -std::sin(angle));
        QPainterPath tick(middle + out * from);
        tick.lineTo(middle + out * to);
        const bool middleTick = i == kTicks / 2;
        painter.strokePath(tick, QPen(middleTick ? palette.text : palette.textDim,
                                      middleTick ? 1.4 : 1, Qt::SolidLine, Qt::FlatCap));
    }
}

}  // namespace

QImage DrawGraphLine(const Palette& palette, int height, const QColor& shown, int dash, int scale) {
    Canvas canvas(QRect(0, 0, 1, height), scale, palette.panel);
    const int length = dash == 0 ? height : dash;
    for (int y = 0; y < height; y += 2 * length) {
        canvas.Painter().fillRect(QRectF(0, y, 1, std::min(length, height - y)), shown);
    }
    return AgainstPanel(canvas.Take(), palette);
}

QImage DrawMarkFlag(const Palette& palette, int size, int scale) {
    Canvas canvas(QRect(0, 0, size, size), scale, palette.panel);
    const double shoulder = std::floor(size * 0.55);
    canvas.Painter().setBrush(palette.text);
    canvas.Painter().drawPolygon(
        QPolygonF({QPointF(0, 0), QPointF(size, 0), QPointF(size, shoulder),
                   QPointF(size / 2.0, size), QPointF(0, shoulder)}));
    return AgainstPanel(canvas.Take(), palette);
}

QImage DrawStatusLamp(const Palette& palette, const QSize& size, const QRectF& free, int state,
                      int scale) {
    struct Sign {
        Glyph glyph;
        QColor colour;
    };
    const Sign signs[] = {{Glyph::Stop, palette.textDim},    {Glyph::RecordReady, palette.meterRed},
                          {Glyph::Record, palette.meterRed}, {Glyph::Play, palette.lit},
                          {Glyph::FastForward, palette.lit}, {Glyph::Rewind, palette.lit}};
    const Sign& sign = signs[state];
    Canvas canvas(QRect(QPoint(), size), scale, palette.panel);
    const double high = std::min<double>(free.height() - 2, 18);
    // The double signs are nearly twice as wide as they are high, the square is a quiet one.
    const double unit = state >= 4   ? std::min(high, free.width() * 0.5)
                        : state == 3 ? high * 0.8
                        : state == 0 ? high * 0.7
                                     : high * 0.9;
    DrawGlyph(canvas.Painter(), sign.glyph, free.center(), 2 * std::round(unit / 2), sign.colour);
    return canvas.Take();
}

QImage DrawBarKey(const Palette& palette, int size, Glyph glyph, int scale) {
    Canvas canvas(QRect(0, 0, size, size), scale, palette.panel);
    DrawPanelKey(canvas.Painter(), palette, QRectF(0, 0, size, size), glyph,
                 size * (size < 14 ? 0.7 : 0.6), KeyState::Up);
    return canvas.Take();
}

QImage DrawNudgeKey(const Palette& palette, const QRectF& key, const QSize& size, Glyph glyph,
                    int scale) {
    Canvas canvas(QRect(key.topLeft().toPoint(), size), scale, palette.body);
    DrawLongKey(canvas.Painter(), palette, key, glyph, KeyState::Up);
    return canvas.Take();
}

QImage DrawKnob(const Palette& palette, const QSize& size, const QPointF& middle, int scale) {
    Canvas canvas(QRect(QPoint(), size), scale, palette.panel);
    QPainter& painter = canvas.Painter();
    const double reach = std::min(middle.x(), middle.y());
    const bool large = reach >= 13;
    const auto disc = [&](double radius, const QColor& colour) {
        painter.setBrush(colour);
        painter.drawEllipse(middle, radius, radius);
    };
    if (large) {
        DrawTicks(painter, palette, middle, reach - 4, reach - 1);
        disc(reach - 5.5, palette.trough);
        disc(reach - 7, palette.keySkirt);
        disc(reach - 8, palette.keyFace);
    } else {
        DrawTicks(painter, palette, middle, reach - 1, reach);
        disc(reach - 2, palette.keySkirt);
        disc(reach - 3, palette.keyFace);
    }
    if (size.width() > 1.5 * size.height()) {  // room for a wedge that says: more to the right
        const double left = 2 * middle.x() + 4;
        painter.setBrush(palette.trough);
        painter.drawPolygon(QPolygonF({QPointF(left, size.height() - 5),
                                       QPointF(size.width() - 2, size.height() - 5),
                                       QPointF(size.width() - 2, 5)}));
    }
    return canvas.Take();
}

QImage DrawPublishKey(const Palette& palette, const QSize& size, int scale) {
    Canvas canvas(QRect(QPoint(), size), scale, palette.body);
    const QRectF face(1, 1, size.width() - 2, size.height() - 2);
    QPainter& painter = canvas.Painter();
    painter.setBrush(palette.keyEdge);
    painter.drawRoundedRect(face, 6, 6);
    painter.setBrush(palette.keyFace);
    painter.drawRoundedRect(face.adjusted(1, 1, -1, -1), 5, 5);
    DrawGlyph(painter, Glyph::Broadcast, {size.width() / 2.0, 18}, 17, palette.ink);
    DrawLine(painter, "Publish", Type(12, QFont::DemiBold), {size.width() / 2.0, 42},
             Qt::AlignHCenter, palette.ink);
    return canvas.Take();
}

}  // namespace orma::art
