#pragma once

#include <cstdint>

#include "base/text.h"
#include "platform/wave.h"

namespace orma {

/// What the recorder asks of the project around it. UI thread.
class TakeKeeper {
  public:
    virtual ~TakeKeeper() = default;

    /// Moves on to the next recording: clears marks and selection of the project, moves a file that
    /// already has the take's name aside, and returns the take's name (no folder, no extension).
    [[nodiscard]] virtual Text PrepareTake() = 0;

    /// The take is closed and at least one second long: its level file is written, its clip added,
    /// the project saved.
    virtual void TakeFinished() = 0;

    /// The take was shorter than a second or never began: the last take becomes current again and
    /// the next one reuses this one's number and names. `created`: its file was created; what lies
    /// under its name otherwise is somebody else's.
    virtual void TakeDiscarded(bool created) = 0;

    /// The folder whose free space bounds the recording.
    [[nodiscard]] virtual Text StorageFolder() const = 0;

    /// Takes go straight to the FTP server.
    [[nodiscard]] virtual bool LiveFtp() const = 0;
};

/// What the recorder tells its screens. UI thread; the bodies do nothing by default.
class RecorderListener {
  public:
    virtual ~RecorderListener() = default;

    virtual void OnLevel(std::uint8_t /*level*/) {}  // one a buffer while monitoring or saving
    virtual void OnSavedPeriods(std::uint32_t /*count*/) {}  // while saving
    virtual void OnSavingStarted() {}
    virtual void OnSavingStopped() {}
    virtual void OnTimeLeftChanged() {}  // also the battery: at every start and stop
    virtual void OnIndicator(bool /*lit*/) {}
    virtual void OnMark(std::uint32_t /*number*/) {}  // "  Mark %3d "
    virtual void OnStopped() {}                       // capture ended, also by itself; it drains
    virtual void OnClosed() {}                        // the drain is complete, the device closed
    virtual void OnInputLost(WaveLoss /*reason*/) {}  // the take was ended and kept
};

}  // namespace orma
