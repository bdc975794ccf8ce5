#pragma once

#include <QColor>

#include "ui/skin/colours.h"

namespace orma::art {

[[nodiscard]] QColor ToQColor(const Colour& colour);

/// `a` with the share `part` (0 to 1) of `b` in it.
[[nodiscard]] QColor Mix(const QColor& a, const QColor& b, double part);

/// Every colour of a set of bitmaps. The case and its keys are the same in all sets; the display
/// takes the colours that the program draws its texts in, so that text boxes vanish into it.
struct Palette {
    explicit Palette(const SkinColours& colours);

    // The case and what lies on it.
    QColor body{236, 231, 219};
    QColor bodyLight{250, 247, 239};
    QColor bodyShade{196, 189, 172};
    QColor legend{106, 99, 86};
    QColor keyFace{251, 248, 242};
    QColor keyEdge{122, 113, 97};
    QColor keySkirt{176, 167, 148};
    QColor ink{33, 31, 27};

    // What is lit: orange for every control, red for recording alone.
    QColor lit{255, 111, 15};
    QColor litEdge{176, 68, 0};
    QColor record{217, 38, 28};
    QColor recordEdge{134, 16, 10};
    QColor white{255, 255, 255};

    // The display.
    QColor panel;
    QColor panelEdge{84, 78, 68};
    QColor text;
    QColor textDim;  // legends on the display
    QColor raised;   // keys on the display
    QColor trough;   // where a scroll thumb or a progress bar runs
    QColor thumb;
    QColor cursor;  // the play cursor, unlike every colour of the waveform
    QColor meterRed{255, 59, 48};
    QColor meterAmber{255, 190, 40};
    QColor meterGreen{64, 200, 92};

    /// A lamp or a meter segment that is off.
    [[nodiscard]] QColor Off(const QColor& on) const { return Mix(panel, on, 0.2); }
};

}  // namespace orma::art
