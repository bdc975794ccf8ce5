#include "window/qt_ink.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPolygon>
#include <algorithm>
#include <cmath>

#include "window/dialogs/qt_text.h"
#include "window/qt_colour.h"
#include "window/qt_font.h"

namespace orma {
namespace {

bool IsDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool RunsLeft(const QString& line) {
    return std::any_of(line.begin(), line.end(), [](QChar c) {
        return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
    });
}

/// Does this character stand in a cell of its own?
bool IsInCell(const QString& line, qsizetype at) {
    if (IsDigit(line[at])) return true;
    if (line[at] != QLatin1Char(' ')) return false;
    const bool next = at + 1 < line.size() && line[at + 1] == QLatin1Char(' ');
    return at == 0 || next || line[at - 1] == QLatin1Char(' ');
}

/// Paints on a picture's own memory within a rectangle. The toolkit sets the unused byte of the
/// pixels it writes; it is cleared again.
class Brush {
  public:
    /// `within` lies in the picture and is not empty.
    Brush(Picture& target, const Rect& within)
        : target_(target),
          within_(within),
          image_(reinterpret_cast<uchar*>(target.pixels.data()), target.width, target.height,
                 target.width * static_cast<qsizetype>(sizeof(Pixel)), QImage::Format_RGB32),
          painter(&image_) {
        painter.setClipRect(within.x, within.y, within.w, within.h);
    }
    Brush(const Brush&) = delete;
    Brush& operator=(const Brush&) = delete;
    ~Brush() {
        painter.end();
        for (int y = within_.y; y < within_.Bottom(); ++y) {
            Pixel* const row = &target_.At(within_.x, y);
            std::for_each(row, row + within_.w, [](Pixel& pixel) { pixel &= 0xFFFFFF; });
        }
    }

  private:
    Picture& target_;
    Rect within_;
    QImage image_;

  public:
    QPainter painter;
};

}  // namespace

struct QtInk::Face {
    explicit Face(const Font& wanted)
        : key(wanted),
          font(QtFontOf(wanted)),
          metrics(font),
          ascent(static_cast<int>(std::ceil(metrics.ascent()))),
          height(ascent + static_cast<int>(std::ceil(metrics.descent()))) {
        for (int digit = 0; digit < 10; ++digit)
            digits.push_back(metrics.horizontalAdvance(QChar(u'0' + digit)));
    }

    /// A stretch of a line that is drawn as one, in whole pixels from the line's left edge.
    struct Part {
        double x;
        QString text;
    };

    struct Line {
        QString text;
        std::vector<Part> parts;
        Size box;
    };

    /// Takes a line apart. The last one is kept: who draws a text has just measured it, and what
    /// stands on a screen is drawn over and over.
    const Line& Lay(const QString& text) {
        if (text == last_.text) return last_;
        last_ = {text, {}, {}};
        const bool whole = RunsLeft(text);
        double x = 0;
        for (qsizetype at = 0; at < text.size();) {
            qsizetype end = at + 1;
            if (!whole && IsInCell(text, at)) {
                if (IsDigit(text[at])) {
                    const double own = digits[static_cast<std::size_t>(text[at].digitValue())];
                    last_.parts.push_back(
                        {std::round(x + (digits[0] - own) / 2), text.sliced(at, 1)});
                }
                x += digits[0];
            } else {
                while (end < text.size() && (whole || !IsInCell(text, end)))
                    ++end;
                const QString part = text.sliced(at, end - at);
                last_.parts.push_back({std::round(x), part});
                x += metrics.horizontalAdvance(part);
            }
            at = end;
        }
        last_.box = {static_cast<int>(std::ceil(x)), height};
        return last_;
    }

    const Font key;
    const QFont font;
    const QFontMetricsF metrics;
    const int ascent;
    const int height;            // of the line
    std::vector<double> digits;  // their widths

  private:
    Line last_{{}, {}, {0, height}};
};

QtInk::QtInk() = default;
QtInk::~QtInk() = default;

QtInk::Face& QtInk::FaceOf(const Font& font) {
    const Font upright{font.height, font.weight, false};
    for (const auto& face : faces_)
        if (face->key == upright) return *face;
    return *faces_.emplace_back(std::make_unique<Face>(upright));
}

Size QtInk::Measure(const Text& text, const Font& font) {
    return FaceOf(font).Lay(ToQt(text)).box;
}

void QtInk::DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                     const Font& font, Colour colour) {
    Face& face = FaceOf(font);
    const Face::Line& line = face.Lay(ToQt(text));
    const Size box = line.box;
    const Point corner = font.turned ? Point{origin.x - box.width, origin.y - box.height} : origin;
    // Letters may reach a little out of their box.
    const int margin = face.height;
    const Rect reach{corner.x - margin, corner.y - margin, box.width + 2 * margin,
                     box.height + 2 * margin};
    const Rect within = Common(Common(reach, clip), target.Bounds());
    if (within.IsEmpty()) return;

    Brush brush(target, within);
    QPainter& painter = brush.painter;
    painter.setFont(face.font);
    painter.setPen(QtColour(colour));
    painter.translate(origin.x, origin.y);
    if (font.turned) painter.rotate(180);
    for (const Face::Part& part : line.parts)
        painter.drawText(QPointF(part.x, face.ascent), part.text);
}

void QtInk::DrawLine(Picture& target, const Rect& clip, std::span<const Point> points, int width,
                     Colour colour) {
    if (points.empty() || width < 1) return;
    Rect reach{points[0].x, points[0].y, 1, 1};
    QPolygon polygon;
    for (const Point point : points) {
        polygon.append(QPoint(point.x, point.y));
        const int right = std::max(reach.Right(), point.x + 1);
        const int bottom = std::max(reach.Bottom(), point.y + 1);
        reach.x = std::min(reach.x, point.x);
        reach.y = std::min(reach.y, point.y);
        reach.w = right - reach.x;
        reach.h = bottom - reach.y;
    }
    reach = {reach.x - width, reach.y - width, reach.w + 2 * width, reach.h + 2 * width};
    const Rect within = Common(Common(reach, clip), target.Bounds());
    if (within.IsEmpty()) return;

    Brush brush(target, within);
    QPainter& painter = brush.painter;
    if (width == 1) {
        painter.setPen(QPen(QtColour(colour), 1, Qt::SolidLine, Qt::SquareCap));
    } else {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QtColour(colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        // Smoothed lines run between pixels: an odd width is centred on one.
        if (width % 2 == 1) painter.translate(0.5, 0.5);
    }
    if (polygon.size() == 1) {
        painter.drawPoint(polygon[0]);
    } else {
        painter.drawPolyline(polygon);
    }
}

}  // namespace orma
