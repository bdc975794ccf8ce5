#include "cli/play_session.h"

#include <cstdio>

#include "cli/level_line.h"
#include "cli/position.h"

namespace orma::cli {
namespace {

constexpr std::uint32_t kLinesPerSecond = 10;

}  // namespace

void PlaySession::Attach(Application& app, EventLoop& loop, PlayList* list) {
    app_ = &app;
    loop_ = &loop;
    list_ = list;
}

void PlaySession::Stop() {
    stopped_ = true;
    if (app_ == nullptr) return;
    app_->transport.Stop(true);
    End();
}

void PlaySession::OnPosition(std::uint32_t heard, std::uint8_t level) {
    const std::uint32_t perSecond = app_->audio.PeriodsPerSecond();
    if (!showLine_ || ++positionsSinceLine_ * kLinesPerSecond < perSecond) return;
    positionsSinceLine_ = 0;
    std::printf("\r%s\x1b[K", PlayLine(ToUtf8(app_->recording.name), heard, app_->recording.length,
                                       perSecond, level)
                                  .c_str());
    std::fflush(stdout);
}

std::optional<PeriodRange> PlaySession::NextRange() {
    if (list_ == nullptr) return std::nullopt;
    return list_->Next();
}

void PlaySession::OnPlayedOut() {
    End();
}

void PlaySession::OnOutputLost(WaveLoss) {
    lost_ = true;
    End();
}

void PlaySession::End() {
    if (showLine_) std::printf("\n");
    loop_->Quit(0);
}

}  // namespace orma::cli
