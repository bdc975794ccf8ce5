#pragma once

#include <cstdint>

#include "base/text.h"
#include "platform/wave.h"

namespace orma {

/// What the reporter must know of the sound that comes in, as one line of words, and never in a
/// box: a take may run. Overload, lost sound and lost devices stay until they are acknowledged, or
/// what they were about begins anew: nobody looks at the display all the time, and behind a take
/// one must still see that it was too loud. Silence goes away with the first sound. UI thread.
class InputWarnings {
  public:
    static constexpr std::uint32_t kSilentSeconds = 5;

    /// `digital`: the input is a digital line and no microphone.
    explicit InputWarnings(bool digital = false) : digital_(digital) {}

    // Those that answer tell whether the line has changed.

    /// The level byte of a buffer that came in.
    bool Hear(std::uint8_t level, std::uint32_t periodsPerSecond);

    /// Sample frames that the device has lost since it was opened. What it lost before saving began
    /// is in no take.
    bool FramesLost(std::uint64_t frames);

    /// What was too loud before is in no take.
    void TakeBegins(std::uint64_t framesLost) {
        seenFrames_ = framesLost;
        overload_ = false;
    }

    /// The output works again.
    void PlayingBegins() {
        if (lost_ == LostDevice::kOutput) lost_ = LostDevice::kNone;
    }

    bool InputLost(WaveLoss reason) { return Lost(LostDevice::kInput, reason); }
    bool OutputLost(WaveLoss reason) { return Lost(LostDevice::kOutput, reason); }

    /// Capture ended: there is no silence any more.
    void CaptureEnded() {
        silentPeriods_ = 0;
        silent_ = false;
    }

    /// The user has seen them.
    void Acknowledge();

    /// The most urgent one; empty: nothing is wrong.
    [[nodiscard]] Text Line() const;

    /// The same for a narrow display.
    [[nodiscard]] Text ShortLine() const;

  private:
    enum class LostDevice : std::uint8_t { kNone, kInput, kOutput };

    bool Lost(LostDevice device, WaveLoss reason);

    [[nodiscard]] bool SilenceIsFirst() const {
        return silent_ && !framesLost_ && lost_ == LostDevice::kNone;
    }

    bool digital_;
    bool overload_ = false;
    bool silent_ = false;
    bool framesLost_ = false;
    std::uint64_t seenFrames_ = 0;
    std::uint32_t silentPeriods_ = 0;
    LostDevice lost_ = LostDevice::kNone;
    WaveLoss reason_ = WaveLoss::kVanished;
};

}  // namespace orma
