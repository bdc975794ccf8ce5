#include "glyphs.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "canvas.h"

namespace orma::art {
namespace {

constexpr double kSoftness = 0.05;  // width of the join that rounds corners

/// One sign being drawn: lengths are in units of its size, from its optical centre.
class Sign {
  public:
    Sign(QPainter& painter, const QPointF& centre, double size, const QColor& colour)
        : painter_(painter), centre_(centre), size_(size), colour_(colour) {}

    /// A sharp upright rectangle round (x, y).
    void Bar(double x, double y, double width, double height) const {
        const QRectF bar(At(x - width / 2, y - height / 2), QSizeF(width, height) * size_);
        painter_.fillRect(Snapped(painter_, bar), colour_);
    }
    /// A sharp plus sign, or a minus sign.
    void Plus(double x, double y, double length, double stroke, bool upright) const {
        const auto [middle, half, thick] = Arms(x, y, length, stroke);
        painter_.fillRect(FromPicture({middle.x() - half, middle.y() - thick / 2, 2 * half, thick}),
                          colour_);
        if (!upright) return;
        painter_.fillRect(FromPicture({middle.x() - thick / 2, middle.y() - half, thick, 2 * half}),
                          colour_);
    }
    /// A sharp bracket round (x, 0) that opens to the right (begin) or to the left (end).
    void Bracket(double x, bool begin) const {
        const QRectF outer = Snapped(painter_, {At(x - 0.2, -0.56), QSizeF(0.4, 1.12) * size_});
        const double stroke = std::max(1.0, std::round(0.17 * size_ * Scale())) / Scale();
        const double back = begin ? outer.left() : outer.right() - stroke;
        painter_.fillRect(QRectF(back, outer.top(), stroke, outer.height()), colour_);
        painter_.fillRect(QRectF(outer.left(), outer.top(), outer.width(), stroke), colour_);
        painter_.fillRect(QRectF(outer.left(), outer.bottom() - stroke, outer.width(), stroke),
                          colour_);
    }
    /// A triangle whose base stands at x and whose tip is `length` away from it (left: negative).
    void Triangle(double x, double length, double height) const {
        // The outer edge of the base, its round join included, falls between two pixels.
        const double base =
            FromPicture({std::round(painter_.transform().map(At(x, 0)).x()), 0, 0, 0}).x();
        const double left = base + (length > 0 ? kSoftness : -kSoftness) * size_ / 2;
        Polygon({{left, At(0, -height / 2).y()}, At(x + length, 0), {left, At(0, height / 2).y()}});
    }
    /// The same, upright; the base at y.
    void UprightTriangle(double y, double length, double width) const {
        Polygon({At(-width / 2, y), At(0, y + length), At(width / 2, y)});
    }
    void Disc(double diameter) const {
        painter_.setBrush(colour_);
        painter_.drawEllipse(centre_, diameter / 2 * size_, diameter / 2 * size_);
    }
    void Ring(double x, double y, double diameter, double stroke) const {
        painter_.save();
        painter_.setBrush(Qt::NoBrush);
        painter_.setPen(Pen(stroke));
        painter_.drawEllipse(At(x, y), diameter / 2 * size_, diameter / 2 * size_);
        painter_.restore();
    }
    /// Part of a circle, from `start` over `span` degrees, anticlockwise from three o'clock.
    void Arc(double x, double y, double diameter, double stroke, double start, double span) const {
        QPainterPath path;
        const double d = diameter * size_;
        const QRectF box(At(x, y) - QPointF(d / 2, d / 2), QSizeF(d, d));
        path.arcMoveTo(box, start);
        path.arcTo(box, start, span);
        painter_.strokePath(path, Pen(stroke));
    }
    void Stroke(const QPointF& from, const QPointF& to, double stroke) const {
        QPainterPath path(At(from.x(), from.y()));
        path.lineTo(At(to.x(), to.y()));
        painter_.strokePath(path, Pen(stroke));
    }
    void Polygon(const QPolygonF& points) const {
        QPainterPath path;
        path.addPolygon(points);
        path.closeSubpath();
        painter_.fillPath(path, colour_);
        // A hair of round join takes the sting out of the corners.
        painter_.strokePath(path, Pen(kSoftness));
    }
    [[nodiscard]] QPointF At(double x, double y) const { return centre_ + QPointF(x, y) * size_; }

