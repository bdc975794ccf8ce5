#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "base/text.h"
#include "ui/paint/canvas.h"
#include "ui/skin/skin.h"

namespace orma {

/// The pointer while its left button is held: where it went down and how far it is from there.
struct Pointer {
    Point press;
    Point offset;
};

/// The two full-screen bitmaps of a screen, by number. The pressed page is the normal one with
/// every control lit.
struct Pages {
    int normal = 0;
    int pressed = 0;
};

/// What the controls of one screen share: its pages, and the window's skin, image and pointer. All
/// outlive the screen.
struct Scene {
    Skin& skin;
    Canvas& canvas;
    const Pointer& pointer;
    Pages pages;
    bool shown = true;  // false: another screen is, and controls only remember new values
};

/// What a control is to somebody who does not see it.
enum class ControlRole : std::uint8_t {
    kNone,  // it is not told of
    kText,
    kButton,
    kToggle,
    kKnob,
    kMeter,
    kLamp,
    kGraph,
    kScrollBar,
    kProgress,
};

/// How a control introduces itself: to tooltips, to the keyboard, to a screen reader.
struct ControlLabel {
    ControlRole role = ControlRole::kNone;
    Text name;      // "Record"
    Text hint;      // what it does, one line
    Text shortcut;  // its key, "9"
};

/// A control: a rectangle of the window that paints itself on the screen's canvas and may take the
/// pointer. No child window. While its screen is shown a control paints a new value at once, else
/// it waits for Paint; screens give it the pointer and ask it to paint only when they are shown. UI
/// thread.
class Win {
  public:
    /// `scene` outlives the control.
    Win(const Scene& scene, Element element) : Win(scene, scene.skin.RectOf(element)) {}
    Win(const Scene& scene, const Rect& rect) : scene_(scene), rect_(rect) {}
    Win(const Win&) = delete;
    Win& operator=(const Win&) = delete;
    virtual ~Win() = default;

    /// Paints what differs from the normal page, which stands there already.
    virtual void Paint() {}

    /// The control that takes the pointer at this place: itself, or none. It then gets Press, Drag
    /// and Release until the button is let go.
    [[nodiscard]] virtual Win* HitTest(Point /*at*/) { return nullptr; }

    virtual void Press() {}
    virtual void Release() {}
    virtual void Drag() {}

    /// Turns or moves it by so many of its own steps: the keyboard's way to drag.
    virtual void StepBy(int /*steps*/) {}

    /// The wheel was turned over it by so many notches: away from the user, or `sideways` to the
    /// right. Two fingers that spread are a wheel, too: a notch for each doubling.
    virtual void OnWheel(Point /*at*/, int /*steps*/, bool /*sideways*/) {}

    /// What it shows now, in words: "0m:42s.35", "+12dB"; empty for a button.
    [[nodiscard]] virtual Text Value() const { return {}; }

    /// Lit: a toggle that is on.
    [[nodiscard]] virtual bool IsOn() const { return false; }

    /// False: a press would do nothing at present, and it looks so.
    [[nodiscard]] virtual bool IsEnabled() const { return true; }

    /// The controls that it is made of, where people tell several in it; see Singly.
    [[nodiscard]] virtual std::span<const std::unique_ptr<Win>> Pieces() const { return {}; }

    [[nodiscard]] const Rect& Bounds() const { return rect_; }

    void SetLabel(ControlLabel label) { label_ = std::move(label); }
    [[nodiscard]] const ControlLabel& Label() const { return label_; }

  protected:
    /// The standard answer to HitTest.
    [[nodiscard]] Win* TakeIfInside(Point at) { return rect_.Contains(at) ? this : nullptr; }

    [[nodiscard]] bool IsShown() const { return scene_.shown; }

    [[nodiscard]] const Picture& NormalPage() const {
        return scene_.skin.Bitmap(scene_.pages.normal);
    }
    [[nodiscard]] const Picture& PressedPage() const {
        return scene_.skin.Bitmap(scene_.pages.pressed);
    }

    const Scene& scene_;
    Rect rect_;

  private:
    ControlLabel label_;
};

/// The controls of a table as people tell them apart, for tooltips, keyboard and screen readers: in
/// its order, without null entries, and what is made of pieces as its pieces.
[[nodiscard]] std::vector<Win*> Singly(std::span<const std::unique_ptr<Win>> table);

}  // namespace orma
