#include "panel.h"

#include <QFontMetricsF>
#include <cmath>

#include "type.h"

namespace orma::art {
namespace {

constexpr double kMargin = 3;
constexpr double kRadius = 6;
constexpr int kHole = 2;
constexpr int kPitch = 6;

}  // namespace

void DrawPanel(QPainter& painter, const Palette& palette, const QRectF& rect) {
    const QRectF outer = rect.adjusted(-kMargin, -kMargin, kMargin, kMargin);
    painter.setBrush(palette.bodyLight);  // the case catches light below the recess
    painter.drawRoundedRect(outer.translated(0, 1), kRadius, kRadius);
    painter.setBrush(palette.panelEdge);
    painter.drawRoundedRect(outer, kRadius, kRadius);
    painter.setBrush(palette.panel);
    painter.drawRoundedRect(outer.adjusted(1, 1, -1, -1), kRadius - 1, kRadius - 1);
}

void DrawGrille(QPainter& painter, const Palette& palette, const QRectF& area, bool round) {
    const int columns = static_cast<int>((area.width() - kHole) / kPitch) + 1;
    const int rows = static_cast<int>((area.height() - kHole) / kPitch) + 1;
    const QPointF first(std::round(area.center().x() - ((columns - 1) * kPitch + kHole) / 2.0),
                        std::round(area.center().y() - ((rows - 1) * kPitch + kHole) / 2.0));
    const QPointF middle = first + QPointF((columns - 1) * kPitch, (rows - 1) * kPitch) / 2;
    painter.setBrush(palette.bodyShade);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QPointF at = first + QPointF(column * kPitch, row * kPitch);
            const QPointF out = at - middle;
            if (round && std::hypot(out.x() / area.width(), out.y() / area.height()) > 0.5)
                continue;
            painter.drawEllipse(QRectF(at, QSizeF(kHole, kHole)));
        }
    }
}

void DrawBrand(QPainter& painter, const Palette& palette, const QRectF& row) {
    const QFont strong = Type(11, QFont::DemiBold);
    const double baseline = std::round(row.center().y() + 4);
    DrawLine(painter, "Orma", strong, {row.x() + 2, baseline}, Qt::AlignLeft, palette.legend);
    DrawLine(painter, "Edit", Type(11, QFont::Normal),
             {row.x() + 6 + QFontMetricsF(strong).horizontalAdvance("Orma"), baseline},
             Qt::AlignLeft, palette.legend);
    const QRectF holes(row.right() - 70, row.center().y() - 4, 68, 8);
    DrawGrille(painter, palette, holes, false);
}

}  // namespace orma::art
