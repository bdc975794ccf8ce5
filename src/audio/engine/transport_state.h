#pragma once

namespace orma {

/// What recorder and editor are doing, one value for the whole process. The screens set it; the
/// player reads it for every buffer. The numbers are those of the status lamp.
enum class TransportState {
    kStopped = 0,
    kRecordReady = 1,  // the input is heard, nothing is saved
    kRecording = 2,
    kPlaying = 3,
    kFastForward = 4,
    kRewind = 5,
    kDragging = 6,  // playing, while a screen's control drags the place along: the player then
                    // shows each place at once. No button leads here; its lamp is kPlaying's
};

}  // namespace orma
