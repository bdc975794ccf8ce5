#pragma once

#include "ui/controls/win.h"

namespace orma {

/// The vertical level meter: rises at once, falls back smoothly, holds the last peak for a second,
/// lights an over-range lamp above it at full level. Every pixel is copied from the dark (normal)
/// or lit (pressed) page; an update copies only the rows that changed.
class VuWin : public Win {
  public:
    /// `resolutionShift` S: 5 << S updates a second. `mirrored`: it hangs upside down.
    VuWin(const Scene& scene, Element element, unsigned resolutionShift, bool mirrored);

    /// All dark, and at rest.
    void VuInit();

    /// Shows a level byte: 0 (full) to 79 (silence), more is no level. Once a buffer.
    void VuUpdate(std::uint8_t level);

    void SetResolutionShift(unsigned shift);

    void Paint() override;

    /// The level that the bar shows, to the nearest dB: "-12 dB"; "-49 dB or less" at its end.
    [[nodiscard]] Text Value() const override;

    [[nodiscard]] int BarOffset() const { return bar_; }
    [[nodiscard]] int PeakOffset() const { return peak_; }

  private:
    static constexpr int kHeight = 80;  // design pixels, as are the following
    static constexpr int kMarker = 3;
    static constexpr int kLamp = 8;

    void Rest();

    /// Copies rows [from, to) of a page, counted from the element's top (mirrored: upwards from its
    /// bottom; the lamp's are negative) and never beyond the meter's end.
    void CopyRows(const Picture& page, int from, int to) const;

    [[nodiscard]] std::uint32_t HoldTime() const { return 5U << shift_; }
    [[nodiscard]] int Height() const { return scene_.skin.Scaled(kHeight); }
    [[nodiscard]] int Marker() const { return scene_.skin.Scaled(kMarker); }
    [[nodiscard]] int Lamp() const { return scene_.skin.Scaled(kLamp); }

    unsigned shift_;
    bool mirrored_;
    std::int32_t smoothed_ = 0;  // level times 256
    int bar_ = 0;                // window pixels from the top
    int peak_ = 0;               // never below the bar
    std::uint32_t hold_ = 0;     // updates that the peak is still held
};

}  // namespace orma
