#include "platform/wave_in_contract.h"

#include <chrono>

#include <gtest/gtest.h>

#include "platform/sound_files.h"
#include "platform/virtual_audio/virtual_wave_system.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

/// Everything that one adapter needs for the contract.
class RigOwner {
  public:
    virtual ~RigOwner() = default;
    [[nodiscard]] virtual WaveInRig Rig() = 0;
};

class VirtualFastRig : public RigOwner {
  public:
    VirtualFastRig() { WriteSoundFile(input_, 1, 44100, Ramp(44100)); }
    WaveInRig Rig() override {
        return {system_, [this](const auto& condition) { return RunUntil(loop_, condition); }};
    }

  private:
    TempFolder folder_;
    Text input_ = folder_.Path(u"in.wav");
    PosixEventLoop loop_;
    VirtualWaveSystem system_{loop_, {input_, u"", Pace::kFast, {}}};
};

class VirtualRealRig : public RigOwner {
  public:
    VirtualRealRig() { WriteSoundFile(input_, 1, 44100, Ramp(44100)); }
    WaveInRig Rig() override {
        return {system_, [this](const auto& condition) {
                    for (int ms = 0; ms < 10000; ++ms) {
                        if (condition()) return true;
                        now_ += std::chrono::milliseconds(1);
                        loop_.Advance(1);
                    }
                    return false;
                }};
    }

  private:
    TempFolder folder_;
    Text input_ = folder_.Path(u"in.wav");
    FakeEventLoop loop_;
    std::chrono::steady_clock::time_point now_;
    VirtualWaveSystem system_{loop_, {input_, u"", Pace::kReal, {}}, [this] { return now_; }};
};

class FakeRig : public RigOwner {
  public:
    WaveInRig Rig() override {
        return {system_, [this](const auto& condition) {
                    for (int turn = 0; turn < 1000; ++turn) {
                        if (condition()) return true;
                        loop_.RunPending();
                        if (system_.in.started) system_.in.DeliverValue(1);
                    }
                    return false;
                }};
    }

  private:
    FakeEventLoop loop_;
    FakeWaveSystem system_{loop_};
};

template <class Owner>
class WaveInContract : public ::testing::Test {
  protected:
    Owner owner_;
};

using Rigs = ::testing::Types<VirtualFastRig, VirtualRealRig, FakeRig>;
TYPED_TEST_SUITE(WaveInContract, Rigs);

TYPED_TEST(WaveInContract, BuffersBelongToOneSideAtATime) {
    CheckBufferOwnership(this->owner_.Rig());
}

TYPED_TEST(WaveInContract, BuffersGoRoundInOrder) {
    CheckBuffersGoRoundInOrder(this->owner_.Rig());
}

TYPED_TEST(WaveInContract, ResetReturnsEveryBufferAndTheDeviceStartsAgain) {
    CheckResetReturnsEveryBuffer(this->owner_.Rig());
}

TYPED_TEST(WaveInContract, ADestroyedDeviceIsSilent) {
    CheckDestroyedDeviceIsSilent(this->owner_.Rig());
}

}  // namespace
}  // namespace orma::test