  private:
    struct Measures {
        QPointF middle;
        double half, thick;
    };
    /// The arms of a plus sign in whole pixels of the picture, thickness and length of one parity
    /// so that they cross in the middle.
    [[nodiscard]] Measures Arms(double x, double y, double length, double stroke) const {
        const double thick = std::max(1.0, std::round(stroke * size_ * Scale()));
        double whole = std::round(length * size_ * Scale());
        if (std::fmod(whole - thick, 2) != 0) whole += 1;
        const QPointF centre = painter_.transform().map(At(x, y));
        const double odd = std::fmod(whole, 2) / 2;
        const auto snap = [odd](double at) { return std::round(at - odd - 0.01) + odd; };
        return {{snap(centre.x()), snap(centre.y())}, whole / 2, thick};
    }
    [[nodiscard]] QRectF FromPicture(const QRectF& rect) const {
        return painter_.transform().inverted().mapRect(rect);
    }
    [[nodiscard]] double Scale() const { return painter_.transform().m11(); }
    [[nodiscard]] QPen Pen(double stroke) const {
        return {colour_, stroke * size_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
    }

    QPainter& painter_;
    QPointF centre_;
    double size_;
    QColor colour_;
};

void DrawUndo(const Sign& sign) {
    sign.Arc(0.06, 0.1, 0.62, 0.15, -100, 190);
    sign.Stroke({0.06, -0.21}, {-0.25, -0.21}, 0.15);
    sign.Polygon({sign.At(-0.2, -0.5), sign.At(-0.52, -0.21), sign.At(-0.2, 0.08)});
}

/// Round clockwise, with the point at one o'clock.
void DrawRenew(const Sign& sign) {
    sign.Arc(0, 0.03, 0.76, 0.15, 52, 278);
    sign.Polygon({sign.At(0.45, -0.06), sign.At(-0.03, -0.12), sign.At(0.34, -0.54)});
}

void DrawLens(const Sign& sign, bool in) {
    sign.Ring(-0.1, -0.1, 0.84, 0.13);
    sign.Stroke({0.24, 0.24}, {0.5, 0.5}, 0.17);
    sign.Plus(-0.1, -0.1, 0.42, 0.12, in);
}

void DrawBroadcast(const Sign& sign) {
    sign.Disc(0.3);
    for (const double d : {0.72, 1.14}) {
        sign.Arc(0, 0, d, 0.12, -48, 96);
        sign.Arc(0, 0, d, 0.12, 132, 96);
    }
}

}  // namespace

void DrawGlyph(QPainter& painter, Glyph glyph, const QPointF& centre, double size,
               const QColor& colour) {
    const Sign sign(painter, centre, size, colour);
    switch (glyph) {
        case Glyph::Stop:
            sign.Bar(0, 0, 1, 1);
            return;
        case Glyph::Play:
            sign.Triangle(-0.4, 1.12, 1.24);
            return;
        case Glyph::Record:
            sign.Disc(1.14);
            return;
        case Glyph::RecordReady:
            sign.Ring(0, 0, 0.92, 0.22);
            return;
        case Glyph::Rewind:
            sign.Triangle(0, -0.86, 1);
            sign.Triangle(0.9, -0.86, 1);
            return;
        case Glyph::FastForward:
            sign.Triangle(0, 0.86, 1);
            sign.Triangle(-0.9, 0.86, 1);
            return;
        case Glyph::BackMark:
            sign.Bar(-0.56, 0, 0.2, 1.08);
            sign.Triangle(0.6, -0.92, 1);
            return;
        case Glyph::ForwardMark:
            sign.Bar(0.56, 0, 0.2, 1.08);
            sign.Triangle(-0.6, 0.92, 1);
            return;
        case Glyph::BeginBack:
            sign.Triangle(0.1, -0.84, 0.98);
            sign.Bracket(0.62, true);
            return;
        case Glyph::EndBack:
            sign.Triangle(0.1, -0.84, 0.98);
            sign.Bracket(0.62, false);
            return;
        case Glyph::BeginForward:
            sign.Bracket(-0.62, true);
            sign.Triangle(-0.1, 0.84, 0.98);
            return;
        case Glyph::EndForward:
            sign.Bracket(-0.62, false);
            sign.Triangle(-0.1, 0.84, 0.98);
            return;
        case Glyph::Plus:
            sign.Plus(0, 0, 1, 0.22, true);
            return;
        case Glyph::Minus:
            sign.Plus(0, 0, 1, 0.22, false);
            return;
        case Glyph::Up:
            sign.UprightTriangle(0.36, -0.84, 1.1);
            return;
        case Glyph::Down:
            sign.UprightTriangle(-0.36, 0.84, 1.1);
            return;
        case Glyph::Undo:
            DrawUndo(sign);
            return;
        case Glyph::Renew:
            DrawRenew(sign);
            return;
        case Glyph::Mark:
            sign.Polygon({sign.At(-0.4, -0.48), sign.At(0.4, -0.48), sign.At(0.4, 0.1),
                          sign.At(0, 0.52), sign.At(-0.4, 0.1)});
            return;
        case Glyph::Cross:
            sign.Stroke({-0.36, -0.36}, {0.36, 0.36}, 0.2);
            sign.Stroke({-0.36, 0.36}, {0.36, -0.36}, 0.2);
            return;
        case Glyph::ZoomIn:
            DrawLens(sign, true);
            return;
        case Glyph::ZoomOut:
            DrawLens(sign, false);
            return;
        case Glyph::Broadcast:
            DrawBroadcast(sign);
            return;
    }
}

}  // namespace orma::art
