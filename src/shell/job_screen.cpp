#include "shell/job_screen.h"

namespace orma {

void JobScreen::Begin() {
    before_ = shell_.CurrentScreen();
    shell_.SelectScreen(ScreenIndex::kProgress);
}

void JobScreen::End() {
    shell_.EndJob();
    shell_.SelectScreen(before_);
}

void JobScreen::SetText(const Text& text) {
    if (screen_ != nullptr) screen_->SetText(text);
}

void JobScreen::SetRange(std::uint32_t steps) {
    if (screen_ != nullptr) screen_->SetRange(steps);
}

void JobScreen::Step(std::uint32_t steps) {
    if (screen_ != nullptr) screen_->Step(steps);
}

void JobScreen::SetBytes(std::uint64_t done, std::uint64_t total) {
    if (screen_ != nullptr) screen_->SetBytes(done, total);
}

bool JobScreen::IsCancelled() {
    const bool cancelled = screen_ != nullptr && screen_->IsCancelled();
    return cancelled || shell_.IsQuitting();
}

}  // namespace orma
