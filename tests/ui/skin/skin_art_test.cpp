#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/posix_storage.h"
#include "support/temp_folder.h"
#include "ui/skin/colours.h"
#include "ui/skin/layout.h"

namespace orma {
namespace {

using enum Element;

/// A bitmap file, read as the skin loader reads it.
class Bitmap {
  public:
    explicit Bitmap(const std::filesystem::path& path)
        : bytes_(test::ReadFileBytes(path.u16string())) {
        // The loader takes 14 bytes, then 1068 bytes of information, wherever the pixels begin.
        if (bytes_.size() < 14 + 1068) throw std::runtime_error(path.string() + " is too short");
        EXPECT_EQ(Number(0, 2), 0x4D42U) << path;
        EXPECT_EQ(Number(2, 4), bytes_.size()) << path;
        EXPECT_EQ(Number(10, 4), 1078U) << path;
        EXPECT_EQ(Number(14, 4), 40U) << path;
        EXPECT_EQ(Number(28, 2), 8U) << path;
        EXPECT_EQ(Number(30, 4), 0U) << path;
        EXPECT_EQ(bytes_.size(), 1078U + static_cast<std::size_t>(RowBytes() * Height())) << path;
    }

    [[nodiscard]] int Width() const { return static_cast<int>(Number(18, 4)); }
    [[nodiscard]] int Height() const { return static_cast<int>(Number(22, 4)); }
    [[nodiscard]] Colour At(int x, int y) const {
        const int index = 1078 + (Height() - 1 - y) * RowBytes() + x;
        const std::size_t entry = 54 + 4 * std::size_t{bytes_.at(static_cast<std::size_t>(index))};
        return {bytes_.at(entry + 2), bytes_.at(entry + 1), bytes_.at(entry)};
    }

  private:
    [[nodiscard]] int RowBytes() const { return (Width() + 3) / 4 * 4; }
    [[nodiscard]] std::uint32_t Number(std::size_t at, std::size_t size) const {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < size; ++i)
            number |= std::uint32_t{bytes_[at + i]} << (8 * i);
        return number;
    }

    Bytes bytes_;
};

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
        colours_.Read(storage, (folder_ / "Colors.txt").u16string());
    }

    [[nodiscard]] bool BuiltIn() const { return folder_.filename() == "BuiltIn"; }
    [[nodiscard]] Bitmap Slot(int slot) const {
        return Bitmap(folder_ / (std::to_string(slot) + (scale_ == 2 ? "@2x.bmp" : ".bmp")));
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
    SkinColours colours_;
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

TEST_P(SkinArtTest, HoldsEverySlotInItsSize) {
    const auto of = [&](Element element) {
        return std::pair(layout_[element].w, layout_[element].h);
    };
    std::map<int, std::pair<int, int>> sizes;
    for (const PagePair& pair : kPairs)
        sizes[pair.normal] = sizes[pair.normal + 1] = of(MainWindow);
    for (int slot = 500; slot <= 502; ++slot)
        sizes[slot] = {1, 80};
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
        EXPECT_EQ(of(MainWindow), std::pair(240, 270));
        EXPECT_EQ(sizes[503], std::pair(16, 12));
        EXPECT_EQ(sizes[519], std::pair(38, 20));
    } else {
        sizes[511] = {7, 7};
        sizes[512] = sizes[513] = sizes[514] = {layout_[EditButtonBar].w, layout_[EditButtonBar].w};
        sizes[515] = sizes[516] = {layout_[EditRewind].w + 1, layout_[EditRewind].h};
        sizes[517] = sizes[518] = {layout_[EditFastForward].w + 1, layout_[EditFastForward].h};
    }
    ASSERT_EQ(sizes.size(), 35U);
    for (const auto& [slot, size] : sizes) {
        const Bitmap bitmap = Slot(slot);
        EXPECT_EQ(bitmap.Width(), size.first * scale_) << slot;
        EXPECT_EQ(bitmap.Height(), size.second * scale_) << slot;
    }
}

