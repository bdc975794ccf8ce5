#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/posix_storage.h"
#include "support/temp_folder.h"
#include "ui/skin/bitmap_file.h"
#include "ui/skin/layout.h"

namespace orma {
namespace {

using enum Element;

/// One generated set at one scale.
struct Art {
    const char* name;
    int scale;
};

class SkinArtTest : public testing::TestWithParam<Art> {
  protected:
    SkinArtTest() {
        PosixStorage storage;
        layout_.Read(storage, (folder_ / "pos.txt").u16string());
    }

    [[nodiscard]] bool BuiltIn() const { return folder_.filename() == "BuiltIn"; }
    [[nodiscard]] Picture Slot(int slot) const {
        const auto path = folder_ / (std::to_string(slot) + (scale_ == 2 ? "@2x.bmp" : ".bmp"));
        return DecodeBitmap(test::ReadFileBytes(path.u16string()));
    }
    /// What a bitmap of the element's size covers.
    [[nodiscard]] Rect Whole(Element element) const {
        return {0, 0, layout_[element].w * scale_, layout_[element].h * scale_};
    }
    /// Does the point (in pixels of the bitmaps) lie in one of these elements?
    [[nodiscard]] bool IsIn(const std::vector<Element>& elements, int x, int y) const {
        return std::ranges::any_of(elements, [&](Element element) {
            const ElementRect& rect = layout_[element];
            const int lamp = element == VU ? 8 : 0;  // of overload stands on the meter
            return Rect{rect.x, rect.y - lamp, rect.w, rect.h + lamp}.Contains(
                {x / scale_, y / scale_});
        });
    }

    const std::filesystem::path folder_ = std::filesystem::path(ORMA_SKINS) / GetParam().name;
    const int scale_ = GetParam().scale;
    Layout layout_;
};

INSTANTIATE_TEST_SUITE_P(Sets, SkinArtTest,
                         testing::Values(Art{"BuiltIn", 1}, Art{"BuiltIn", 2}, Art{"Portrait", 1},
                                         Art{"Portrait", 2}, Art{"Square", 1}, Art{"Square", 2},
                                         Art{"Landscape", 1}, Art{"Landscape", 2}),
                         [](const auto& art) {
                             return art.param.name + std::to_string(art.param.scale);
                         });

struct PagePair {
    int normal;
    std::vector<Element> lit;
};
const std::vector<Element> kTransport = {
    Stop, Play,       Record,      Rewind,          BackMark,    FastForward, ForwardMark,
    VU,   EditZoomIn, EditZoomOut, EditScrollGraph, GainCaption, VolCaption};
const std::vector<PagePair> kPairs = {
    {490, {}},
    {492, {ProgressCancel, ProgressBar}},
    {494, kTransport},
    {496, {CStop, CPlay, CInsert, CRemove, CUp, CDown, CRotText}},
    {498, {AboutDevice, AboutProject}},
    {509, kTransport},
    {521, kTransport},
    {523, kTransport},
};

TEST_P(SkinArtTest, HoldsEverySlot) {
    for (int slot = 490; slot <= 524; ++slot) {
        const Picture bitmap = Slot(slot);
        EXPECT_FALSE(bitmap.indices.empty()) << slot << " is missing or larger than it needs to be";
    }
    for (int slot = 503; slot <= 508; ++slot)
        EXPECT_EQ(Slot(slot).Bounds(), Whole(RecStatus)) << slot;
}

TEST_P(SkinArtTest, LightsEveryControlAndNothingBesides) {
    for (const auto& [slot, controls] : kPairs) {
        const Picture normal = Slot(slot);
        const Picture pressed = Slot(slot + 1);
        ASSERT_EQ(normal.Bounds(), Whole(MainWindow)) << slot;
        ASSERT_EQ(pressed.Bounds(), Whole(MainWindow)) << slot;
        std::map<Element, int> lit;
        for (int y = 0; y < normal.height; ++y) {
            for (int x = 0; x < normal.width; ++x) {
                if (normal.At(x, y) == pressed.At(x, y)) continue;
                ASSERT_TRUE(IsIn(controls, x, y)) << slot << ": " << x << ", " << y;
                for (const Element control : controls)
                    lit[control] += IsIn({control}, x, y);
            }
        }
        for (const Element control : controls) {
            if (BuiltIn() && layout_[control].w == 0) continue;  // it has no room for captions
            EXPECT_GT(lit[control], 0) << slot << ' ' << ElementName(control);
        }
    }
}

TEST_P(SkinArtTest, KeepsItsElementsInTheWindow) {
    const ElementRect& window = layout_[MainWindow];
    for (std::size_t i = 0; i < kElementCount; ++i) {
        const auto element = static_cast<Element>(i);
        const ElementRect& rect = layout_[element];
        EXPECT_TRUE(rect.x >= 0 && rect.y >= 0) << ElementName(element);
        EXPECT_LE(rect.x + rect.w, window.w) << ElementName(element);
        EXPECT_LE(rect.y + rect.h, window.h) << ElementName(element);
    }
}

}  // namespace
}  // namespace orma
