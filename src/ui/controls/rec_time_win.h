#pragma once

#include "ui/controls/win.h"

namespace orma {

/// The running time: of the tape ("  1m:01s.70", in hundredths), or of the day ("09h:05m:00s").
/// Always opaque over its whole rectangle, in which the editor has keys on the same page. A time of
/// the day is never cut off: it moves the rectangle's far edge.
class RecTimeWin : public Win {
  public:
    enum class Mode : std::uint8_t { kElapsed, kClock };

    RecTimeWin(const Scene& scene, Element element, Font font, Mode mode = Mode::kElapsed);

    /// Elapsed mode: shows `periods` buffer periods of 1 / `periodsPerSecond` s. Repaints when the
    /// text is another one.
    void ShowPeriods(std::uint32_t periods, std::uint32_t periodsPerSecond);

    /// Clock mode: the same with a time of day.
    void ShowClock(unsigned hour, unsigned minute, unsigned second);

    /// A line in place of the time, e.g. "  Mark   3 "; the next time replaces it.
    void ShowText(const Text& text);

    void Paint() override;
    [[nodiscard]] Text Value() const override { return text_; }

  private:
    Font font_;
    Mode mode_;
    Text text_;
};

}  // namespace orma
