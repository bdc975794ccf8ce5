#include "meter.h"

#include <algorithm>

#include "type.h"

namespace orma::art {
namespace {

constexpr int kSegment = 3;  // 1 dB near full scale, so that colours change exactly at -3 and -10
constexpr int kGap = 1;
constexpr int kRedRows = 9;
constexpr int kAmberRows = 30;
constexpr int kLampRows = 8;

struct Tick {
    int row;
    const char* numeral;
};
constexpr Tick kTicks[] = {{0, "0"},   {9, "3"},   {18, ""},  {30, "10"},
                           {45, "20"}, {60, "30"}, {70, "40"}};

}  // namespace

void DrawMeter(QPainter& painter, const Palette& palette, const QRectF& bar, bool lit) {
    const auto shade = [&](const QColor& colour) { return lit ? colour : palette.Off(colour); };
    painter.fillRect(QRectF(bar.x(), bar.y() - kLampRows, bar.width(), kLampRows - 2),
                     shade(palette.meterRed));
    for (int row = 0; row < bar.height(); row += kSegment) {
        const QColor& colour = row < kRedRows     ? palette.meterRed
                               : row < kAmberRows ? palette.meterAmber
                                                  : palette.meterGreen;
        const double rows = std::min<double>(kSegment - kGap, bar.height() - row);
        painter.fillRect(QRectF(bar.x(), bar.y() + row, bar.width(), rows), shade(colour));
    }
}

void DrawMeterScale(QPainter& painter, const Palette& palette, const QRectF& bar) {
    const QFont font = Type(9, QFont::DemiBold);
    for (const Tick& tick : kTicks) {
        const double y = bar.y() + tick.row;
        painter.fillRect(QRectF(bar.x() - 4, y, 2, 1), palette.textDim);
        DrawLine(painter, tick.numeral, font, {bar.x() - 5, y + 4}, Qt::AlignRight,
                 palette.textDim);
    }
}

}  // namespace orma::art
