#include "window/qt_ink.h"

#include <gtest/gtest.h>

namespace orma {

namespace {

constexpr Pixel kGround = 0x204060;
constexpr Colour kWhite{255, 255, 255};

class QtInkTest : public testing::Test {
  protected:
    static Picture Empty() { return {300, 80, std::vector<Pixel>(300 * 80, kGround)}; }

    Picture Drawn(const Text& text, const Font& font, Point origin,
                  const Rect& clip = {0, 0, 300, 80}) {
        Picture picture = Empty();
        ink_.DrawText(picture, clip, origin, text, font, kWhite);
        return picture;
    }

    /// The smallest rectangle of what differs from the ground.
    static Rect Changed(const Picture& picture) {
        int left = picture.width, top = picture.height, right = 0, bottom = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                if (picture.At(x, y) == kGround) continue;
                left = std::min(left, x);
                top = std::min(top, y);
                right = std::max(right, x + 1);
                bottom = std::max(bottom, y + 1);
            }
        }
        return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
    }

    QtInk ink_;
    const Font time_{25, FontWeight::kSemiBold};
};

bool IsWithin(const Rect& inner, const Rect& outer) {
    return !inner.IsEmpty() && Common(inner, outer) == inner;
}

TEST_F(QtInkTest, ATextFillsItsBoxAndOnlyItsClip) {
    const Text text = u"Hg 09h";
    const Size box = ink_.Measure(text, time_);
    const Picture whole = Drawn(text, time_, {20, 10});
    EXPECT_TRUE(IsWithin(Changed(whole), {20, 10, box.width, box.height}));
    EXPECT_GT(Changed(whole).w, box.width - 6);
    EXPECT_GT(Changed(whole).h, 20);

    // What is cut off is cut off between pixels; the rest is drawn as it was.
    const Rect clip{31, 17, 40, 9};
    const Picture part = Drawn(text, time_, {20, 10}, clip);
    EXPECT_TRUE(IsWithin(Changed(part), clip));
    for (int y = 0; y < part.height; ++y)
        for (int x = 0; x < part.width; ++x)
            EXPECT_EQ(part.At(x, y), clip.Contains({x, y}) ? whole.At(x, y) : kGround);
}

TEST_F(QtInkTest, RunningNumbersStandStill) {
    for (const Font& font : {Font{12, FontWeight::kSemiBold}, time_}) {
        const int width = ink_.Measure(u"000m:00s.00", font).width;
        for (const Text text : {u"  1m:11s.17", u" 11m:59s.99", u"888m:41s.05"})
            EXPECT_EQ(ink_.Measure(text, font).width, width);
        // Every digit keeps to its cell, so the letters around it are the same pixels.
        const Rect behind{20 + ink_.Measure(u"000m:00", font).width + 1, 0, 300, 80};
        const Picture one = Drawn(u"  1m:11s.0", font, {20, 10});
        const Picture other = Drawn(u"888m:44s.0", font, {20, 10});
        for (int y = 0; y < one.height; ++y)
            for (int x = behind.x; x < one.width; ++x)
                ASSERT_EQ(one.At(x, y), other.At(x, y)) << x << ", " << y;
    }
    // A blank between words is an ordinary one.
    const Font text{12, FontWeight::kMedium};
    EXPECT_LT(ink_.Measure(u"a b", text).width, ink_.Measure(u"a0b", text).width);
}

TEST_F(QtInkTest, TurnedTextIsTheUprightOneSeenUpsideDown) {
    const Text text = u"  Mark  17 gA";
    for (const int height : {12, 14, 25}) {
        const Font upright{height, FontWeight::kSemiBold};
        const Font turned{height, FontWeight::kSemiBold, true};
        const Size box = ink_.Measure(text, turned);
        EXPECT_EQ(box, ink_.Measure(text, upright));
        const Rect seen = Changed(Drawn(text, turned, {280, 70}));
        EXPECT_TRUE(IsWithin(seen, {280 - box.width, 70 - box.height, box.width, box.height}));
        const Rect expected = Changed(Drawn(text, upright, {20, 10}));
        EXPECT_NEAR(seen.x, 300 - expected.Right(), 1);
        EXPECT_NEAR(seen.y, 80 - expected.Bottom(), 1);
        EXPECT_NEAR(seen.w, expected.w, 2);
        EXPECT_NEAR(seen.h, expected.h, 2);
    }
}

TEST_F(QtInkTest, UnusualTextsAndPicturesAreHarmless) {
    Picture none;
    ink_.DrawText(none, {0, 0, 10, 10}, {0, 0}, u"a", time_, kWhite);
    EXPECT_EQ(ink_.Measure(u"", time_).width, 0);
    EXPECT_GT(ink_.Measure(u"a", {0, FontWeight::kMedium}).height, 0);
    // Written from right to left: the toolkit's order, in its own widths.
    const Text hebrew = u"\u05D0\u05D1 12";
    EXPECT_FALSE(Changed(Drawn(hebrew, time_, {20, 10})).IsEmpty());
    const Text lone{0xD800, u'1', 0xDC01};
    EXPECT_GT(ink_.Measure(lone, time_).width, 10);
}

TEST_F(QtInkTest, LinesReachTheirEndsAndNotBeyondTheClip) {
    const auto draw = [&](std::vector<Point> points, int width,
                          const Rect& clip = {0, 0, 300, 80}) {
        Picture picture = Empty();
        ink_.DrawLine(picture, clip, points, width, kWhite);
        return picture;
    };
    const Picture corner = draw({{5, 5}, {14, 5}, {14, 9}}, 1);
    EXPECT_EQ(Changed(corner), (Rect{5, 5, 10, 5}));
    EXPECT_EQ(std::ranges::count(corner.pixels, 0xFFFFFFU), 14);
    EXPECT_EQ(Changed(draw({{7, 8}}, 1)), (Rect{7, 8, 1, 1}));
    const Rect clip{10, 10, 7, 9};
    EXPECT_EQ(Changed(draw({{-50, 14}, {400, 14}}, 5, clip)), (Rect{10, 12, 7, 5}));
    EXPECT_EQ(Changed(draw({{-50, 14}, {400, 14}}, 2)), (Rect{0, 13, 300, 2}));
    EXPECT_TRUE(Changed(draw({}, 1)).IsEmpty());
}

}  // namespace
}  // namespace orma
