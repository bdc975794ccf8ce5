// What a take of the card holds at each rate, and what is told where the card fails, the simulated
// hardware proves end to end.

#include "audio/engine/pdaudio_in.h"

#include "audio/engine/engine_fixture.h"

namespace orma::test {
namespace {

constexpr int kPeriod = 2 * 2400;  // samples of 50 ms in stereo

/// A card at 48000 Hz whose ring a test fills sample by sample.
class ScriptedCard : public SpdifCard {
  public:
    Text Name() override { return u"PSI1:"; }
    bool Open() override { return true; }
    bool Control(SpdifControl code, ByteSpan, Answer& answer) override {
        answer.fill(0);
        if (code == SpdifControl::kReadRate) answer[0] = 2;
        return true;
    }
    ByteSpan Ring() const override { return ring; }
    std::uint32_t WritePosition() override { return write; }
    void SetReadPosition(std::uint32_t) override {}
    std::uint64_t LostFrames() const override { return 7; }
    void Wait(std::uint32_t) override {}
    void Close() override { closed = true; }

    /// Puts samples into the ring: each is its number, from 1 on, in all three bytes.
    void Make(int samples) {
        for (; samples > 0; --samples) {
            const auto value = static_cast<std::uint8_t>(++made);
            for (const int byte : {0, 0x40, 0x80})
                ring[write++ % kRingBytes] = static_cast<std::uint8_t>(value + byte);
            write %= kRingBytes;
        }
    }

    bool closed = false;
    Bytes ring = Bytes(kRingBytes);
    std::uint32_t write = 0;
    int made = 0;
};

class PDAudioInTest : public RecorderTest {
  protected:
    PDAudioInTest() { spdif = &input_; }
    ~PDAudioInTest() override { recorder.reset(); }  // before its card

    void Pass(std::uint32_t ms) {
        for (; ms > 0; ms -= PDAudioIn::kPollMs) {
            clock.ticks += PDAudioIn::kPollMs;
            loop.Advance(PDAudioIn::kPollMs);
        }
    }

    ScriptedCard psi_;
    PDAudioIn input_{&psi_, loop, clock, report};
};

TEST_F(PDAudioInTest, ATakeHoldsEverySampleOfTheCardUntilItsStopUnprocessed) {
    audio.stereo = true;
    input.SetInputGain(20);
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(waves.in.format, (WaveFormat{2, 44100, 176400, 4, 16}));
    EXPECT_EQ(waves.in.Count("Add"), 0U);
    Engine().WavStartRecordSaving();
    audio.bitsPerSample = 99;  // left by a file that was opened meanwhile
    psi_.Make(kPeriod);        // the buffer that begins the take
    Pass(10);
    ASSERT_TRUE(Engine().IsSaving());
    EXPECT_EQ(audio.sampleRate, 48000U);
    EXPECT_EQ(audio.bitsPerSample, 24);
    for (int period = 0; period < 20; ++period) {
        psi_.Make(kPeriod - 1);  // the card writes sample by sample
        psi_.write += 2;
        Pass(10);
        psi_.write -= 2;
        psi_.Make(1);
        Pass(10);
    }
    waves.in.Lose(WaveLoss::kVanished);  // the microphone beside the card does not matter
    // The program falls behind: more sound waits than sixteen buffers hold.
    psi_.Make(20 * kPeriod + 7);
    Engine().WavStopRecording();
    EXPECT_EQ(writers.blocks.size(), 20U) << "never from within a call";
    loop.RunPending();
    EXPECT_TRUE(psi_.closed);
    EXPECT_TRUE(boxes.shown.empty());
    ASSERT_EQ(writers.blocks.size(), 41U);
    ExpectKept(41);
    int sample = kPeriod;
    for (std::size_t block = 0; block < 40; ++block)
        for (std::size_t at = 0; at < writers.blocks[block].size(); at += 3)
            ASSERT_EQ(writers.blocks[block][at], static_cast<std::uint8_t>(++sample))
                << block << " " << at;
    EXPECT_EQ(writers.blocks[40][18], static_cast<std::uint8_t>(sample + 7));
    EXPECT_EQ(writers.blocks[40][21], 0);
}

TEST_F(PDAudioInTest, ACardThatDeliversNothingEndsTheTakeAfterAWhile) {
    clock.ticks = 0xFFFFFF00;  // the counter wraps
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Pass(1990);
    psi_.Make(2);
    Pass(2000);
    EXPECT_TRUE(Engine().IsActive());
    Pass(1000);
    EXPECT_FALSE(Engine().IsActive());
    EXPECT_EQ(boxes.Texts(), (Texts{u"Time-out", u"Sound input lost"}));
    EXPECT_EQ(Engine().LostFrames(), 7U);
}

}  // namespace
}  // namespace orma::test
