#include <gtest/gtest.h>

#include "platform/virtual_audio/virtual_wave_system.h"
#include "platform/wave_in_contract.h"
#include "support/fake_event_loop.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

TEST(VirtualAudio, KeepsTheContractOfAWaveInputAtBothPaces) {
    TempFolder folder;
    VirtualAudioOptions options;
    options.inputFile = folder.Path(u"in.wav");
    options.pace = Pace::kFast;
    WriteSoundFile(options.inputFile, 1, 44100, Ramp(44100));
    PosixEventLoop loop;
    VirtualWaveSystem fast(loop, options);
    CheckWaveInContract({fast, [&](const auto& condition) { return RunUntil(loop, condition); }});

    // A loop and a clock that only the test moves.
    options.pace = Pace::kReal;
    FakeEventLoop slowLoop;
    std::chrono::steady_clock::time_point now;
    VirtualWaveSystem real(slowLoop, options, [&] { return now; });
    CheckWaveInContract({real, [&](const auto& condition) {
                             for (int ms = 0; ms < 10000 && !condition(); ++ms) {
                                 now += std::chrono::milliseconds(1);
                                 slowLoop.Advance(1);
                             }
                             return condition();
                         }});
}

}  // namespace
}  // namespace orma::test
