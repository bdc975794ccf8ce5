#pragma once

#include "ui/controls/win.h"

namespace orma {

/// A progress bar that fills from the left.
class PrgBarWin : public Win {
  public:
    PrgBarWin(const Scene& scene, Element element) : Win(scene, element) {}

    /// `done` of `range` (0: nothing is filled; more than the range: all is); repaints what
    /// changed.
    void SetProgress(std::uint32_t done, std::uint32_t range);

    void Paint() override;
    [[nodiscard]] Text Value() const override;  // "42%"

  private:
    int filled_ = 0;  // window pixels
    unsigned percent_ = 0;
};

}  // namespace orma
