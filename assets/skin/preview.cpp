#include "preview.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <vector>

#include "type.h"

namespace orma::art {
namespace {

// The heights of the window's four fonts in design pixels.
constexpr int kTextPixels = 12;
constexpr int kNamePixels = 14;
constexpr int kTimePixels = 25;
constexpr int kSmallTimePixels = 12;

/// One screen being composed at one scale, by the rules that the controls draw by.
class Screen {
  public:
    Screen(const SkinSet& set, const QDir& bitmaps, int scale, int page)
        : set_(set),
          bitmaps_(bitmaps),
          scale_(scale),
          pressed_(Load(page + 1)),
          image_(Load(page).convertToFormat(QImage::Format_RGB32)),
          painter_(&image_) {}

    [[nodiscard]] QRect Rect(Element element) const {
        const ElementRect& rect = set_.layout[element];
        return {rect.x * scale_, rect.y * scale_, rect.w * scale_, rect.h * scale_};
    }
    void Lit(Element element) { CopyLit(Rect(element)); }
    void CopyLit(const QRect& part) { painter_.drawImage(part.topLeft(), pressed_, part); }
    void Bitmap(QPoint at, int slot) { painter_.drawImage(at, Load(slot)); }
    void Text(Element element, const QString& text, int pixels, QFont::Weight weight,
              Qt::Alignment alignment, int moved = 0);
    void Name(Element element, const QString& name);
    void Time(Element element, const QString& text, int pixels, Qt::Alignment alignment);
    void Level(int offset, int peak);
    void Knob(Element element, Element middle, int value);
    void Graph();
    [[nodiscard]] QImage Take() {
        painter_.end();
        return image_;
    }
    [[nodiscard]] int Scale() const { return scale_; }
    [[nodiscard]] QPainter& Painter() { return painter_; }
    [[nodiscard]] const SkinColours& Colours() const { return set_.colours; }

  private:
    [[nodiscard]] QImage Load(int slot) const {
        const QString name = QString::number(slot) + (scale_ == 2 ? "@2x.bmp" : ".bmp");
        QImage image(bitmaps_.filePath(name));
        image.setDevicePixelRatio(1);  // Qt takes it from the name
        return image.convertToFormat(QImage::Format_RGB32);
    }
    [[nodiscard]] QFont Font(int pixels, QFont::Weight weight) const {
        return Type(pixels * scale_, weight);
    }
    void CombineColumn(int column, int slot);

