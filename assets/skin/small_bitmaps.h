#pragma once

#include <QImage>

#include "glyphs.h"
#include "palette.h"
#include "ui/skin/layout.h"

namespace orma::art {

// The bitmaps that controls draw themselves. Sizes in design pixels; `scale` picture pixels each.

/// A line over the waveform, to be combined with the screen by exclusive or: over the empty display
/// it shows `shown`. `dash` 0 is a whole line, else the length of dashes and gaps.
[[nodiscard]] QImage DrawGraphLine(const Palette& palette, int height, const QColor& shown,
                                   int dash, int scale);

/// The flag of a mark at the upper edge of the waveform, combined like the lines.
[[nodiscard]] QImage DrawMarkFlag(const Palette& palette, int size, int scale);

/// The status lamp of a transport state: 0 stopped, 1 record-ready, 2 recording, 3 playing,
/// 4 fast-forward, 5 rewind. It keeps to the part of the bitmap that is `free` of other controls.
[[nodiscard]] QImage DrawStatusLamp(const Palette& palette, const QSize& size, const QRectF& free,
                                    int state, int scale);

/// A key of the bar beside the waveform.
[[nodiscard]] QImage DrawBarKey(const Palette& palette, int size, Glyph glyph, int scale);

/// A winding key while it moves an edge of the cut: what the page shows from the upper left corner
/// of `key` on, with another sign.
[[nodiscard]] QImage DrawNudgeKey(const Palette& palette, const QRectF& key, const QSize& size,
                                  Glyph glyph, int scale);

/// The knob without its pointer, which the program draws in black, 5 design pixels long.
[[nodiscard]] QImage DrawKnob(const Palette& palette, const QSize& size, const QPointF& middle,
                              int scale);

/// The publish key of the menu bar.
[[nodiscard]] QImage DrawPublishKey(const Palette& palette, const QSize& size, int scale);

}  // namespace orma::art
