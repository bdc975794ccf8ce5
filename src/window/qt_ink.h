#pragma once

#include <memory>
#include <vector>

#include "ui/paint/ink.h"

namespace orma {

/// Letters and lines drawn by Qt: the family Inter, DejaVu Sans where it is missing. Letters are
/// smoothed in shades of grey and hinted vertically, whatever the desktop prefers, so that a window
/// looks the same everywhere. Needs the application object of Qt; UI thread.
///
/// Digits are drawn one by one in cells as wide as "0", as are the blanks that pad a number: those
/// at the beginning of a text and those beside each other. What is written from right to left is
/// left to the toolkit whole.
class QtInk : public Ink {
  public:
    QtInk();
    ~QtInk() override;

    [[nodiscard]] Size Measure(const Text& text, const Font& font) override;
    void DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                  const Font& font, Colour colour) override;
    void DrawLine(Picture& target, const Rect& clip, std::span<const Point> points, int width,
                  Colour colour) override;

  private:
    struct Face;

    /// The font, made and measured when it is asked for first.
    [[nodiscard]] Face& FaceOf(const Font& font);

    std::vector<std::unique_ptr<Face>> faces_;
};

}  // namespace orma
