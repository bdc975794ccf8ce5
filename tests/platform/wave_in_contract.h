#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "base/bytes.h"
#include "platform/event_loop.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/wave.h"

namespace orma::test {

/// 16-bit format of one or two channels.
[[nodiscard]] WaveFormat Pcm16(std::uint16_t channels, std::uint32_t hz);

/// Runs the loop until the condition holds; false when `limitMs` pass before.
bool RunUntil(PosixEventLoop& loop, const std::function<bool()>& condition,
              std::uint32_t limitMs = 10000);

/// What a contract check needs of an adapter: a system with an input that hears something, and a
/// way to let time pass until a condition holds (false: it never did).
struct WaveInRig {
    WaveSystem& system;
    std::function<bool(const std::function<bool()>&)> run;
};

/// The user of an input device as the recording engine is one: sixteen buffers that go round, and
/// what came in them.
class WaveInUser : public WaveInEvents {
  public:
    explicit WaveInUser(std::uint32_t bufferLength);

    void OnWaveInData(WaveHeader& header) override;
    void OnWaveInLost(WaveLoss reason) override { losses.push_back(reason); }

    /// Prepares and adds all buffers and starts.
    void Begin(WaveInDevice& opened);

    /// Makes a device call during which no event may come.
    WaveResult Call(const std::function<WaveResult()>& call);

    std::array<WaveHeader, 16> headers{};
    std::vector<std::uint32_t> order;          // the buffers' numbers as they came back
    std::vector<std::uint32_t> recordedBytes;  // of each of them
    Bytes heard;                               // what was recorded, in one piece
    std::vector<WaveLoss> losses;
    bool goRound = true;                   // a buffer that came back is added again
    std::function<void()> onData = [] {};  // after each buffer

  private:
    WaveInDevice* device_ = nullptr;
    std::vector<Bytes> memory_;
    bool inCall_ = false;
};

/// What every adapter promises of an input. Refused: adding what is not prepared or already queued,
/// and unpreparing what the device holds. Full buffers come back in the order of adding, again and
/// again, and never from within a call. Reset returns every queued buffer by events, zeros behind
/// what was recorded; the device can be started again afterwards. A destroyed device tells nothing
/// more, and may be destroyed from within its own event.
void CheckWaveInContract(const WaveInRig& rig);

}  // namespace orma::test
