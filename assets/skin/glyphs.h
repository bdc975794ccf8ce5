#pragma once

#include <QColor>
#include <QPainter>

namespace orma::art {

enum class Glyph {
    Stop,
    Play,
    Record,
    RecordReady,
    Rewind,
    FastForward,
    BackMark,
    ForwardMark,
    BeginBack,     // the begin of a cut moves back
    EndBack,       // the end of a cut moves back
    BeginForward,  // the begin of a cut moves forward
    EndForward,    // the end of a cut moves forward
    Plus,
    Minus,
    Up,
    Down,
    Undo,
    Renew,
    Mark,
    Cross,
    ZoomIn,
    ZoomOut,
    Broadcast,
};

/// Draws a sign round its optical centre. `size` is the height of a square sign in design pixels;
/// round and pointed signs are a little larger, to look the same.
void DrawGlyph(QPainter& painter, Glyph glyph, const QPointF& centre, double size,
               const QColor& colour);

}  // namespace orma::art
