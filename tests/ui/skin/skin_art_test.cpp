#include <algorithm>
#include <filesystem>
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

    [[nodiscard]] Picture Slot(int slot) const {
        const Text name = FormatText(scale_ == 2 ? "%d@2x.bmp" : "%d.bmp", slot);
        return DecodeBitmap(test::ReadFileBytes(folder_.u16string() + u"/" + name));
    }
    /// Does the point (in pixels of the bitmaps) lie in one of `rects`?
    [[nodiscard]] bool IsIn(const std::vector<ElementRect>& rects, int x, int y) const {
        const int left = x / scale_;
        const int top = y / scale_;
        return std::any_of(rects.begin(), rects.end(), [&](const ElementRect& rect) {
            return left >= rect.x && left < rect.x + rect.w && top >= rect.y &&
                   top < rect.y + rect.h;
        });
    }
    [[nodiscard]] std::vector<ElementRect> Rects(const std::vector<Element>& elements) const {
        std::vector<ElementRect> rects;
        for (const Element element : elements) {
            rects.push_back(layout_[element]);
            if (element == VU) {  // the overload lamp stands on the meter
                rects.back().y -= 8;
                rects.back().h += 8;
            }
        }
        return rects;
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
const std::vector<Element> kTransport = {Stop,       Play,        Record,         Rewind,
                                         BackMark,   FastForward, ForwardMark,    VU,
                                         EditZoomIn, EditZoomOut, EditScrollGraph};
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

TEST_P(SkinArtTest, LightsEveryControlAndNothingBesides) {
    for (const PagePair& pair : kPairs) {
        const Picture normal = Slot(pair.normal);
        const Picture pressed = Slot(pair.normal + 1);
        const std::vector<ElementRect> rects = Rects(pair.lit);
        ASSERT_FALSE(normal.IsEmpty());
        std::vector<int> lit(rects.size());
        int outside = 0;
        for (int y = 0; y < normal.height; ++y) {
            for (int x = 0; x < normal.width; ++x) {
                if (normal.At(x, y) == pressed.At(x, y)) continue;
                if (!IsIn(rects, x, y)) ++outside;
                for (std::size_t i = 0; i < rects.size(); ++i)
                    lit[i] += IsIn({rects[i]}, x, y);
            }
        }
        EXPECT_EQ(outside, 0) << pair.normal;
        for (std::size_t i = 0; i < rects.size(); ++i) {
            EXPECT_GT(lit[i], 0) << pair.normal << ' ' << ElementName(pair.lit[i]);
        }
    }
}

TEST_P(SkinArtTest, NudgeKeysChangeOnlyWhatIsRestoredAfterThem) {
    const Picture page = Slot(494);
    for (int slot = 515; slot <= 518; ++slot) {
        const ElementRect& key = layout_[slot < 517 ? EditRewind : EditFastForward];
        const Picture bitmap = Slot(slot);
        int beyond = 0;
        int within = 0;
        for (int y = 0; y < bitmap.height; ++y) {
            for (int x = 0; x < bitmap.width; ++x) {
                const bool changed =
                    bitmap.At(x, y) != page.At(key.x * scale_ + x, key.y * scale_ + y);
                (x < key.w * scale_ && y < key.h * scale_ ? within : beyond) += changed;
            }
        }
        EXPECT_EQ(beyond, 0) << slot;
        EXPECT_GT(within, 0) << slot;
    }
}

}  // namespace
}  // namespace orma
