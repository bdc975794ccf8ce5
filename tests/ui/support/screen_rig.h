#pragma once

#include <string>
#include <vector>

#include "support/memory_storage.h"
#include "ui/controls/win.h"
#include "ui/support/fake_ink.h"

namespace orma::test {

/// The 35 built-in bitmaps in their sizes, each of one colour that no other one has and that is no
/// colour of the built-in skin: a pixel of the window tells which bitmap it came from.
class PlainBitmaps : public BuiltInBitmaps {
  public:
    /// The pixel that all of bitmap `number` consists of.
    [[nodiscard]] static Pixel PixelOfBitmap(int number) {
        return 0x400000U | static_cast<Pixel>(number);
    }

    [[nodiscard]] std::vector<std::uint8_t> File(int number, bool doubled) override;
};

/// What a rig is made with.
struct RigOptions {
    Size client{240, 270};  // scale 1
    bool upsideDown = false;
    Pages pages{494, 495};
    std::string layout{};  // of the skin's "pos.txt"; empty: there is none
};

/// Everything that controls and screens stand on, in memory: a real skin on bitmaps of one colour
/// each, the window's image, ink made of blocks, the pointer. Pixel by pixel a test can ask what is
/// lit, and after each operation what has changed.
class ScreenRig {
  public:
    explicit ScreenRig(const RigOptions& options = {});
    ScreenRig(const ScreenRig&) = delete;
    ScreenRig& operator=(const ScreenRig&) = delete;

    MemoryStorage storage;
    PlainBitmaps bitmaps;
    FakeInk ink;
    Skin skin;
    Picture image;
    std::vector<Rect> changes;  // as the canvas told them, since PaintPage or TakeChanges
    Canvas canvas;
    Pointer pointer;
    Scene scene;

    /// Shows the normal page; then forgets what was drawn and has changed.
    void PaintPage();

    /// What has changed since the last call.
    std::vector<Rect> TakeChanges();

    /// Does this bitmap show there?
    [[nodiscard]] bool Shows(int x, int y, int bitmap) const;
    [[nodiscard]] bool IsLit(int x, int y) const { return Shows(x, y, scene.pages.pressed); }
    [[nodiscard]] bool IsDark(int x, int y) const { return Shows(x, y, scene.pages.normal); }

    /// True when exactly the pixels of `rect` have this value, all over the window.
    [[nodiscard]] bool ShowsExactly(const Rect& rect, Pixel pixel) const;
    [[nodiscard]] bool IsLitExactly(const Rect& rect) const {
        return ShowsExactly(rect, PlainBitmaps::PixelOfBitmap(scene.pages.pressed));
    }

    /// The left button, as the shell passes it on: whoever `root` (a screen or a control) gives the
    /// pointer to receives Press, Drag and Release. PressAt answers with it.
    Win* PressAt(Win& root, Point at);
    void DragTo(Point at);
    void Release();

  private:
    Win* taker_ = nullptr;
};

}  // namespace orma::test
