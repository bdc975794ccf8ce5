#include "platform/wave_in_contract.h"

#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

namespace orma::test {
namespace {

constexpr std::uint32_t kBufferLength = 4410;  // 50 ms of mono
constexpr std::uint8_t kUntouched = 0xAA;

std::unique_ptr<WaveInDevice> OpenMono(const WaveInRig& rig, WaveInEvents& events) {
    std::unique_ptr<WaveInDevice> device;
    EXPECT_EQ(rig.system.OpenInput(u"", Pcm16(1, 44100), events, device), WaveResult::kOk);
    return device;
}

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

void CheckBufferOwnership(const WaveInRig& rig) {
    WaveInUser user(kBufferLength);
    const auto device = OpenMono(rig, user);
    ASSERT_TRUE(device);
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

void CheckBuffersGoRoundInOrder(const WaveInRig& rig) {
    WaveInUser user(kBufferLength);
    const auto device = OpenMono(rig, user);
    ASSERT_TRUE(device);
    user.Begin(*device);
    ASSERT_TRUE(rig.run([&] { return user.order.size() >= 40; }));
    for (std::uint32_t i = 0; i < 40; ++i) {
        EXPECT_EQ(user.order[i], i % 16);
        EXPECT_EQ(user.recordedBytes[i], kBufferLength);
    }
    EXPECT_EQ(device->LostFrames(), 0u);
}

void CheckResetReturnsEveryBuffer(const WaveInRig& rig) {
    WaveInUser user(kBufferLength);
    const auto device = OpenMono(rig, user);
    ASSERT_TRUE(device);
    user.Begin(*device);
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

void CheckDestroyedDeviceIsSilent(const WaveInRig& rig) {
    WaveInUser user(kBufferLength);
    auto device = OpenMono(rig, user);
    ASSERT_TRUE(device);
    user.goRound = false;
    user.Begin(*device);
    user.onData = [&] { device.reset(); };
    ASSERT_TRUE(rig.run([&] { return !device; }));
    EXPECT_EQ(user.order.size(), 1u);

    WaveInUser second(kBufferLength);
    second.goRound = false;
    device = OpenMono(rig, second);
    ASSERT_TRUE(device);
    second.Begin(*device);
    ASSERT_EQ(device->Reset(), WaveResult::kOk);  // its returns are posted now
    EXPECT_EQ(device->Close(), WaveResult::kOk);
    int turns = 0;
    ASSERT_TRUE(rig.run([&] { return ++turns > 100; }));
    EXPECT_EQ(user.order.size(), 1u);
    EXPECT_TRUE(second.order.empty());
    EXPECT_TRUE(second.losses.empty());
}

}  // namespace

void CheckWaveInContract(const WaveInRig& rig) {
    CheckBufferOwnership(rig);
    CheckBuffersGoRoundInOrder(rig);
    CheckResetReturnsEveryBuffer(rig);
    CheckDestroyedDeviceIsSilent(rig);
}

}  // namespace orma::test
