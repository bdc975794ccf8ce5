#include "ui/paint/canvas.h"

#include <utility>

namespace orma {
namespace {

/// A copy as both pictures allow it.
struct Block {
    Rect from;
    Point to;
};

Block WithinBoth(const Picture& source, const Rect& from, const Picture& target, Point to) {
    const Rect read = Common(from, source.Bounds());
    const int dx = to.x - from.x;
    const int dy = to.y - from.y;
    const Rect written = Common({read.x + dx, read.y + dy, read.w, read.h}, target.Bounds());
    return {{written.x - dx, written.y - dy, written.w, written.h}, {written.x, written.y}};
}

/// `combine` gets what stands in the target and what the source has there.
template <typename Combine>
void Transfer(const Picture& source, const Block& block, Picture& target, Combine combine) {
    for (int row = 0; row < block.from.h; ++row) {
        const std::size_t read = source.PlaceOf(block.from.x, block.from.y + row);
        Pixel* const write = &target.At(block.to.x, block.to.y + row);
        const auto width = static_cast<std::size_t>(block.from.w);
        if (source.indices.empty()) {
            for (std::size_t i = 0; i < width; ++i)
                write[i] = combine(write[i], source.pixels[read + i]);
        } else {
            for (std::size_t i = 0; i < width; ++i)
                write[i] = combine(write[i], source.palette[source.indices[read + i]]);
        }
    }
}

}  // namespace

Canvas::Canvas(Picture& target, Ink& ink, std::function<void(const Rect&)> onChange)
    : target_(target), ink_(ink), onChange_(std::move(onChange)) {}

void Canvas::Fill(const Rect& rect, Colour colour) {
    const Rect inside = Common(rect, target_.Bounds());
    if (inside.IsEmpty()) return;
    for (int y = inside.y; y < inside.Bottom(); ++y)
        std::fill_n(&target_.At(inside.x, y), inside.w, PixelOf(colour));
    onChange_(inside);
}

void Canvas::Copy(const Picture& source, const Rect& from, Point to) {
    const Block block = WithinBoth(source, from, target_, to);
    if (block.from.IsEmpty()) return;
    Transfer(source, block, target_, [](Pixel, Pixel read) { return read; });
    onChange_({block.to.x, block.to.y, block.from.w, block.from.h});
}

void Canvas::Invert(const Picture& source, const Rect& from, Point to) {
    const Block block = WithinBoth(source, from, target_, to);
    if (block.from.IsEmpty()) return;
    Transfer(source, block, target_, [](Pixel written, Pixel read) { return written ^ read; });
    onChange_({block.to.x, block.to.y, block.from.w, block.from.h});
}

void Canvas::DrawText(const Rect& clip, Point origin, const Text& text, const Font& font,
                      Colour colour) {
    const Rect inside = Common(clip, target_.Bounds());
    if (inside.IsEmpty() || text.empty()) return;
    ink_.DrawText(target_, inside, origin, text, font, colour);
    onChange_(inside);
}

void Canvas::DrawLine(const Rect& clip, std::span<const Point> points, int width, Colour colour) {
    const Rect inside = Common(clip, target_.Bounds());
    if (inside.IsEmpty() || points.empty()) return;
    ink_.DrawLine(target_, inside, points, width, colour);
    onChange_(inside);
}

}  // namespace orma
