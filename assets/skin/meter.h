#pragma once

#include <QPainter>

#include "palette.h"

namespace orma::art {

/// Draws the level meter whose bar fills `bar` (80 design pixels high), with the overload lamp in
/// the 8 pixels above it. The bar's first 30 pixels are 10 dB, the next 30 are 20 dB, the rest 1 dB
/// each.
void DrawMeter(QPainter& painter, const Palette& palette, const QRectF& bar, bool lit);

/// Draws the scale to the left of the meter: ticks and dB below full scale.
void DrawMeterScale(QPainter& painter, const Palette& palette, const QRectF& bar);

}  // namespace orma::art
