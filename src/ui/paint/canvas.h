#pragma once

#include <functional>
#include <span>

#include "ui/paint/ink.h"

namespace orma {

/// The window's image, on which screens and controls paint, and what of it has changed since it was
/// last shown. UI thread.
class Canvas {
  public:
    /// Both outlive the canvas. `onChange` hears of every rectangle that was painted on, within the
    /// picture; the window shows them with its next frame.
    Canvas(Picture& target, Ink& ink, std::function<void(const Rect&)> onChange);

    [[nodiscard]] Rect Bounds() const { return target_.Bounds(); }
    [[nodiscard]] const Picture& Image() const { return target_; }

    void Fill(const Rect& rect, Colour colour);

    /// Copies `from` of `source` to `to`, as it is. What lies outside of either picture is left
    /// out.
    void Copy(const Picture& source, const Rect& from, Point to);

    /// The same rectangle of a page: shows its control dark or lit.
    void CopyFromPage(const Picture& page, const Rect& rect) { Copy(page, rect, {rect.x, rect.y}); }

    /// Combines `from` of `source` with what stands at `to` by exclusive or: done again, it is
    /// gone.
    void Invert(const Picture& source, const Rect& from, Point to);

    [[nodiscard]] Size Measure(const Text& text, const Font& font) {
        return ink_.Measure(text, font);
    }

    /// See Ink: one line of text from `origin`, cut off at `clip`.
    void DrawText(const Rect& clip, Point origin, const Text& text, const Font& font,
                  Colour colour);
    void DrawLine(const Rect& clip, std::span<const Point> points, int width, Colour colour);

  private:
    Picture& target_;
    Ink& ink_;
    std::function<void(const Rect&)> onChange_;
};

}  // namespace orma
