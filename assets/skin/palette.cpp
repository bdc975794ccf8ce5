#include "palette.h"

#include <cmath>

namespace orma::art {

QColor ToQColor(const Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

QColor Mix(const QColor& a, const QColor& b, double part) {
    const auto mix = [part](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * part));
    };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

Palette::Palette(const SkinColours& colours)
    : panel(ToQColor(colours.textBackground)),
      text(ToQColor(colours.text)),
      textDim(Mix(panel, text, 0.72)),
      raised(Mix(panel, text, 0.17)),
      trough(Mix(panel, text, 0.24)),
      thumb(Mix(panel, text, 0.85)),
      cursor(panel.lightness() < 128 ? QColor(150, 236, 255) : QColor(20, 24, 60)) {
    if (panel.lightness() >= 128) {  // a light display wants deeper colours to stand out from it
        meterAmber = QColor(236, 150, 0);
        meterGreen = QColor(0, 140, 60);
        meterRed = record;
    }
}

}  // namespace orma::art
