#pragma once

#include <memory>
#include <span>

#include "ui/controls/win.h"
#include "ui/paint/geometry.h"
#include "ui/paint/picture.h"
#include "ui/screens/keys.h"

namespace orma {

/// What the widget of the page shows, and who hears what happens to it: the shell's side. All
/// places are window pixels. UI thread.
class PageClient {
  public:
    virtual ~PageClient() = default;

    /// The window's image. It may change between two calls of Changed, but is not replaced.
    [[nodiscard]] virtual const Picture& Image() = 0;

    /// The current screen's table of controls, in which entries may be null; empty before there is
    /// a screen.
    [[nodiscard]] virtual std::span<const std::unique_ptr<Win>> Controls() = 0;

    /// The control that the keyboard works on, null without one.
    [[nodiscard]] virtual Win* Focused() = 0;

    /// A frame is about to be shown: the image is brought up to date.
    virtual void BeforePaint() = 0;

    virtual void LeftDown(Point at) = 0;
    virtual void LeftUp(Point at) = 0;
    virtual void Moved(Point at) = 0;                            // while the left button is held
    virtual void Wheel(Point at, int steps, bool sideways) = 0;  // see Win::OnWheel
    virtual void RightDown(Point at) = 0;
    virtual void RightUp(Point at) = 0;

    virtual void KeyDown(Key key, bool shift) = 0;  // again while it is held
    virtual void KeyUp(Key key) = 0;
};

}  // namespace orma
