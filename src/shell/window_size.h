#pragma once

#include "platform/storage.h"
#include "ui/paint/geometry.h"

namespace orma {

/// The size of the window's client area below its menu bar.
struct WindowSize {
    Size client;         // pixels
    float scale = 1.0F;  // 2 for a doubled window; what the menus draw themselves follows it

    friend bool operator==(const WindowSize&, const WindowSize&) = default;
};

/// Reads section "Size" of the section file at `path` ("size.txt" beside the program): Landscape 1
/// is 320 x 190, 2 is 240 x 190, anything else 240 x 270; Big 1, which is the default, doubles
/// both. Writes both keys back, as they were understood. Reports nothing: a file that cannot be
/// read gives the doubled 240 x 270, one that cannot be written stays. UI thread.
[[nodiscard]] WindowSize ReadWindowSize(Storage& storage, const Text& path);

}  // namespace orma
