#pragma once

#include "ui/controls/win.h"

namespace orma {

/// The current recording's name, centred at the top of its rectangle; of one that is too long the
/// middle is left out, for the end has the number. Opaque behind its letters alone: in some layouts
/// the rectangle reaches over meter and graph.
class NameWin : public Win {
  public:
    NameWin(const Scene& scene, Element element, Font font);

    /// Repaints when it is another one.
    void SetName(const Text& name);

    void Paint() override;
    [[nodiscard]] Text Value() const override { return name_; }

  private:
    void Fit();
    [[nodiscard]] Point Origin() const;

    /// What the name covers of the rectangle.
    [[nodiscard]] Rect Covered() const;

    Font font_;
    Text name_;
    Text shown_;
};

}  // namespace orma
