#pragma once

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "platform/event_loop.h"
#include "platform/wave.h"

namespace orma::test {

/// What is common to both directions. The script belongs to the FakeWaveSystem and outlives the
/// device that the code under test opens and destroys.
struct FakeWaveScript {
    /// The calls made, by name and in order: "OpenInput", "Prepare", "Add", "Start", "Stop",
    /// "Reset", "Unprepare", "Close" (the destructor, if nobody closed before); of outputs
    /// "OpenOutput", "Write", "Pause", "Restart".
    std::vector<std::string> calls;

    /// Makes calls fail without effect (a close that fails has closed): by name ("Add": every one)
    /// or by name and count ("Add#3": the third since the script was made). The count goes on
    /// through re-opening.
    std::map<std::string, WaveResult> results;

    Text name;
    WaveFormat format;
    bool open = false;
    bool paused = false;            // outputs alone
    std::deque<WaveHeader*> queue;  // held by the device, in order
    std::set<WaveHeader*> prepared;

    /// Whether Reset posts the return of the queued buffers to the loop by itself. Off, a test
    /// calls FlushReset.
    bool flushOnReset = true;

    /// How often a call was made.
    [[nodiscard]] std::size_t Count(const std::string& call) const {
        return static_cast<std::size_t>(std::ranges::count(calls, call));
    }

    /// Notes the call and returns the result that the script holds for it.
    WaveResult Note(const std::string& call);

    WaveResult Prepare(WaveHeader& header);
    WaveResult Unprepare(WaveHeader& header);  // kFailed while queued
    WaveResult Enqueue(const std::string& call, WaveHeader& header);
};

/// The microphone of the fake.
struct FakeWaveIn : FakeWaveScript {
    /// Fills the next queued buffer with `bytes` (zero-filled behind them, cut to its length) and
    /// hands it over at once; false when none is queued.
    bool Deliver(ByteSpan bytes);

    /// Deliver of one buffer full of one 16-bit sample value.
    bool DeliverValue(std::int16_t sample);

    /// Returns every queued buffer at once, filled from `backlog` as far as that goes.
    void FlushReset();

    /// Tells the user that the device delivers no more.
    void Lose(WaveLoss reason) {
        if (events != nullptr) events->OnWaveInLost(reason);
    }

    Bytes backlog;  // what Reset hands out; what no buffer takes stays until the next Start
    std::uint64_t lostFrames = 0;
    WaveInEvents* events = nullptr;
};

/// The loudspeaker of the fake.
struct FakeWaveOut : FakeWaveScript {
    /// "Plays" the first queued buffer: appends its bytes to `played` and hands it back at once;
    /// false when none is queued or the device is paused.
    bool FinishOne();

    /// Returns every queued buffer at once, unplayed.
    void FlushReset();

    Bytes played;
    WaveOutEvents* events = nullptr;
};

/// A sound system without sound: one input and one output, driven by the test. The devices' events
/// come from within the test's own calls, but for the flush of Reset, which is posted.
class FakeWaveSystem : public WaveSystem {
  public:
    explicit FakeWaveSystem(EventLoop& loop) : loop_(loop) {}

    [[nodiscard]] std::vector<WaveDeviceInfo> Inputs() override {
        return {{u"Fake microphone", 2, true}};
    }
    [[nodiscard]] std::vector<WaveDeviceInfo> Outputs() override {
        return {{u"Fake loudspeaker", 2, true}};
    }
    [[nodiscard]] WaveResult OpenInput(const Text& name, const WaveFormat& format,
                                       WaveInEvents& events,
                                       std::unique_ptr<WaveInDevice>& device) override;
    [[nodiscard]] WaveResult OpenOutput(const Text& name, const WaveFormat& format,
                                        WaveOutEvents& events,
                                        std::unique_ptr<WaveOutDevice>& device) override;
    [[nodiscard]] WaveResult SetOutputVolume(std::uint16_t left, std::uint16_t right) override;

    FakeWaveIn in;
    FakeWaveOut out;
    std::uint16_t volumeLeft = 65535;
    std::uint16_t volumeRight = 65535;
    WaveResult volumeResult = WaveResult::kOk;  // of SetOutputVolume; a failure changes nothing

  private:
    EventLoop& loop_;
};

}  // namespace orma::test
