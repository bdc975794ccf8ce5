#include "keys.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "canvas.h"
#include "type.h"

namespace orma::art {
namespace {

// How far a key stands above the case, seen from the front.
constexpr double kDepth = 2;

struct KeyColours {
    QColor face, edge, skirt, sign;
};

KeyColours ColoursOf(const Palette& palette, KeyState state) {
    switch (state) {
        case KeyState::Up:
            return {palette.keyFace, palette.keyEdge, palette.keySkirt, palette.ink};
        case KeyState::Lit:
            return {palette.lit, palette.litEdge, palette.litEdge, palette.ink};
        case KeyState::Recording:
            return {palette.record, palette.recordEdge, palette.recordEdge, palette.white};
    }
    return {};
}

/// Draws a key with corners of `radius` and returns its face, which a sunk key has lower.
QRectF DrawKey(QPainter& painter, const QRectF& top, double radius, const KeyColours& colours,
               KeyState state) {
    const QRectF bottom = top.translated(0, kDepth);
    const QRectF face = state == KeyState::Up ? top : top.translated(0, kDepth / 2);
    painter.setBrush(colours.skirt);
    painter.drawRoundedRect(bottom, radius, radius);
    painter.setBrush(colours.edge);
    painter.drawRoundedRect(face, radius, radius);
    painter.setBrush(colours.face);
    painter.drawRoundedRect(face.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    return face;
}

QRectF DrawLong(QPainter& painter, const QRectF& rect, const KeyColours& colours, KeyState state) {
    const QRectF top = rect.adjusted(0, 0, 0, -kDepth);
    return DrawKey(painter, top, top.height() / 2, colours, state);
}

}  // namespace

void DrawRoundKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                  KeyState state) {
    KeyColours colours = ColoursOf(palette, state);
    if (glyph == Glyph::Record && state == KeyState::Up) colours.sign = palette.record;
    const double diameter = std::min(rect.width(), rect.height()) - kDepth;
    const QRectF top(rect.center().x() - diameter / 2, rect.y(), diameter, diameter);
    const QRectF face = DrawKey(painter, top, diameter / 2, colours, state);
    // A whole number of pixels of the key's own parity stands in its exact middle.
    double size = std::round(diameter * 0.32);
    if (std::fmod(diameter - size, 2) != 0) size += 1;
    DrawGlyph(painter, glyph, face.center(), size, colours.sign);
}

void DrawLongKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                 KeyState state) {
    const KeyColours colours = ColoursOf(palette, state);
    const QRectF face = DrawLong(painter, rect, colours, state);
    DrawGlyph(painter, glyph, face.center(), std::round(face.height() * 0.54), colours.sign);
}

void DrawLongKey(QPainter& painter, const Palette& palette, const QRectF& rect, const QString& word,
                 KeyState state) {
    const KeyColours colours = ColoursOf(palette, state);
    const QRectF face = DrawLong(painter, rect, colours, state);
    DrawCentred(painter, word, Type(11, QFont::DemiBold), face, colours.sign);
}

void DrawPanelKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                  double glyphSize, KeyState state) {
    painter.setBrush(state == KeyState::Up ? palette.raised : palette.lit);
    painter.drawRoundedRect(rect, 3, 3);
    DrawGlyph(painter, glyph, rect.center(), glyphSize,
              state == KeyState::Up ? palette.text : palette.ink);
}

void DrawEdgeKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                 KeyState state) {
    painter.setBrush(state == KeyState::Up ? palette.keySkirt : palette.litEdge);
    painter.drawRoundedRect(rect, 4, 4);
    painter.setBrush(state == KeyState::Up ? palette.body : palette.lit);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), 3, 3);
    DrawGlyph(painter, glyph, rect.center(), 8,
              state == KeyState::Up ? palette.legend : palette.ink);
}

}  // namespace orma::art
