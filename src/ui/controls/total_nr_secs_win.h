#pragma once

#include "ui/controls/win.h"

namespace orma {

/// "%3dm:%02ds.%02d" of so many buffer periods: minutes, seconds, hundredths cut off. Of no rate it
/// is no time.
[[nodiscard]] Text TotalText(std::uint32_t periods, std::uint32_t periodsPerSecond);

/// The length of the recording, right-aligned, opaque over its rectangle.
class TotalNrSecsWin : public Win {
  public:
    TotalNrSecsWin(const Scene& scene, Element element, Font font);

    /// Repaints when the text is another one.
    void ShowTotal(std::uint32_t periods, std::uint32_t periodsPerSecond);

    void Paint() override;
    [[nodiscard]] Text Value() const override { return text_; }

  private:
    Font font_;
    Text text_;
};

}  // namespace orma
