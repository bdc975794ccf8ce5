#pragma once

#include <array>
#include <functional>
#include <memory>

#include "ui/controls/win.h"

namespace orma {

/// The three small buttons beside the level graph, evenly spaced from the top down: undo, set or
/// delete a mark, delete the current cut. Each takes a third of the bar's height for the pointer,
/// is a control of its own to whoever asks, and is faint while it would do nothing.
class ButtonBarWin : public Win {
  public:
    static constexpr int kButtons = 3;

    struct Button {
        std::function<void()> press;
        std::function<bool()> isEnabled;  // asked whenever it is painted
        ControlLabel label{};
    };

    ButtonBarWin(const Scene& scene, Element element, std::array<Button, kButtons> buttons);

    void Paint() override;

    /// Paints those that have become enabled or disabled.
    void Update();

    /// Takes what lies right of the bar, too: the buttons are small, and nothing else is there.
    [[nodiscard]] Win* HitTest(Point at) override;
    void Press() override;

    [[nodiscard]] std::span<const std::unique_ptr<Win>> Pieces() const override { return buttons_; }

  private:
    class Key;

    std::array<std::unique_ptr<Win>, kButtons> buttons_;
    std::array<Key*, kButtons> keys_{};  // the same
};

}  // namespace orma