    const SkinSet& set_;
    const QDir& bitmaps_;
    int scale_;
    QImage pressed_;
    QImage image_;
    QPainter painter_;
};

void Screen::Text(Element element, const QString& text, int pixels, QFont::Weight weight,
                  Qt::Alignment alignment, int moved) {
    const QRect box = Rect(element).translated(0, moved * scale_);
    const QFont font = Font(pixels, weight);
    painter_.save();
    painter_.fillRect(box, ToQColor(set_.colours.textBackground));
    painter_.setClipRect(box);
    painter_.setFont(font);
    painter_.setPen(ToQColor(set_.colours.text));
    painter_.drawText(box, static_cast<int>(alignment | Qt::AlignTop), text);
    painter_.restore();
}

/// Opaque behind the letters alone: the built-in name box reaches over the meter.
void Screen::Name(Element element, const QString& name) {
    painter_.setFont(Font(kNamePixels, QFont::DemiBold));
    painter_.setPen(ToQColor(set_.colours.text));
    painter_.drawText(Rect(element), Qt::AlignHCenter | Qt::AlignTop, name);
}

/// Figures stand in cells of one width, leading blanks too, so that a running time stays in place.
void Screen::Time(Element element, const QString& text, int pixels, Qt::Alignment alignment) {
    const QRect box = Rect(element);
    const QFont font = Font(pixels, QFont::DemiBold);
    const QFontMetricsF metrics(font);
    const double cell = metrics.horizontalAdvance('0');
    const auto advance = [&](QChar c) {
        return c.isDigit() || c == ' ' ? cell : metrics.horizontalAdvance(c);
    };
    double x = box.x();
    if (alignment & Qt::AlignRight) {
        x = box.right() + 1;
        for (const QChar c : text)
            x -= advance(c);
    }
    painter_.save();
    painter_.fillRect(box, ToQColor(set_.colours.textBackground));
    painter_.setClipRect(box);
    painter_.setFont(font);
    painter_.setPen(ToQColor(set_.colours.text));
    for (const QChar c : text) {
        const double inset = (advance(c) - metrics.horizontalAdvance(c)) / 2;
        painter_.drawText(
            QPointF(std::round(x + inset), std::round(box.y() - 1 + metrics.ascent())), c);
        x += advance(c);
    }
    painter_.restore();
}

void Screen::Level(int offset, int peak) {
    const QRect bar = Rect(Element::VU);
    CopyLit({bar.x(), bar.y() + offset * scale_, bar.width(), (80 - offset) * scale_});
    CopyLit({bar.x(), bar.y() + peak * scale_, bar.width(), 3 * scale_});
    if (offset == 0) CopyLit({bar.x(), bar.y() - 8 * scale_, bar.width(), 8 * scale_});
}

void Screen::Knob(Element element, Element middle, int value) {
    const QRect box = Rect(element);
    const double angle = (240 - value * 300 / 65536) * 6.2831853 / 360;
    const QPoint centre(box.x() + set_.layout[middle].x * scale_,
                        box.y() + set_.layout[middle].y * scale_);
    painter_.save();
    painter_.setClipRect(box);
    Bitmap(box.topLeft(), 519);
    painter_.setPen(QPen(Qt::black, 2));
    painter_.drawLine(centre,
                      QPoint(static_cast<int>(centre.x() + std::cos(angle) * 5 * scale_ + 0.5),
                             static_cast<int>(centre.y() - std::sin(angle) * 5 * scale_ - 0.5)));
    painter_.restore();
}

void Screen::CombineColumn(int column, int slot) {
    const QRect box = Rect(Element::EditRecGraph);
    const QImage line = Load(slot);
    for (int y = 0; y < line.height(); ++y) {
        const QPoint at(box.x() + column * scale_, box.y() + y);
        for (int x = 0; x < line.width(); ++x) {
            const QPoint pixel = at + QPoint(x, 0);
            const QRgb combined = (image_.pixel(pixel) ^ line.pixel(x, y)) | 0xFF000000U;
            painter_.fillRect(QRect(pixel, QSize(1, 1)), QColor(combined));
        }
    }
}

/// Speech-like levels: phrases of syllables with pauses between them.
int LevelAt(double t) {
    const double phrase = std::sin(t * 0.9) + 0.35 * std::sin(t * 2.3 + 1);
    if (phrase < -0.62) return 74 + static_cast<int>(3 * std::sin(t * 40));
    const double syllable = std::abs(std::sin(t * 5.1)) * (0.65 + 0.35 * std::sin(t * 13.7));
    return std::clamp(static_cast<int>(64 - 46 * syllable - 7 * std::sin(t * 31)), 4, 78);
}

void Screen::Graph() {
    const QRect box = Rect(Element::EditRecGraph);
    QPolygonF points;
    for (int x = 0; x < box.width(); ++x) {
        points << QPointF(box.x() + x, box.y() + LevelAt(x / (7.0 * scale_)) * scale_);
    }
    const auto draw = [&](double from, double to, const Colour& colour) {
        painter_.setPen(ToQColor(colour));
        const auto at = [&](double part) { return static_cast<qsizetype>(part * box.width()); };
        painter_.drawPolyline(points.mid(at(from), at(to) - at(from)));
    };
    painter_.setRenderHint(QPainter::Antialiasing, false);
    draw(0, 1, set_.colours.waveform);
    draw(0.14, 0.3, set_.colours.waveformCut);
    draw(0.66, 0.82, set_.colours.waveformEditCut);
    const int width = box.width() / scale_;
    const QImage flag = Load(511);
    for (const double part : {0.12, 0.55, 0.9}) {
        const int left = static_cast<int>(part * width) * scale_ - flag.width() / 2;
        for (int y = 0; y < flag.height(); ++y) {
            for (int x = 0; x < flag.width(); ++x) {
                const QPoint at = box.topLeft() + QPoint(left + x, y);
                const QRgb combined = (image_.pixel(at) ^ flag.pixel(x, y)) | 0xFF000000U;
                painter_.fillRect(QRect(at, QSize(1, 1)), QColor(combined));
            }
        }
    }
    CombineColumn(static_cast<int>(0.45 * width), 500);
    CombineColumn(static_cast<int>(0.66 * width), 501);
    CombineColumn(static_cast<int>(0.82 * width), 502);
    const QRect bar = Rect(Element::EditButtonBar);
    for (int i = 0; i < 3; ++i) {
        const int side = Load(512).height();
        Bitmap({bar.x(), bar.y() + (2 * i + 1) * bar.height() / 6 - side / 2}, 512 + i);
    }
}

constexpr auto kMedium = QFont::Medium;
constexpr auto kStrong = QFont::DemiBold;

void PaintRecorder(Screen& screen, int state, const QString& time) {
    screen.Time(Element::RecTime, time, kTimePixels, Qt::AlignLeft);
    screen.Bitmap(screen.Rect(Element::RecStatus).topLeft(), 503 + state);
    screen.Text(Element::MaxTime, "02h:14m max", kTextPixels, kMedium, Qt::AlignLeft);
    screen.Text(Element::Battery, "Battery: 83%", kTextPixels, kMedium, Qt::AlignLeft);
    screen.Text(Element::CFACGainText, "+12dB", kTextPixels, kMedium, Qt::AlignLeft);
    screen.Lit(Element::GainCaption);
    screen.Lit(Element::VolCaption);
    screen.Knob(Element::GainKnob, Element::GainKnobMiddle, 40000);
    screen.Text(Element::CFACVolText, "  -6dB", kTextPixels, kMedium, Qt::AlignLeft);
    screen.Knob(Element::CFACVolKnob, Element::CFACVolKnobMiddle, 25000);
}

void PaintName(Screen& screen, Element element) {
    screen.Name(element, "news03");
}

void PaintEditor(Screen& screen) {
    screen.Lit(Element::EditPlay);
    PaintName(screen, Element::EditName);
    screen.Level(34, 21);
    screen.Time(Element::EditRecTime, "  0m:42s.35", kSmallTimePixels, Qt::AlignLeft);
    const QRect bar = screen.Rect(Element::EditScrollGraph);
    screen.CopyLit({bar.x() + bar.width() / 4, bar.y(), bar.width() / 3, bar.height()});
    screen.Graph();
    screen.Bitmap(screen.Rect(Element::EditRewind).topLeft(), 515);
    screen.Bitmap(screen.Rect(Element::EditFastForward).topLeft(), 517);
    screen.Time(Element::EditTotalTime, "  1m:51s.20", kSmallTimePixels, Qt::AlignRight);
}

void PaintClips(Screen& screen) {
    screen.Lit(Element::CPlay);
    const QRect list = screen.Rect(Element::CWindow);
    const int row = 17 * screen.Scale();
    const QStringList names = {"Name", "news03", "news04", "int_01", "length:"};
    const QStringList texts = {"Description", " 0:42 14:05 21/11/2026", " 1:07 14:32 21/11/2026",
                               " 4:51 15:10 21/11/2026", " 6:40s.00"};
    QPainter& painter = screen.Painter();
    for (int i = 0; i < names.size(); ++i) {
        const QRect line(list.x(), list.y() + i * row, list.width(), row);
        const bool marked = i == 3;
        if (marked) painter.fillRect(line, ToQColor(screen.Colours().text));
        const Colour& ink = marked ? screen.Colours().textBackground : screen.Colours().text;
        painter.setPen(ToQColor(ink));
        painter.setFont(Type(kTextPixels * screen.Scale(), i == 0 ? QFont::Normal : kMedium));
        const int inset = 5 * screen.Scale();
        painter.drawText(line.adjusted(inset, 0, 0, 0), Qt::AlignVCenter, names[i]);
        painter.drawText(line.adjusted(inset + 60 * screen.Scale(), 0, 0, 0), Qt::AlignVCenter,
                         texts[i]);
    }
}

void PaintAbout(Screen& screen) {
    screen.Lit(Element::AboutProject);
    screen.Text(Element::AboutName, "Orma Edit", kNamePixels, kStrong, Qt::AlignLeft);
    const QStringList lines = {"At: /home/anna/news", "Recording format", "MP2 bitrate (kbit/s)",
                               "Input EQ", "Available recording time"};
    const QStringList values = {"", "wav mono", "128", "(Off)", "02:14:00"};
    for (int i = 0; i < lines.size(); ++i) {
        screen.Text(Element::AboutWindowText, lines[i], 11, kMedium, Qt::AlignLeft, 15 * i);
        QRect line = screen.Rect(Element::AboutWindowText);
        line.translate(0, 15 * i * screen.Scale());
        screen.Painter().setPen(ToQColor(screen.Colours().text));
        screen.Painter().setFont(Type(11 * screen.Scale(), kMedium));
        screen.Painter().drawText(line, Qt::AlignRight | Qt::AlignTop, values[i]);
    }
    screen.Text(Element::AboutVersion, "Orma Edit V1.0R0 (c) 2003-2006", 11, kMedium,
                Qt::AlignLeft);
}

void PaintProgress(Screen& screen) {
    const QRect bar = screen.Rect(Element::ProgressBar);
    screen.CopyLit({bar.x(), bar.y(), bar.width() * 3 / 5, bar.height()});
    screen.Text(Element::ProgressText, "Saving news03", kNamePixels, kStrong, Qt::AlignLeft);
    screen.Text(Element::ProgressText, "1m:07s of 1m:51s", kTextPixels, kMedium, Qt::AlignLeft, 26);
}

std::vector<QImage> Compose(const SkinSet& set, const QDir& bitmaps, int scale) {
    std::vector<QImage> screens;
    const auto add = [&](int page, const auto& paint) {
        Screen screen(set, bitmaps, scale, page);
        paint(screen);
        screens.push_back(screen.Take());
    };
    add(494, [](Screen& screen) {
        screen.Lit(Element::Stop);
        PaintName(screen, Element::Name);
        PaintRecorder(screen, 0, "  0m:00s.00");
    });
    add(494, [](Screen& screen) {
        screen.Lit(Element::Record);
        PaintName(screen, Element::Name);
        screen.Level(46, 40);
        PaintRecorder(screen, 1, "  0m:00s.00");
    });
    add(494, [](Screen& screen) {
        screen.Lit(Element::Record);
        screen.Lit(Element::Play);
        PaintName(screen, Element::Name);
        screen.Level(19, 8);
        PaintRecorder(screen, 2, " 11m:42s.35");
    });
    add(494, PaintEditor);
    add(496, PaintClips);
    add(498, PaintAbout);
    add(492, PaintProgress);
    add(495, [](Screen&) {});
    return screens;
}

}  // namespace

bool WritePreviews(const SkinSet& set, const QDir& bitmaps, const QDir& folder) {
    if (!folder.mkpath(".")) return false;
    for (const int scale : {1, 2}) {
        const std::vector<QImage> screens = Compose(set, bitmaps, scale);
        const QSize size = screens.front().size();
        const int gap = 4 * scale;
        QImage sheet(4 * (size.width() + gap) - gap, 2 * (size.height() + gap) - gap,
                     QImage::Format_RGB32);
        sheet.fill(QColor(120, 120, 124));
        QPainter painter(&sheet);
        for (std::size_t i = 0; i < screens.size(); ++i) {
            const int column = static_cast<int>(i % 4);
            const int row = static_cast<int>(i / 4);
            painter.drawImage(column * (size.width() + gap), row * (size.height() + gap),
                              screens[i]);
        }
        painter.end();
        const QString name = QString("%1@%2x.png").arg(bitmaps.dirName()).arg(scale);
        if (!sheet.save(folder.filePath(name))) return false;
    }
    return true;
}

}  // namespace orma::art
