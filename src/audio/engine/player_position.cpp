// Where playing goes on: one period further, over cuts, to the next range, in jumps of a second.

#include <algorithm>

#include "audio/engine/busy.h"
#include "audio/engine/player.h"
#include "audio/files/level_tables.h"

namespace orma {

void Player::Advance() {
    if (!IsWinding()) {
        windCountdown_ = 0;
        AdvancePlaying();
        return;
    }
    if (windCountdown_ > 1) {
        --windCountdown_;
        AdvancePlaying();
        return;
    }
    windCountdown_ = Second() / 5;
    JumpWinding(s_.transport == TransportState::kFastForward);
}

void Player::AdvancePlaying() {
    const std::uint32_t run = run_;
    do {
        const auto from = static_cast<std::uint32_t>(position_);
        const std::uint32_t to = BehindCuts(from);
        const bool jumped = to != from;
        display_ = from - std::min(from, kLatencyPeriods);
        position_ = static_cast<std::int32_t>(to);
        if (jumped && to < End()) {
            {
                const Busy busy(readerBusy_);
                // Without a restart: what a decoder holds of the period before is still heard.
                (void)reader_->PositionAt(to);
            }
            SettleReader();
        }
        if (silence_ > 0)
            --silence_;
        else
            TellPosition(jumped ? from : display_);
        if (!playing_ || run != run_) return;
        const auto position = static_cast<std::uint32_t>(position_);
        if (position < End()) {
            ++position_;
            return;
        }
        if (jumped) position_ = static_cast<std::int32_t>(End()) + 1;
    } while (GoOnWithNextRange());
    if (run == run_) EndPlaying();
}

// False when there is no more, or when playing was ended meanwhile. Winding stays in its recording.
bool Player::GoOnWithNextRange() {
    if (IsWinding()) return false;
    const std::uint32_t run = run_;
    std::optional<PeriodRange> next;
    {
        const Busy busy(readerBusy_);
        next = s_.listener.NextRange();
    }
    SettleReader();
    if (!next || run != run_) return false;
    range_ = *next;
    position_ = static_cast<std::int32_t>(next->begin);
    return OpenReader() && run == run_;
}

void Player::JumpWinding(bool forward) {
    const std::int64_t step = forward ? Second() : -std::int64_t{Second()};
    const std::int64_t target = WoundPast(position_ + step, forward);
    if (target < 0) {
        EndAt(0);
    } else if (target >= s_.recording.length) {
        EndAt(s_.recording.length);
    } else {
        const std::uint32_t run = run_;
        const auto place = static_cast<std::uint32_t>(target);
        position_ = static_cast<std::int32_t>(place);
        display_ = place - std::min(place, kLatencyPeriods);
        SeekReader();
        TellPosition(display_);
        // The buffer that follows holds the target's period. With the target itself, the place
        // would fall a period behind the sound with every jump, and begins of cuts would be heard.
        if (run == run_) ++position_;
    }
}

void Player::EndAt(std::uint32_t position) {
    position_ = static_cast<std::int32_t>(position);
    display_ = position;
    if (playing_) EndPlaying();
}

void Player::WavRestartPlaying(std::int32_t position) {
    const std::uint32_t length = s_.recording.length;
    ChooseCutAt(position);
    if (position < 0 || position >= std::int64_t{length}) {
        EndAt(position < 0 ? 0 : length);
        return;
    }
    position_ = position;
    display_ = static_cast<std::uint32_t>(position);
    s_.listener.OnPlaceMoved(display_);
    if (!playing_) return;
    SeekReader();
    if (s_.transport != TransportState::kDragging && device_ != nullptr) silence_ = kBuffers;
}

void Player::ChooseCutAt(std::int64_t position) {
    const std::vector<RemovedRange>& cuts = s_.recording.sheet.cuts;
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        const auto index = static_cast<std::int32_t>(i);
        if (index == s_.recording.currentCut) continue;
        if (cuts[i].begin != position && cuts[i].end != position) continue;
        s_.recording.currentCut = index;
        if (!playing_) s_.listener.OnCutChosen(index);
        return;
    }
}

void Player::SeekReader() {
    if (readerBusy_) {
        seekReader_ = true;
        return;
    }
    {
        const Busy busy(readerBusy_);
        reader_->SeekPeriod(static_cast<std::uint32_t>(position_));
    }
    SettleReader();
}

void Player::TellPosition(std::uint32_t levelAt) {
    const std::vector<std::uint8_t>& levels = s_.recording.sheet.levels;
    s_.listener.OnPosition(display_, levelAt < levels.size() ? levels[levelAt] : kQuietLevel);
}

// Cuts may touch, overlap or contain each other: the place behind one is looked at again.
std::uint32_t Player::BehindCuts(std::uint32_t position) const {
    const std::vector<RemovedRange>& cuts = s_.recording.sheet.cuts;
    const auto covers = [&](const RemovedRange& cut) {
        return cut.begin <= position && position < cut.end;
    };
    for (auto cut = cuts.begin(); (cut = std::ranges::find_if(cuts, covers)) != cuts.end();)
        position = cut->end;
    return position;
}

// A target in a cut, its end included, also of an empty one, moves to that end, or back to a second
// before its start.
std::int64_t Player::WoundPast(std::int64_t target, bool forward) const {
    if (target < 0) return target;
    if (forward) return BehindCuts(static_cast<std::uint32_t>(target));
    const std::vector<RemovedRange>& cuts = s_.recording.sheet.cuts;
    const auto touches = [&](const RemovedRange& cut) {
        return cut.begin <= target && target <= cut.end;
    };
    for (auto cut = cuts.begin(); (cut = std::ranges::find_if(cuts, touches)) != cuts.end();)
        target = std::int64_t{cut->begin} - Second();
    return target;
}

std::uint32_t Player::End() const {
    const std::uint32_t length = s_.recording.length;
    return range_.end == 0 || IsWinding() ? length : std::min(range_.end, length);
}

bool Player::IsWinding() const {
    return s_.transport == TransportState::kFastForward || s_.transport == TransportState::kRewind;
}

}  // namespace orma
