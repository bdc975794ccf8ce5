#include "ui/screens/input_warnings.h"

#include "audio/files/level_tables.h"

namespace orma {

bool InputWarnings::Hear(std::uint8_t level, std::uint32_t periodsPerSecond) {
    const Text before = Line();
    if (level == 0) overload_ = true;
    if (level < kQuietLevel)
        CaptureEnded();
    else if (++silentPeriods_ >= kSilentSeconds * periodsPerSecond)
        silent_ = true;
    return Line() != before;
}

bool InputWarnings::FramesLost(std::uint64_t frames) {
    const Text before = Line();
    if (frames > seenFrames_) framesLost_ = true;
    seenFrames_ = frames;
    return Line() != before;
}

bool InputWarnings::Lost(LostDevice device, WaveLoss reason) {
    const Text before = Line();
    lost_ = device;
    reason_ = reason;
    return Line() != before;
}

void InputWarnings::Acknowledge() {
    overload_ = false;
    framesLost_ = false;
    lost_ = LostDevice::kNone;
}

Text InputWarnings::Line() const {
    const bool stalled = reason_ == WaveLoss::kStalled;
    if (lost_ == LostDevice::kOutput) return stalled ? u"Loudspeaker stalled" : u"Loudspeaker lost";
    if (lost_ == LostDevice::kInput) {
        if (digital_) return stalled ? u"Digital input stalled" : u"Digital input lost";
        return stalled ? u"Microphone stalled" : u"Microphone lost";
    }
    if (framesLost_) return u"Some sound was lost";
    if (SilenceIsFirst())
        return digital_ ? u"No sound from the input" : u"No sound from the microphone";
    if (overload_) return u"Too loud: overload";
    return {};
}

Text InputWarnings::ShortLine() const {
    return SilenceIsFirst() ? Text{u"No sound"} : Line();
}

}  // namespace orma
