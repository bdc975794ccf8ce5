#pragma once

#include "platform/posix/held_interrupt.h"
#include "publish/progress.h"

namespace orma::cli {

/// A publish job's progress as one line on standard error, when that is a terminal. While it lives,
/// Ctrl-C cancels the job instead of ending the program.
class ProgressLine : public PublishProgress {
  public:
    explicit ProgressLine(bool show) : show_(show) {}
    ~ProgressLine() override;

    void SetText(const Text& text) override;
    void SetRange(std::uint32_t steps) override;
    void Step(std::uint32_t steps) override;
    [[nodiscard]] bool IsCancelled() override { return interrupt_.IsPending(); }

  private:
    void Draw();

    bool show_;
    bool drawn_ = false;
    HeldInterrupt interrupt_;
    Text text_;
    std::uint32_t range_ = 0;
    std::uint32_t done_ = 0;
    std::uint32_t shownPercent_ = 101;
};

}  // namespace orma::cli
