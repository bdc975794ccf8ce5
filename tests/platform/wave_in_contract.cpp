#include "platform/wave_in_contract.h"

#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

namespace orma::test {
namespace {

constexpr std::uint32_t kBufferLength = 4410;  // 50 ms of mono
constexpr std::uint8_t kUntouched = 0xAA;

}  // namespace

WaveFormat Pcm16(std::uint16_t channels, std::uint32_t hz) {
    const auto align = static_cast<std::uint16_t>(2 * channels);
    return {channels, hz, hz * align, align, 16};
}

bool RunUntil(PosixEventLoop& loop, const std::function<bool()>& condition, std::uint32_t limitMs) {
    bool held = false;
    const auto look = loop.StartTimer(1, [&] {
        held = condition();
        if (held) loop.Quit(0);
    });
    const auto limit = loop.StartTimer(limitMs, [&] { loop.Quit(0); });
    loop.Run();
    return held;
}

WaveInUser::WaveInUser(std::uint32_t bufferLength)
    : memory_(headers.size(), Bytes(bufferLength, kUntouched)) {
    for (std::uint32_t i = 0; i < headers.size(); ++i)
        headers[i] = {memory_[i].data(), bufferLength, 0, i};
}

void WaveInUser::OnWaveInData(WaveHeader& header) {
    EXPECT_FALSE(inCall_) << "an event came from within a device call";
    order.push_back(header.user);
    recordedBytes.push_back(header.bytesRecorded);
    heard.insert(heard.end(), header.data, header.data + header.bytesRecorded);
    const ByteSpan rest = ByteSpan(header.data, header.bufferLength).subspan(header.bytesRecorded);
    EXPECT_TRUE(std::all_of(rest.begin(), rest.end(), [](std::uint8_t byte) { return byte == 0; }))
        << "buffer " << header.user << " is not zero behind byte " << header.bytesRecorded;
    std::fill_n(header.data, header.bufferLength, kUntouched);
    if (goRound && device_ != nullptr) {
        EXPECT_EQ(Call([&] { return device_->Add(header); }), WaveResult::kOk);
    }
    onData();
}

void WaveInUser::Begin(WaveInDevice& opened) {
    device_ = &opened;
    for (WaveHeader& header : headers) {
        ASSERT_EQ(Call([&] { return opened.Prepare(header); }), WaveResult::kOk);
        ASSERT_EQ(Call([&] { return opened.Add(header); }), WaveResult::kOk);
    }
    ASSERT_EQ(Call([&] { return opened.Start(); }), WaveResult::kOk);
}

WaveResult WaveInUser::Call(const std::function<WaveResult()>& call) {
    const bool outer = std::exchange(inCall_, true);
    const WaveResult result = call();
    inCall_ = outer;
    return result;
}

namespace {

/// An input of one channel, its user, and what is asked of them.
struct Input {
    explicit Input(const WaveInRig& made) : rig(made) {
        EXPECT_EQ(rig.system.OpenInput(u"", Pcm16(1, 44100), user, device), WaveResult::kOk);
    }

    void CheckBufferOwnership() {
        WaveHeader& header = user.headers[0];
        EXPECT_EQ(device->Add(header), WaveResult::kNotPrepared);
        EXPECT_EQ(device->Unprepare(header), WaveResult::kNotPrepared);
        ASSERT_EQ(device->Prepare(header), WaveResult::kOk);
        ASSERT_EQ(device->Add(header), WaveResult::kOk);
        EXPECT_EQ(device->Add(header), WaveResult::kFailed);
        EXPECT_EQ(device->Unprepare(header), WaveResult::kFailed);

        user.goRound = false;
        ASSERT_EQ(device->Reset(), WaveResult::kOk);
        EXPECT_EQ(device->Unprepare(header), WaveResult::kFailed) << "it is still on its way back";
        ASSERT_TRUE(rig.run([&] { return user.order.size() == 1; }));
        EXPECT_EQ(device->Unprepare(header), WaveResult::kOk);
    }

    void CheckBuffersGoRoundUntilReset() {
        user.Begin(*device);
        ASSERT_TRUE(rig.run([&] { return user.order.size() >= 40; }));
        for (std::uint32_t i = 0; i < 40; ++i) {
            EXPECT_EQ(user.order[i], i % 16);
            EXPECT_EQ(user.recordedBytes[i], kBufferLength);
        }
        EXPECT_EQ(device->LostFrames(), 0u);
        for (int run = 1; run <= 2; ++run) {
            const std::size_t before = user.order.size();
            ASSERT_TRUE(rig.run([&] { return user.order.size() >= before + 4; }));
            user.goRound = false;
            ASSERT_EQ(user.Call([&] { return device->Stop(); }), WaveResult::kOk);
            const std::size_t returned = user.order.size();
            ASSERT_EQ(user.Call([&] { return device->Reset(); }), WaveResult::kOk);
            ASSERT_TRUE(rig.run([&] { return user.order.size() == returned + 16; }));
            for (std::size_t i = 1; i < 16; ++i) {
                EXPECT_EQ(user.order[returned + i], (user.order[returned] + i) % 16);
                if (user.recordedBytes[returned + i] == 0) continue;
                EXPECT_EQ(user.recordedBytes[returned + i - 1], kBufferLength)
                    << "sound behind a buffer that was not full";
            }
            EXPECT_EQ(user.recordedBytes.back(), 0u);

            user.goRound = true;
            for (WaveHeader& header : user.headers)
                ASSERT_EQ(device->Add(header), WaveResult::kOk);
            ASSERT_EQ(device->Start(), WaveResult::kOk);
        }
    }

    void CheckDestroyedFromItsOwnEvent() {
        user.goRound = false;
        user.Begin(*device);
        user.onData = [&] { device.reset(); };
        ASSERT_TRUE(rig.run([&] { return !device; }));
        ExpectSilence(1);
    }

    void CheckClosedAfterReset() {
        user.Begin(*device);
        ASSERT_EQ(device->Reset(), WaveResult::kOk);  // its returns are posted now
        EXPECT_EQ(device->Close(), WaveResult::kOk);
        ExpectSilence(0);
    }

    /// Nothing comes behind the first events.
    void ExpectSilence(std::size_t events) {
        int turns = 0;
        ASSERT_TRUE(rig.run([&] { return ++turns > 100; }));
        EXPECT_EQ(user.order.size(), events);
        EXPECT_TRUE(user.losses.empty());
    }

    const WaveInRig& rig;
    WaveInUser user{kBufferLength};
    std::unique_ptr<WaveInDevice> device;
};

}  // namespace

void CheckWaveInContract(const WaveInRig& rig) {
    Input(rig).CheckBufferOwnership();
    Input(rig).CheckBuffersGoRoundUntilReset();
    Input(rig).CheckDestroyedFromItsOwnEvent();
    Input(rig).CheckClosedAfterReset();
}

}  // namespace orma::test
