#pragma once

#include <cstdint>

#include "base/text.h"

namespace orma {

/// The screens' numbers; the menu command that selects one is 40007 plus its number.
enum class ScreenIndex : std::uint8_t {
    kRecorder = 0,
    kEditor = 1,
    kClipEditor = 2,
    kTextEditor = 3,  // no screen of the table: it lies over the client area
    kAbout = 4,
    kProgress = 5,
};

/// What screens ask of the window around them. UI thread.
class ScreenHost {
  public:
    virtual ~ScreenHost() = default;

    /// Ticks the menu entry of a screen, or takes the tick away.
    virtual void TickScreen(ScreenIndex screen, bool on) = 0;

    /// The whole window is painted with its next frame.
    virtual void Invalidate() = 0;

    /// The menus follow the screen, the transport and the recording.
    virtual void UpdateMenus() = 0;

    /// Something short that the user should hear of without a box; a screen reader says it.
    virtual void Announce(const Text& text) = 0;
};

}  // namespace orma
