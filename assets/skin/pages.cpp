#include "pages.h"

#include <algorithm>
#include <array>
#include <vector>

#include "canvas.h"
#include "keys.h"
#include "meter.h"
#include "panel.h"
#include "type.h"

namespace orma::art {
namespace {

/// A page while it is drawn.
class Sheet {
  public:
    Sheet(const Palette& palette, const Layout& layout, bool pressed, int scale)
        : palette_(palette),
          layout_(layout),
          pressed_(pressed),
          canvas_(QRect(0, 0, layout[Element::MainWindow].w, layout[Element::MainWindow].h), scale,
                  palette.body),
          painter_(canvas_.Painter()) {}

    void Display(Element element) { DrawPanel(painter_, palette_, Rect(element)); }
    void RoundKey(Element element, Glyph glyph) {
        taken_.push_back(Rect(element));
        hasRoundKeys_ = true;
        DrawRoundKey(painter_, palette_, Rect(element), glyph, State(glyph));
    }
    template <typename Label>
    void LongKey(Element element, Label label) {
        taken_.push_back(Rect(element));
        DrawLongKey(painter_, palette_, Rect(element), label, State());
    }
    void Meter(Element element) {
        DrawMeterScale(painter_, palette_, Rect(element));
        DrawMeter(painter_, palette_, Rect(element), pressed_);
    }
    void ZoomKey(Element element, Glyph lens, Glyph sign);
    void RenewKey(Element element);
    void ScrollBar(Element element);
    void ProgressBar(Element element);
    void Caption(Element element, const char* text);
    void VersionStrip();
    void Grilles();
    void Brand(Element display);

    [[nodiscard]] QImage Take() { return canvas_.Take(); }

  private:
    [[nodiscard]] QRectF Rect(Element element) const { return ToQRectF(layout_[element]); }
    [[nodiscard]] KeyState State(Glyph glyph = Glyph::Stop) const {
        if (!pressed_) return KeyState::Up;
        return glyph == Glyph::Record ? KeyState::Recording : KeyState::Lit;
    }

