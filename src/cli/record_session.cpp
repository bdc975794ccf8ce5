#include "cli/record_session.h"

#include <algorithm>
#include <cstdio>

#include "cli/level_line.h"

namespace orma::cli {
namespace {

constexpr std::uint32_t kLinesPerSecond = 10;

}  // namespace

void RecordSession::Attach(Recorder& recorder, EventLoop& loop, std::uint32_t periodsPerSecond,
                           std::optional<std::uint32_t> length, std::vector<std::uint32_t> marks) {
    recorder_ = &recorder;
    loop_ = &loop;
    periodsPerSecond_ = periodsPerSecond;
    length_ = length;
    marks_ = std::move(marks);
    std::sort(marks_.begin(), marks_.end());
}

void RecordSession::Stop() {
    if (recorder_ != nullptr && recorder_->IsActive()) recorder_->WavStopRecording();
}

void RecordSession::ShowLine(std::uint8_t level) {
    if (!showLine_ || ++levelsSinceLine_ * kLinesPerSecond < periodsPerSecond_) return;
    levelsSinceLine_ = 0;
    const std::uint32_t saved = recorder_->SavedPeriods();
    const std::uint32_t left = recorder_->Budget() > saved ? recorder_->Budget() - saved : 0;
    std::printf(
        "\r%s\x1b[K",
        LevelLine(recorder_->IsSaving(), saved, left, periodsPerSecond_, level, marksSet_).c_str());
    std::fflush(stdout);
}

void RecordSession::OnLevel(std::uint8_t level) {
    ShowLine(level);
}

void RecordSession::OnSavedPeriods(std::uint32_t count) {
    // The recorder counts a period as saved once this has returned: a mark at period n is set while
    // period n + 1 arrives.
    while (marksSet_ < marks_.size() && marks_[marksSet_] < count) {
        recorder_->MarkWhileRecording();
        ++marksSet_;
    }
    if (length_ && count >= *length_) Stop();
}

void RecordSession::OnClosed() {
    if (showLine_) std::printf("\n");
    loop_->Quit(0);
}

void RecordSession::OnInputLost(WaveLoss) {
    inputLost_ = true;
}

}  // namespace orma::cli
