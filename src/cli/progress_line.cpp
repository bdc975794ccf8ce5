#include "cli/progress_line.h"

#include <algorithm>
#include <cstdio>

namespace orma::cli {
namespace {

constexpr std::uint32_t kBarWidth = 40;

}  // namespace

ProgressLine::~ProgressLine() {
    if (drawn_) std::fputs("\n", stderr);
}

void ProgressLine::SetText(const Text& text) {
    text_ = text;
    Draw();
}

void ProgressLine::SetRange(std::uint32_t steps) {
    range_ = steps;
    done_ = 0;
    shownPercent_ = 101;
}

void ProgressLine::Step(std::uint32_t steps) {
    done_ = std::min(range_, done_ + steps);
    const auto percent =
        static_cast<std::uint32_t>(range_ == 0 ? 100 : std::uint64_t{done_} * 100 / range_);
    if (percent == shownPercent_) return;
    shownPercent_ = percent;
    Draw();
}

void ProgressLine::Draw() {
    if (!show_) return;
    const std::uint32_t percent = std::min<std::uint32_t>(shownPercent_, 100);
    const std::uint32_t lit = shownPercent_ > 100 ? 0 : percent * kBarWidth / 100;
    const std::string bar = std::string(lit, '#') + std::string(kBarWidth - lit, '.');
    std::fprintf(stderr, "\r[%s] %s\x1b[K", bar.c_str(), ToUtf8(text_).c_str());
    std::fflush(stderr);
    drawn_ = true;
}

}  // namespace orma::cli