TEST_P(SkinArtTest, LightsEveryControlAndNothingBesides) {
    for (const PagePair& pair : kPairs) {
        const Bitmap normal = Slot(pair.normal);
        const Bitmap pressed = Slot(pair.normal + 1);
        const std::vector<ElementRect> rects = Rects(pair.lit);
        std::vector<int> lit(rects.size());
        int outside = 0;
        for (int y = 0; y < normal.Height(); ++y) {
            for (int x = 0; x < normal.Width(); ++x) {
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

TEST_P(SkinArtTest, TextBoxesVanishIntoTheDisplay) {
    ElementRect secondLine = layout_[ProgressText];
    secondLine.y += 26;
    std::map<int, std::vector<ElementRect>> texts = {
        {492, {layout_[ProgressText], secondLine}},
        {494, Rects({RecTime, MaxTime, Battery, CFACGainText, CFACVolText, RecStatus, EditRecTime,
                     EditTotalTime, EditRecGraph, GainKnob, CFACVolKnob})},
        {496, Rects({CWindow})},
        {498, Rects({AboutName, AboutWindowText, AboutVersion})},
    };
    if (!BuiltIn()) {  // whose name boxes reach over the meter
        texts[494].push_back(layout_[Name]);
        texts[494].push_back(layout_[EditName]);
    }
    for (const auto& [slot, rects] : texts) {
        const Bitmap page = Slot(slot);
        const std::vector<ElementRect> covered = Rects({EditZoomIn, EditZoomOut, EditScrollGraph});
        int other = 0;
        for (int y = 0; y < page.Height(); ++y) {
            for (int x = 0; x < page.Width(); ++x) {
                if (!IsIn(rects, x, y) || (slot == 494 && IsIn(covered, x, y))) continue;
                other += page.At(x, y) != colours_.textBackground;
            }
        }
        EXPECT_EQ(other, 0) << slot;
    }
}

TEST_P(SkinArtTest, NudgeKeysChangeOnlyWhatIsRestoredAfterThem) {
    const Bitmap page = Slot(494);
    for (int slot = 515; slot <= 518; ++slot) {
        const ElementRect& key = layout_[slot < 517 ? EditRewind : EditFastForward];
        const Bitmap bitmap = Slot(slot);
        int beyond = 0;
        int within = 0;
        for (int y = 0; y < bitmap.Height(); ++y) {
            for (int x = 0; x < bitmap.Width(); ++x) {
                const bool changed =
                    bitmap.At(x, y) != page.At(key.x * scale_ + x, key.y * scale_ + y);
                (x < key.w * scale_ && y < key.h * scale_ ? within : beyond) += changed;
            }
        }
        EXPECT_EQ(beyond, 0) << slot;
        EXPECT_GT(within, 0) << slot;
    }
}

TEST_P(SkinArtTest, KeepsItsElementsInTheWindowAndTheEditorsOffTheRecorder) {
    const auto contains = [&](Element outer, Element inner) {
        const ElementRect& out = layout_[outer];
        const ElementRect& in = layout_[inner];
        return in.x >= out.x && in.y >= out.y && in.x + in.w <= out.x + out.w &&
               in.y + in.h <= out.y + out.h;
    };
    for (std::size_t i = 0; i < kElementCount; ++i) {
        const auto element = static_cast<Element>(i);
        EXPECT_TRUE(contains(MainWindow, element)) << ElementName(element);
    }
    if (BuiltIn()) return;
    // The recorder paints its running time over what only the editor uses.
    for (const Element element : {EditZoomIn, EditZoomOut, EditScrollGraph}) {
        EXPECT_TRUE(contains(RecTime, element)) << ElementName(element);
    }
    const std::pair<Element, Element> twins[] = {{Stop, EditStop},
                                                 {Play, EditPlay},
                                                 {Record, EditRecord},
                                                 {Rewind, EditRewind},
                                                 {VU, EditVU},
                                                 {FastForward, EditFastForward},
                                                 {BackMark, EditBackMark},
                                                 {ForwardMark, EditForwardMark}};
    for (const auto& [recorder, editor] : twins) {
        EXPECT_EQ(layout_[recorder], layout_[editor]) << ElementName(recorder);
    }
}

}  // namespace
}  // namespace orma
