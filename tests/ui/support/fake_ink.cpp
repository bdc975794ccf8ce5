#include "ui/support/fake_ink.h"

#include <cstdlib>

namespace orma::test {
namespace {

void Paint(Picture& target, const Rect& clip, const Rect& box, Colour colour) {
    const Rect inside = Common(Common(clip, box), target.Bounds());
    for (int y = inside.y; y < inside.Bottom(); ++y)
        for (int x = inside.x; x < inside.Right(); ++x)
            target.At(x, y) = PixelOf(colour);
}

}  // namespace

Size FakeInk::Measure(const Text& text, const Font& font) {
    return {static_cast<int>(text.size()) * (font.height / 2), font.height};
}

void FakeInk::DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                       const Font& font, Colour colour) {
    texts.push_back({clip, origin, text, font, colour});
    const Size size = Measure(text, font);
    const Point corner =
        font.turned ? Point{origin.x - size.width, origin.y - size.height} : origin;
    Paint(target, clip, {corner.x, corner.y, size.width, size.height}, colour);
}

void FakeInk::DrawLine(Picture& target, const Rect& clip, std::span<const Point> points, int width,
                       Colour colour) {
    lines.push_back({clip, {points.begin(), points.end()}, width, colour});
    const auto dot = [&](int x, int y) {
        Paint(target, clip, {x - width / 2, y - width / 2, width, width}, colour);
    };
    if (!points.empty()) dot(points[0].x, points[0].y);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const int dx = points[i].x - points[i - 1].x;
        const int dy = points[i].y - points[i - 1].y;
        const int steps = std::max(std::abs(dx), std::abs(dy));
        for (int step = 1; step <= steps; ++step)
            dot(points[i - 1].x + dx * step / steps, points[i - 1].y + dy * step / steps);
    }
}

std::vector<Text> FakeInk::Texts() const {
    std::vector<Text> result;
    for (const DrawnText& drawn : texts)
        result.push_back(drawn.text);
    return result;
}

void FakeInk::Forget() {
    texts.clear();
    lines.clear();
}

}  // namespace orma::test
