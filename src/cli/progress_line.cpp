#include "cli/progress_line.h"

#include <algorithm>
#include <cstdio>

namespace orma::cli {
namespace {

constexpr std::uint32_t kBarWidth = 30;
constexpr auto kRedraw = std::chrono::milliseconds(200);

}  // namespace

std::string TransferText(std::uint64_t start, std::uint64_t done, std::uint64_t total,
                         std::uint64_t milliseconds) {
    constexpr double kMegabyte = 1e6;
    std::string text = Format("%.1f of %.1f MB", static_cast<double>(done) / kMegabyte,
                              static_cast<double>(total) / kMegabyte);
    if (milliseconds < 500 || done <= start) return text;
    const double perSecond =
        static_cast<double>(done - start) * 1000 / static_cast<double>(milliseconds);
    text += Format(", %.2f MB/s", perSecond / kMegabyte);
    if (done >= total) return text;
    const auto left =
        static_cast<std::uint64_t>(static_cast<double>(total - done) / perSecond + 0.5);
    return text + Format(", %u:%02u left", static_cast<unsigned>(left / 60),
                         static_cast<unsigned>(left % 60));
}

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
    sending_ = false;
    transfer_.clear();
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

void ProgressLine::SetBytes(std::uint64_t done, std::uint64_t total) {
    const auto now = std::chrono::steady_clock::now();
    if (!sending_) {
        sending_ = true;
        firstBytes_ = done;
        started_ = now;
    }
    if (now - drawnAt_ < kRedraw && done < total) return;
    drawnAt_ = now;
    const auto past = std::chrono::duration_cast<std::chrono::milliseconds>(now - started_);
    transfer_ = TransferText(firstBytes_, done, total, static_cast<std::uint64_t>(past.count()));
    Draw();
}

void ProgressLine::Draw() {
    if (!show_) return;
    const std::uint32_t percent = std::min<std::uint32_t>(shownPercent_, 100);
    const std::uint32_t lit = shownPercent_ > 100 ? 0 : percent * kBarWidth / 100;
    const std::string bar = std::string(lit, '#') + std::string(kBarWidth - lit, '.');
    std::fprintf(stderr, "\r[%s] %s%s\x1b[K", bar.c_str(), ToUtf8(text_).c_str(),
                 transfer_.c_str());
    std::fflush(stderr);
    drawn_ = true;
}

}  // namespace orma::cli
