#pragma once

#include <QPainter>
#include <QString>

#include "glyphs.h"
#include "palette.h"

namespace orma::art {

/// How a key looks: raised, or sunk and lit; the record key lights up red.
enum class KeyState { Up, Lit, Recording };

/// A round transport key. All of it, its skirt included, lies inside `rect`.
void DrawRoundKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                  KeyState state);

/// A long key with round ends that carries a sign or a word.
void DrawLongKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                 KeyState state);
void DrawLongKey(QPainter& painter, const Palette& palette, const QRectF& rect, const QString& word,
                 KeyState state);

/// A small square key on the display.
void DrawPanelKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                  double glyphSize, KeyState state);

/// A key let into the edge of the display, of the colour of the case until it is lit.
void DrawEdgeKey(QPainter& painter, const Palette& palette, const QRectF& rect, Glyph glyph,
                 KeyState state);

}  // namespace orma::art
