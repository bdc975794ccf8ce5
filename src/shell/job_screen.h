#pragma once

#include "publish/progress.h"
#include "shell/shell.h"

namespace orma {

/// A publish job in the window: the progress screen is current from its Begin to its End, then the
/// one that was current before. Without a progress screen nothing is shown and nobody cancels. UI
/// thread.
class JobScreen : public PublishProgress {
  public:
    /// `shell` outlives it; it is asked for nothing before Begin.
    explicit JobScreen(Shell& shell) : shell_(shell) {}

    /// Where progress is shown; null: nowhere. It outlives its turn.
    void ShowOn(PublishProgress* screen) { screen_ = screen; }

    void Begin() override;
    void End() override;
    void SetText(const Text& text) override;
    void SetRange(std::uint32_t steps) override;
    void Step(std::uint32_t steps) override;
    void SetBytes(std::uint64_t done, std::uint64_t total) override;

    /// Also true once the program is to end.
    [[nodiscard]] bool IsCancelled() override;

  private:
    Shell& shell_;
    PublishProgress* screen_ = nullptr;
    ScreenIndex before_ = ScreenIndex::kRecorder;
};

}  // namespace orma
