#include "skin_set.h"

#include <QSaveFile>
#include <optional>

#include "bitmap_file.h"
#include "canvas.h"
#include "pages.h"
#include "small_bitmaps.h"

namespace orma::art {
namespace {

/// The screens' pages, a normal and a pressed one each.
QImage DrawPageOfSlot(const Palette& palette, const Layout& layout, int slot, int scale) {
    const auto pair = [&](Page page, int normal) {
        return DrawPage(palette, layout, page, slot != normal, scale);
    };
    switch (slot) {
        case 490:
        case 491:
            return pair(Page::Empty, 490);
        case 492:
        case 493:
            return pair(Page::Progress, 492);
        case 494:
        case 495:
            return pair(Page::Transport, 494);
        case 496:
        case 497:
            return pair(Page::Clips, 496);
        case 498:
        case 499:
            return pair(Page::About, 498);
        // The pairs that are shown with the publish key and on wide displays: nothing on the page
        // depends on either.
        case 509:
        case 510:
            return pair(Page::Transport, 509);
        case 521:
        case 522:
            return pair(Page::Transport, 521);
        case 523:
        case 524:
            return pair(Page::Transport, 523);
        default:
            return {};
    }
}

/// The pressed page of a normal one, and the other way round; none for other slots.
std::optional<int> OtherPage(int slot) {
    for (const int normal : {490, 492, 494, 496, 498, 509, 521, 523}) {
        if (slot == normal) return normal + 1;
        if (slot == normal + 1) return normal;
    }
    return std::nullopt;
}

QSize SizeOf(const ElementRect& rect) {
    return {rect.w, rect.h};
}

/// The part of the status lamp below the running time, which is painted over it again and again.
QRectF FreeOfTime(const Layout& layout) {
    QRectF lamp = ToQRectF(layout[Element::RecStatus]);
    const QRectF time = ToQRectF(layout[Element::RecTime]);
    const QPointF origin = lamp.topLeft();
    if (lamp.intersects(time)) lamp.setTop(time.bottom());
    return lamp.translated(-origin);
}

}  // namespace

QImage SkinSet::Draw(int slot, int scale) const {
    const Palette palette(colours);
    const auto line = [&](const QColor& shown, int dash) {
        return DrawGraphLine(palette, layout[Element::EditRecGraph].h, shown, dash, scale);
    };
    const auto nudge = [&](Element key, QSize builtInSize, Glyph glyph) {
        const ElementRect& rect = layout[key];
        // The page is restored one column wider than the key.
        const QSize size = builtIn ? builtInSize : QSize(rect.w + 1, rect.h);
        return DrawNudgeKey(palette, ToQRectF(rect), size, glyph, scale);
    };
    const auto barKey = [&](Glyph glyph) {
        return DrawBarKey(palette, layout[Element::EditButtonBar].w, glyph, scale);
    };
    switch (slot) {
        case 500:
            return line(palette.cursor, 0);
        case 501:
        case 502:
            return line(palette.text, 2);
        case 503:
        case 504:
        case 505:
        case 506:
        case 507:
        case 508:
            return DrawStatusLamp(palette, SizeOf(layout[Element::RecStatus]), FreeOfTime(layout),
                                  slot - 503, scale);
        case 511:
            return DrawMarkFlag(palette, builtIn ? 5 : 7, scale);
        case 512:
            return barKey(Glyph::Undo);
        case 513:
            return barKey(Glyph::Mark);
        case 514:
            return barKey(Glyph::Cross);
        case 515:
            return nudge(Element::EditRewind, {35, 22}, Glyph::BeginBack);
        case 516:
            return nudge(Element::EditRewind, {33, 21}, Glyph::EndBack);
        case 517:
            return nudge(Element::EditFastForward, {35, 22}, Glyph::BeginForward);
        case 518:
            return nudge(Element::EditFastForward, {35, 23}, Glyph::EndForward);
        case 519: {
            const ElementRect& middle = layout[Element::CFACVolKnobMiddle];
            return DrawKnob(palette, SizeOf(layout[Element::CFACVolKnob]),
                            QPointF(middle.x, middle.y), scale);
        }
        case 520:
            return DrawPublishKey(palette, {75, 50}, scale);
        default:
            return DrawPageOfSlot(palette, layout, slot, scale);
    }
}

bool SkinSet::Write(const QDir& folder) const {
    if (!folder.mkpath(".")) return false;
    for (const int scale : {1, 2}) {
        for (int slot = kFirstSlot; slot <= kLastSlot; ++slot) {
            const QImage image = Draw(slot, scale);
            // A normal and a pressed page differ nowhere but in what is lit.
            const std::optional<int> twin = OtherPage(slot);
            const QList<QImage> alike = twin ? QList{image, Draw(*twin, scale)} : QList{image};
            const QString name = QString::number(slot) + (scale == 2 ? "@2x.bmp" : ".bmp");
            QSaveFile file(folder.filePath(name));
            if (!file.open(QIODevice::WriteOnly)) return false;
            file.write(EncodeBitmap(image, ChooseColours(alike)));
            if (!file.commit()) return false;
        }
    }
    return true;
}

}  // namespace orma::art
