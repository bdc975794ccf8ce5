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

    /// Shows a level byte: 0 (full) to 79 (silence). Once a buffer.
    void VuUpdate(std::uint8_t level);

    /// The same while its screen is not shown: follows without drawing.
    void Follow(std::uint8_t level);

    void SetResolutionShift(unsigned shift);

    void Paint() override;

    /// The level in dB below full scale, to the nearest whole one: "-12 dB".
    [[nodiscard]] Text Value() const override;

    [[nodiscard]] int BarOffset() const { return bar_; }
    [[nodiscard]] int PeakOffset() const { return peak_; }

  private:
    static constexpr int kHeight = 80;  // design pixels, as are the following
    static constexpr int kMarker = 3;
    static constexpr int kLamp = 8;

    void Lit(int from, int to) const;  // rows, counted from the top of the element
    void Dark(int from, int to) const;

    unsigned shift_;
    bool mirrored_;
    std::int32_t smoothed_ = 79 << 8;  // level times 256
    int bar_ = 0;                      // window pixels from the top
    int peak_ = 0;
    std::uint32_t hold_ = 0;  // updates
};

}  // namespace orma
