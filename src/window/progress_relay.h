#pragma once

#include "publish/progress.h"

namespace orma {

/// Passes the progress of publish jobs on to a screen that comes and goes with the window; without
/// one nobody watches and nobody cancels.
class ProgressRelay : public PublishProgress {
  public:
    /// Null: nobody. It outlives its turn.
    void ShowOn(PublishProgress* screen) { screen_ = screen; }

    void SetText(const Text& text) override {
        if (screen_ != nullptr) screen_->SetText(text);
    }
    void SetRange(std::uint32_t steps) override {
        if (screen_ != nullptr) screen_->SetRange(steps);
    }
    void Step(std::uint32_t steps) override {
        if (screen_ != nullptr) screen_->Step(steps);
    }
    void SetBytes(std::uint64_t done, std::uint64_t total) override {
        if (screen_ != nullptr) screen_->SetBytes(done, total);
    }
    [[nodiscard]] bool IsCancelled() override {
        return screen_ != nullptr && screen_->IsCancelled();
    }

  private:
    PublishProgress* screen_ = nullptr;
};

}  // namespace orma
