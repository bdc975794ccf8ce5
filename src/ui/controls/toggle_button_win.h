#pragma once

#include <functional>

#include "ui/controls/win.h"

namespace orma {

/// A button with two looks. A press asks its handler for the other one; the handler decides.
class ToggleButtonWin : public Win {
  public:
    ToggleButtonWin(const Scene& scene, Element element, std::function<void(bool lit)> handler);

    /// Shows that look at once when it is another one.
    void SetState(bool lit);

    void Paint() override;
    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override { handler_(!lit_); }
    [[nodiscard]] bool IsOn() const override { return lit_; }

  private:
    std::function<void(bool)> handler_;
    bool lit_ = false;
};

}  // namespace orma
