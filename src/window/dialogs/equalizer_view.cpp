#include "window/dialogs/equalizer_view.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "audio/engine/equalizer_filter.h"
#include "window/dialogs/dialog_look.h"

namespace orma {
namespace {

constexpr double kLowest = 20;      // Hz
constexpr double kHighest = 20000;  // Hz
constexpr int kLetters = 11;        // pixels
constexpr double kRounding = 8;

/// Frequencies with a line; every second of them is named.
struct Line {
    double frequency;
    const char* name;
};
constexpr Line kLines[] = {{50, "50"},   {100, "100"}, {200, "200"}, {500, "500"},
                           {1000, "1k"}, {2000, "2k"}, {5000, "5k"}, {10000, "10k"}};

}  // namespace

EqualizerView::EqualizerView(std::uint32_t sampleRate) : sampleRate_(sampleRate) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    Show({});
}

void EqualizerView::Show(const EqualizerSet& set) {
    set_ = set;
    QString told = QStringLiteral("Frequency response");
    for (const EqualizerBand& band : set_.bands) {
        if (set_.on == 0 || band.enabled == 0) continue;
        told += QStringLiteral(", %1 dB at %2 Hz")
                    .arg(DbAt(band.frequency), 0, 'f', 1)
                    .arg(unsigned{band.frequency});
    }
    setAccessibleName(told);
    update();
}

double EqualizerView::DbAt(double frequency) const {
    const double offset = set_.on != 0 ? set_.gainOffset : 0;
    return EqualizerResponseDb(set_, sampleRate_, frequency) + offset;
}

/// The dB at the upper and the lower edge: a common measure, so that sets can be compared, as long
/// as the curve fits into it.
int EqualizerView::Range() const {
    double largest = 0;
    for (double frequency = kLowest; frequency <= kHighest; frequency *= 1.05)
        largest = std::max(largest, std::abs(DbAt(frequency)));
    constexpr int kLargest = 96;
    int range = 12;
    while (range < largest && range < kLargest)
        range *= 2;
    return range;
}

void EqualizerView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath panel;
    panel.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRounding, kRounding);
    painter.fillPath(panel, look::kPanel);
    QFont letters = font();
    letters.setPixelSize(kLetters);
    painter.setFont(letters);

    const QRectF plot = QRectF(rect()).adjusted(40, 12, -14, -24);
    const double highest = std::min(kHighest, sampleRate_ / 2.0);
    const int range = Range();
    const auto x = [&](double frequency) {
        return plot.left() +
               plot.width() * std::log(frequency / kLowest) / std::log(highest / kLowest);
    };
    const auto y = [&](double db) { return plot.center().y() - db / range * plot.height() / 2; };

    for (int db = -range; db <= range; db += range / 2) {
        painter.setPen(QPen(db == 0 ? look::kPanelLegend : look::kPanelLine, 1));
        const double line = std::round(y(db)) + 0.5;
        painter.drawLine(QPointF(plot.left(), line), QPointF(plot.right(), line));
        painter.setPen(look::kPanelLegend);
        painter.drawText(QRectF(0, line - 8, plot.left() - 7, 16),
                         Qt::AlignRight | Qt::AlignVCenter,
                         db == 0 ? QStringLiteral("0 dB") : QString::asprintf("%+d", db));
    }
    for (const Line& line : kLines) {
        if (line.frequency >= highest) break;
        const double at = std::round(x(line.frequency)) + 0.5;
        painter.setPen(QPen(look::kPanelLine, 1));
        painter.drawLine(QPointF(at, plot.top()), QPointF(at, plot.bottom()));
        painter.setPen(look::kPanelLegend);
        painter.drawText(QRectF(at - 20, plot.bottom() + 4, 40, 16), Qt::AlignCenter,
                         QString::fromLatin1(line.name));
    }

    painter.drawText(QRectF(plot.right() - 30, plot.bottom() + 4, 30, 16), Qt::AlignRight,
                     QStringLiteral("Hz"));

    QPolygonF curve;
    for (double pixel = plot.left(); pixel <= plot.right(); pixel += 1) {
        const double part = (pixel - plot.left()) / plot.width();
        curve.append({pixel, y(DbAt(kLowest * std::pow(highest / kLowest, part)))});
    }
    painter.setClipRect(plot.adjusted(-1, -2, 1, 2));
    painter.setPen(QPen(set_.on != 0 ? look::kLit : look::kPanelText, 2, Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(curve);
}

}  // namespace orma
