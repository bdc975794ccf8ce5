#pragma once

#include <array>
#include <functional>

#include "ui/controls/win.h"

namespace orma {

/// The three small buttons beside the level graph, evenly spaced from the top down: undo, set or
/// delete a mark, delete the current cut. Each takes a third of the bar's height for the pointer.
class ButtonBarWin : public Win {
  public:
    static constexpr int kButtons = 3;

    struct Handlers {
        std::function<void()> undo;
        std::function<void()> mark;
        std::function<void()> deleteCut;
    };

    ButtonBarWin(const Scene& scene, Element element, Handlers handlers);

    void Paint() override;

    /// Takes what lies right of the bar, too: the buttons are small, and nothing else is there.
    [[nodiscard]] Win* HitTest(Point at) override;
    void Press() override;

  private:
    static constexpr int kFirstBitmap = 512;

    std::array<std::function<void()>, kButtons> handlers_;
};

}  // namespace orma
