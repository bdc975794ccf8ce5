#pragma once

#include <functional>

#include "ui/controls/win.h"

namespace orma {

/// A button that is lit while it is held and acts when it is pressed.
class PushButtonWin : public Win {
  public:
    PushButtonWin(const Scene& scene, Element element, std::function<void()> handler);

    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override;
    void Release() override;

  private:
    std::function<void()> handler_;
};

}  // namespace orma