    const Palette& palette_;
    const Layout& layout_;
    bool pressed_;
    Canvas canvas_;
    QPainter& painter_;
    std::vector<QRectF> taken_;  // by keys
    bool hasRoundKeys_ = false;
};

/// A zoom key on the display lies where the recorder's running time covers it, so that it is the
/// editor's alone. One that reaches over the display's edge shows on both screens: it keeps to the
/// edge, clear of the recorder's texts, and looks like a part of the case.
void Sheet::ZoomKey(Element element, Glyph lens, Glyph sign) {
    const QRectF key = Rect(element);
    const QRectF display = Rect(Element::WindowRecord);
    if (display.contains(key)) {
        DrawPanelKey(painter_, palette_, key, lens, 12, State());
    } else if (key.left() < display.left()) {
        DrawEdgeKey(painter_, palette_,
                    {key.left(), key.top(), display.left() - key.left(), key.height()}, sign,
                    State());
    } else {
        DrawEdgeKey(painter_, palette_,
                    {display.right(), key.top(), key.right() - display.right(), key.height()}, sign,
                    State());
    }
}

/// In a column that the display reaches into, it is let into the display's edge, half-way up.
void Sheet::RenewKey(Element element) {
    constexpr double kHeight = 28;
    const QRectF key = Rect(element);
    const QRectF display = Rect(Element::WindowClip);
    if (!key.intersects(display)) return LongKey(element, Glyph::Renew);
    DrawEdgeKey(painter_, palette_,
                {display.right(), display.center().y() - kHeight / 2, key.right() - display.right(),
                 kHeight},
                Glyph::Renew, State());
}

void Sheet::ScrollBar(Element element) {
    const QRectF bar = Rect(element);
    if (!pressed_) {
        if (!Rect(Element::RecTime).contains(bar)) return;  // the recorder would show it
        painter_.fillRect(QRectF(bar.x(), bar.y() + bar.height() / 2 - 0.5, bar.width(), 1)
                              .translated(0, static_cast<int>(bar.height()) % 2 == 0 ? 0.5 : 0),
                          palette_.trough);
        return;
    }
    // Plain: the program draws the ticks of marks on it.
    painter_.fillRect(bar.adjusted(0, 1, 0, -1), palette_.thumb);
}

void Sheet::ProgressBar(Element element) {
    painter_.fillRect(Rect(element), pressed_ ? palette_.lit : palette_.trough);
}

/// Only lit, since the editor, which shares the normal page, has no knobs. A layout without a place
/// for it goes without.
void Sheet::Caption(Element element, const char* text) {
    const QRectF place = Rect(element);
    if (!pressed_ || place.isEmpty()) return;
    painter_.save();
    painter_.setClipRect(place);
    DrawLine(painter_, text, Type(10, QFont::Medium), {place.left() + 1, place.bottom() - 2},
             Qt::AlignLeft, palette_.textDim);
    painter_.restore();
}

/// The version has a display of its own where it stands outside the large one.
void Sheet::VersionStrip() {
    const QRectF version = Rect(Element::AboutVersion);
    const QRectF display = Rect(Element::WindowClip);
    if (display.contains(version)) return;
    const QRectF strip(display.x(), version.y() - 2, display.width(), version.height() + 3);
    taken_.push_back(strip);
    DrawPanel(painter_, palette_, strip);
    const QRectF below(strip.x() - 1, strip.bottom() + 11, strip.width() + 2,
                       Rect(Element::MainWindow).bottom() - strip.bottom() - 22);
    if (below.height() > 12) DrawGrille(painter_, palette_, below, false);
}

/// Holes stand where the transport keys of the other screens are.
void Sheet::Grilles() {
    std::vector<QRectF> places;
    for (const Element place : {Element::Stop, Element::Play, Element::Record}) {
        const QRectF rect = Rect(place);
        const auto covers = [&](const QRectF& key) { return key.intersects(rect); };
        if (std::none_of(taken_.begin(), taken_.end(), covers)) places.push_back(rect);
    }
    if (!hasRoundKeys_ && places.size() < 3) return;  // an odd one would look forgotten
    for (const QRectF& place : places) {
        const double inset = place.width() / 8;
        DrawGrille(painter_, palette_, place.adjusted(inset, inset, -inset, -inset), true);
    }
}

/// Between the display and the keys, where there is room. To be drawn after the keys.
void Sheet::Brand(Element display) {
    constexpr double kLeast = 15;
    const QRectF above = Rect(display).adjusted(-3, 0, 3, 4);  // with its edge and the light below
    double height = 1000;
    for (const QRectF& key : taken_) {
        if (key.left() < above.right()) height = std::min(height, key.top() - above.bottom());
    }
    const QRectF row(above.bottomLeft(), QSizeF(above.width(), height));
    if (height >= kLeast) DrawBrand(painter_, palette_, row);
}

void DrawTransport(Sheet& sheet) {
    sheet.Display(Element::WindowRecord);
    sheet.Meter(Element::VU);
    sheet.Caption(Element::GainCaption, "Gain");
    sheet.Caption(Element::VolCaption, "Volume");
    sheet.ScrollBar(Element::EditScrollGraph);
    sheet.ZoomKey(Element::EditZoomOut, Glyph::ZoomOut, Glyph::Minus);
    sheet.ZoomKey(Element::EditZoomIn, Glyph::ZoomIn, Glyph::Plus);
    sheet.LongKey(Element::BackMark, Glyph::BackMark);
    sheet.LongKey(Element::Rewind, Glyph::Rewind);
    sheet.LongKey(Element::FastForward, Glyph::FastForward);
    sheet.LongKey(Element::ForwardMark, Glyph::ForwardMark);
    sheet.RoundKey(Element::Stop, Glyph::Stop);
    sheet.RoundKey(Element::Play, Glyph::Play);
    sheet.RoundKey(Element::Record, Glyph::Record);
    sheet.Brand(Element::WindowRecord);
}

void DrawClips(Sheet& sheet) {
    sheet.Display(Element::WindowClip);
    sheet.LongKey(Element::CInsert, Glyph::Plus);
    sheet.LongKey(Element::CUp, Glyph::Up);
    sheet.LongKey(Element::CDown, Glyph::Down);
    sheet.LongKey(Element::CRemove, Glyph::Minus);
    sheet.RenewKey(Element::CRotText);
    sheet.RoundKey(Element::CStop, Glyph::Stop);
    sheet.RoundKey(Element::CPlay, Glyph::Play);
    sheet.Grilles();
}

void DrawAbout(Sheet& sheet) {
    sheet.Display(Element::WindowClip);
    sheet.LongKey(Element::AboutDevice, "Device");
    sheet.LongKey(Element::AboutProject, "Project");
    sheet.VersionStrip();
    sheet.Grilles();
}

void DrawProgress(Sheet& sheet) {
    sheet.Display(Element::WindowClip);
    sheet.ProgressBar(Element::ProgressBar);
    sheet.LongKey(Element::ProgressCancel, "Cancel");
    sheet.Grilles();
}

}  // namespace

QImage DrawPage(const Palette& palette, const Layout& layout, Page page, bool pressed, int scale) {
    Sheet sheet(palette, layout, pressed, scale);
    switch (page) {
        case Page::Empty:
            sheet.Display(Element::WindowClip);
            break;
        case Page::Progress:
            DrawProgress(sheet);
            break;
        case Page::Transport:
            DrawTransport(sheet);
            break;
        case Page::Clips:
            DrawClips(sheet);
            break;
        case Page::About:
            DrawAbout(sheet);
            break;
    }
    return sheet.Take();
}

}  // namespace orma::art
