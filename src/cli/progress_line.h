#pragma once

#include <chrono>
#include <string>

#include "platform/posix/held_interrupt.h"
#include "publish/progress.h"

namespace orma::cli {

/// How a transfer goes, for people: "3.1 of 12.0 MB, 1.20 MB/s, 0:07 left". The rate is that of the
/// bytes since `start`; without any, or before half a second, only the sizes are told.
[[nodiscard]] std::string TransferText(std::uint64_t start, std::uint64_t done, std::uint64_t total,
                                       std::uint64_t milliseconds);

/// A publish job's progress as one line on standard error, when that is a terminal. While it lives,
/// Ctrl-C cancels the job instead of ending the program.
class ProgressLine : public PublishProgress {
  public:
    explicit ProgressLine(bool show) : show_(show) {}
    ~ProgressLine() override;

    void SetText(const Text& text) override;
    void SetRange(std::uint32_t steps) override;
    void Step(std::uint32_t steps) override;
    void SetBytes(std::uint64_t done, std::uint64_t total) override;
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
    std::string transfer_;
    std::uint64_t firstBytes_ = 0;  // done when the part being sent was first told of
    std::chrono::steady_clock::time_point started_;
    std::chrono::steady_clock::time_point drawnAt_;
    bool sending_ = false;
};

}  // namespace orma::cli
