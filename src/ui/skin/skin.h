#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/storage.h"
#include "ui/paint/ink.h"
#include "ui/skin/colours.h"
#include "ui/skin/layout.h"

namespace orma {

/// The bitmap files that the program carries within itself.
class BuiltInBitmaps {
  public:
    virtual ~BuiltInBitmaps() = default;

    /// The file of that number (490 to 524), drawn at twice the size when `doubled`; empty when
    /// there is none.
    [[nodiscard]] virtual std::vector<std::uint8_t> File(int number, bool doubled) = 0;
};

/// The fonts of texts.
enum class SkinFont : std::uint8_t {
    kText,   // lines of the display
    kName,   // the recording's name
    kTime,   // the running time of the recorder
    kLabel,  // small times, gain and volume
};

/// The skin's folder beside the program, by the shape of the window's client area: "Square" wider
/// than high up to 1.5 times, "Landscape" beyond, "Portrait" higher than wide; the program's folder
/// itself for as high as wide. With the separator at its end.
[[nodiscard]] Text SkinFolder(const Text& programFolder, Size client);

/// Where everything stands and what it looks like, scaled to the window: layout, colours, fonts and
/// the 35 bitmaps 490 to 524. What a skin folder lacks comes from the built-in set. Nothing of it
/// fails: a bitmap that is missing or damaged stays empty and is traced. UI thread.
class Skin {
  public:
    static constexpr int kFirstBitmap = 490;
    static constexpr int kLastBitmap = 524;

    /// Added to a bitmap's number: the same, turned by 180 degrees.
    static constexpr int kTurned = 1000;

    /// Reads layout and colours. `client`: the window's client area without its menu bar, pixels.
    /// `upsideDown` turns the recorder's elements by 180 degrees. Both references outlive the skin:
    /// a bitmap is read, and stretched to the scale, when it is asked for first.
    Skin(Storage& storage, BuiltInBitmaps& builtIn, const Text& programFolder, Size client,
         bool upsideDown);

    /// Window pixels for each design pixel, in both directions.
    [[nodiscard]] float Scale() const { return scale_; }

    /// The part of the window that pages cover, from its upper left corner.
    [[nodiscard]] Size Page() const { return page_; }

    [[nodiscard]] bool UpsideDown() const { return upsideDown_; }
    [[nodiscard]] const SkinColours& Colours() const { return colours_; }

    /// The element in design pixels.
    [[nodiscard]] const ElementRect& Design(Element element) const { return layout_[element]; }

    /// The element in the window: each of x, y, w and h times the scale, truncated.
    [[nodiscard]] Rect RectOf(Element element) const;

    /// A length in design pixels, scaled and truncated.
    [[nodiscard]] int Scaled(int designPixels) const;

    [[nodiscard]] Font FontOf(SkinFont font, bool turned = false) const;

    /// The bitmap of that number at the skin's scale; empty when there is none.
    [[nodiscard]] const Picture& Bitmap(int number);

    /// The number of the recorder's bitmap `number`: upside down it is turned with its elements.
    [[nodiscard]] int ForRecorder(int number) const {
        return upsideDown_ ? number + kTurned : number;
    }

  private:
    /// Sets scale and page.
    void FitInto(Size client);
    [[nodiscard]] Picture Load(int number);

    Storage& storage_;
    BuiltInBitmaps& builtIn_;
    Text folder_;
    bool upsideDown_;
    Layout layout_;
    SkinColours colours_;
    float scale_ = 1.0F;
    Size page_;
    using Bitmaps = std::array<std::optional<Picture>, kLastBitmap - kFirstBitmap + 1>;
    Bitmaps bitmaps_;
    Bitmaps turned_;
};

}  // namespace orma
