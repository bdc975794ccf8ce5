#pragma once

#include "platform/storage.h"
#include "ui/paint/colour.h"

namespace orma {

/// The colours of what a skin's bitmaps leave to the program to draw.
struct SkinColours {
    Colour textBackground{99, 255, 255};
    Colour text{49, 121, 255};
    Colour waveform{49, 121, 255};
    Colour waveformEditCut{255, 0, 0};
    Colour waveformCut{0, 255, 0};

    /// Replaces what the section file at `path` ("Colors.txt" of a skin folder) names; numbers are
    /// taken modulo 256. A missing file changes nothing. Reports nothing.
    void Read(Storage& storage, const Text& path);
};

}  // namespace orma
