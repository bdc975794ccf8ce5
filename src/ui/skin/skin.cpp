#include "ui/skin/skin.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "base/path.h"
#include "base/trace.h"
#include "ui/skin/bitmap_file.h"

namespace orma {
namespace {

using enum Element;

// A picture of 32 bits a pixel with room for its headers; what is larger is no bitmap of a skin.
constexpr std::uint64_t kLargestFile = 4 * kLargestPicture + 4096;

// What the design's numbers are scaled to stays within, whatever a skin says: sums of a few of them
// are whole numbers, and nothing so far away is in the window.
constexpr float kFarthest = 1 << 20;

/// What the upside-down setting turns: the recorder's elements, but not the middles of its knobs,
/// whose bitmaps are not turned either. Other screens stay as they are.
constexpr std::array kTurned = {
    Record,      Stop,         Play,        Rewind,       FastForward, BackMark,
    ForwardMark, WindowRecord, WindowClip,  RecStatus,    RecTime,     MaxTime,
    Battery,     Name,         VU,          CFACGainText, CFACVolText, CFACGainKnob,
    CFACVolKnob, GainKnob,     GainCaption, VolCaption,
};

struct FontDescription {
    int height;  // design pixels
    FontWeight weight;
};
constexpr std::array<FontDescription, 4> kFonts = {{
    {12, FontWeight::kMedium},    // kText
    {14, FontWeight::kSemiBold},  // kName
    {25, FontWeight::kSemiBold},  // kTime
    {12, FontWeight::kSemiBold},  // kLabel
}};

void TurnRecorder(Layout& layout) {
    const ElementRect screen = layout[MainWindow];
    // A skin may hold any number: a difference beyond 32 bits wraps around.
    const auto turned = [](std::int64_t whole, std::int64_t length, std::int64_t place) {
        return static_cast<std::int32_t>(whole - length - place);
    };
    for (const Element element : kTurned) {
        ElementRect& rect = layout[element];
        rect.x = turned(screen.w, rect.w, rect.x);
        rect.y = turned(screen.h, rect.h, rect.y);
    }
}

/// Is there a section file to read?
bool FindsIniFile(Storage& storage, const Text& path) {
    std::unique_ptr<StorageFile> file;
    if (storage.Open(path, {}, file) != 0) {
        Trace("No ini-file:%s", ToUtf8(path).c_str());
        return false;
    }
    Trace("Found ini-file");
    return true;
}

/// Nothing when the file does not open; no bytes when it is too large or cannot be read.
std::optional<Bytes> ReadBitmapFile(Storage& storage, const Text& path) {
    std::unique_ptr<StorageFile> file;
    if (storage.Open(path, {}, file) != 0) return std::nullopt;
    std::uint64_t size = 0;
    if (file->Size(size) != 0 || size > kLargestFile) return Bytes();
    Bytes bytes(static_cast<std::size_t>(size));
    std::size_t got = 0;
    if (file->Read(bytes, got) != 0) return Bytes();
    bytes.resize(got);
    return bytes;
}

/// Each value is the one of `values` in its place.
template <typename Value>
std::vector<Value> Stretched(const std::vector<Value>& values, const Picture& picture, Size size) {
    std::vector<Value> out;
    if (values.empty()) return out;
    out.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    const auto place = [](int at, int from, int to) {
        return static_cast<int>(std::int64_t{at} * from / to);
    };
    for (int y = 0; y < size.height; ++y) {
        const int row = place(y, picture.height, size.height);
        for (int x = 0; x < size.width; ++x)
            out.push_back(values[picture.PlaceOf(place(x, picture.width, size.width), row)]);
    }
    return out;
}

/// A plain copying stretch.
Picture Stretched(const Picture& picture, Size size) {
    if (std::int64_t{size.width} * size.height > kLargestPicture) return {};
    return {size.width, size.height, Stretched(picture.pixels, picture, size),
            Stretched(picture.indices, picture, size), picture.palette};
}

Picture Turned(Picture picture) {
    std::reverse(picture.pixels.begin(), picture.pixels.end());
    std::reverse(picture.indices.begin(), picture.indices.end());
    return picture;
}

}  // namespace

Text SkinFolder(const Text& programFolder, Size client) {
    const Text folder = AsFolder(programFolder);
    if (client.width == client.height) return folder;
    if (client.width < client.height) return folder + AsFolder(u"Portrait");
    const double shape = static_cast<double>(client.width) / client.height;
    return folder + AsFolder(shape <= 1.5 ? u"Square" : u"Landscape");
}

Skin::Skin(Storage& storage, BuiltInBitmaps& builtIn, const Text& programFolder, Size client,
           bool upsideDown)
    : storage_(storage),
      builtIn_(builtIn),
      folder_(SkinFolder(programFolder, client)),
      upsideDown_(upsideDown) {
    const Text positions = folder_ + u"pos.txt";
    if (FindsIniFile(storage_, positions)) layout_.Read(storage_, positions);
    ElementRect& screen = layout_[MainWindow];
    if (screen.w <= 0 || screen.h <= 0) screen = Layout()[MainWindow];
    if (upsideDown_) TurnRecorder(layout_);
    FitInto(client);
    const Text colours = folder_ + u"Colors.txt";
    if (FindsIniFile(storage_, colours)) colours_.Read(storage_, colours);
}

void Skin::FitInto(Size client) {
    const ElementRect& screen = layout_[MainWindow];
    const auto width = static_cast<float>(client.width);
    const auto height = static_cast<float>(client.height);
    scale_ = width / static_cast<float>(screen.w);
    if (height < static_cast<float>(screen.h) * scale_) {
        scale_ = height / static_cast<float>(screen.h);
        page_ = {Scaled(screen.w), client.height};
    } else {
        page_ = {client.width, Scaled(screen.h)};
    }
    Trace("PosXScale=%f,PosYScale=%f", static_cast<double>(scale_), static_cast<double>(scale_));
}

int Skin::Scaled(int designPixels) const {
    const float product = static_cast<float>(designPixels) * scale_;
    return static_cast<int>(std::clamp(product, -kFarthest, kFarthest));
}

Rect Skin::RectOf(Element element) const {
    const ElementRect& rect = layout_[element];
    return {Scaled(rect.x), Scaled(rect.y), Scaled(rect.w), Scaled(rect.h)};
}

Font Skin::FontOf(SkinFont font, bool turned) const {
    const FontDescription& description = kFonts[static_cast<std::size_t>(font)];
    return {Scaled(description.height), description.weight, turned};
}

const Picture& Skin::Bitmap(int number) {
    static const Picture kNone;
    const bool turned = number >= kTurned;
    const int upright = turned ? number - kTurned : number;
    if (upright < kFirstBitmap || upright > kLastBitmap) return kNone;
    std::optional<Picture>& bitmap =
        (turned ? turned_ : bitmaps_)[static_cast<std::size_t>(upright - kFirstBitmap)];
    if (!bitmap) bitmap = turned ? Turned(Bitmap(upright)) : Load(upright);
    return *bitmap;
}

Picture Skin::Load(int number) {
    const Text name = folder_ + FormatText("%3d", number);
    std::optional<Bytes> file = ReadBitmapFile(storage_, name + u".bmp");
    const bool isOwn = file.has_value();
    if (!isOwn) file = builtIn_.File(number, false);
    if (!isOwn && file->empty()) {
        Trace("No bitmap, nr= %d", number);
        return {};
    }
    Picture picture = DecodeBitmap(*file);
    if (!picture.IsEmpty() && scale_ != 1.0F) {
        const Size size{Scaled(picture.width), Scaled(picture.height)};
        if (scale_ == 2.0F) {
            Picture doubled =
                DecodeBitmap(isOwn ? ReadBitmapFile(storage_, name + u"@2x.bmp").value_or(Bytes())
                                   : builtIn_.File(number, true));
            if (doubled.width == size.width && doubled.height == size.height) return doubled;
        }
        picture = Stretched(picture, size);
    }
    if (picture.IsEmpty()) Trace("No bitmap created:%d", number);
    return picture;
}

}  // namespace orma
