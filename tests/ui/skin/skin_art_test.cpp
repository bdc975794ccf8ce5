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
void PrintTo(const Art& art, std::ostream* out) {
    *out << art.name << " @" << art.scale << "x";
}

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

TEST_P(SkinArtTest, HoldsEverySlotInItsSize) {
    const auto of = [&](Element element, int wider = 0) {
        return Size{layout_[element].w + wider, layout_[element].h};
    };
    std::map<int, Size> sizes;
    for (const PagePair& pair : kPairs)
        sizes[pair.normal] = sizes[pair.normal + 1] = of(MainWindow);
    sizes[500] = sizes[501] = sizes[502] = {1, 80};
    for (int slot = 503; slot <= 508; ++slot)
        sizes[slot] = of(RecStatus);
    sizes[519] = of(CFACVolKnob);
    sizes[520] = {75, 50};
    if (BuiltIn()) {
        sizes[511] = {5, 5};
        sizes[512] = sizes[513] = sizes[514] = {10, 10};
        sizes[515] = sizes[517] = {35, 22};
        sizes[516] = {33, 21};
        sizes[518] = {35, 23};
    } else {
        sizes[511] = {7, 7};
        sizes[512] = sizes[513] = sizes[514] = {layout_[EditButtonBar].w, layout_[EditButtonBar].w};
        sizes[515] = sizes[516] = of(EditRewind, 1);
        sizes[517] = sizes[518] = of(EditFastForward, 1);
    }
    ASSERT_EQ(sizes.size(), 35U);
    for (const auto& [slot, size] : sizes) {
        const Picture bitmap = Slot(slot);
        EXPECT_EQ(bitmap.width, size.width * scale_) << slot;
        EXPECT_EQ(bitmap.height, size.height * scale_) << slot;
        EXPECT_FALSE(bitmap.indices.empty()) << slot << " is larger than it needs to be";
    }
}

TEST_P(SkinArtTest, LightsEveryControlAndNothingBesides) {
    for (const auto& [slot, controls] : kPairs) {
        const Picture normal = Slot(slot);
        const Picture pressed = Slot(slot + 1);
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

TEST_P(SkinArtTest, NudgeKeysChangeOnlyWhatIsRestoredAfterThem) {
    const Picture page = Slot(494);
    for (int slot = 515; slot <= 518; ++slot) {
        const ElementRect& key = layout_[slot < 517 ? EditRewind : EditFastForward];
        const Picture bitmap = Slot(slot);
        int changed = 0;
        for (int y = 0; y < bitmap.height; ++y) {
            for (int x = 0; x < bitmap.width; ++x) {
                if (bitmap.At(x, y) == page.At(key.x * scale_ + x, key.y * scale_ + y)) continue;
                EXPECT_TRUE(x < key.w * scale_ && y < key.h * scale_) << slot;
                ++changed;
            }
        }
        EXPECT_GT(changed, 0) << slot;
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
