#include "audio/engine/pdaudio_in.h"

#include <gtest/gtest.h>

#include "audio/engine/engine_fixture.h"
#include "audio/engine/spdif_format.h"

namespace orma::test {
namespace {

/// A card whose ring a test fills sample by sample.
class ScriptedCard : public SpdifCard {
  public:
    Text Name() override { return u"PSI1:"; }
    bool Open() override {
        controls.push_back("open");
        return opens;
    }
    bool Control(SpdifControl code, ByteSpan input, Answer& answer) override {
        std::string sentence = Format("%X", static_cast<unsigned>(code));
        for (const std::uint8_t byte : input)
            sentence += Format(" %X", unsigned{byte});
        controls.push_back(sentence);
        answer.fill(0xEE);
        StoreLe(answer.data(), std::uint16_t{0});
        if (code == SpdifControl::kReadRegister) StoreLe(answer.data(), std::uint16_t{0x1F8});
        if (code == SpdifControl::kReadRate) answer[0] = ++rateReads < lockedAt ? 15 : rateCode;
        if (code == SpdifControl::kReadStatus) StoreLe(answer.data(), status);
        return code != failing;
    }
    ByteSpan Ring() const override { return ring; }
    std::uint32_t WritePosition() override { return write; }
    void SetReadPosition(std::uint32_t position) override { read = position; }
    std::uint64_t LostFrames() const override { return lost; }
    void Wait(std::uint32_t ms) override { waited += ms; }
    void Close() override { controls.push_back("close"); }

    /// Puts samples into the ring: each is its number, from 1 on, in all three bytes.
    void Make(int samples) {
        for (; samples > 0; --samples) {
            const auto value = static_cast<std::uint8_t>(++made);
            for (const int byte : {0, 0x40, 0x80})
                ring[write++ % kRingBytes] = static_cast<std::uint8_t>(value + byte);
            write %= kRingBytes;
        }
    }

    Strings controls;
    bool opens = true;
    std::optional<SpdifControl> failing;
    int rateReads = 0;
    int lockedAt = 1;
    std::uint8_t rateCode = 2;
    std::uint16_t status = 0;
    std::uint32_t waited = 0;
    Bytes ring = Bytes(kRingBytes);
    std::uint32_t write = 0;
    std::uint32_t read = 0;
    std::uint64_t lost = 0;
    int made = 0;
};

class Listener : public WaveInEvents {
  public:
    void OnWaveInData(WaveHeader& header) override {
        EXPECT_EQ(header.bytesRecorded, header.bufferLength);
        users.push_back(header.user);
        const ByteSpan bytes(header.data, header.bufferLength);
        heard.insert(heard.end(), bytes.begin(), bytes.end());
    }
    void OnWaveInLost(WaveLoss reason) override { losses.push_back(reason); }

    std::vector<std::uint32_t> users;
    Bytes heard;
    std::vector<WaveLoss> losses;
};

class PDAudioInTest : public RecorderTest {
  protected:
    ~PDAudioInTest() override { recorder.reset(); }  // before its card

    SpdifResult Start(bool mp2, std::uint16_t channels) {
        return input_.PDAudioStart(mp2, channels, 2, listener_, format_);
    }

    /// Adds a buffer of `bytes` bytes.
    bool Add(std::uint32_t bytes) {
        memory_.emplace_back(bytes, std::uint8_t{0xAA});
        headers_.push_back(
            {memory_.back().data(), bytes, 0, static_cast<std::uint32_t>(headers_.size())});
        return input_.PDAudioInAddBuffer(headers_.back());
    }

    void Pass(std::uint32_t ms) {
        for (; ms > 0; ms -= PDAudioIn::kPollMs) {
            clock.ticks += PDAudioIn::kPollMs;
            loop.Advance(PDAudioIn::kPollMs);
        }
    }

    ScriptedCard psi_;
    PDAudioIn input_{&psi_, loop, clock, report};
    Listener listener_;
    SpdifFormat format_;
    std::deque<Bytes> memory_;
    std::deque<WaveHeader> headers_;
};

TEST(SpdifFormat, FollowsTheRate) {
    const std::uint32_t rates[] = {44100, 0, 48000, 32000, 0,      0, 0,      0,
                                   88200, 0, 96000, 0,     176400, 0, 192000, 0};
    for (std::uint8_t code = 0; code < 16; ++code)
        EXPECT_EQ(SpdifRateOfCode(code), rates[code]) << int{code};

    using enum SpdifResult;
    const struct {
        std::uint32_t rate;
        bool mp2;
        SpdifResult result;
        std::uint32_t bytes;  // of a stereo period of 50 ms
    } rows[] = {
        {44100, false, kCapturing, 2205 * 6}, {44100, true, kCapturing, 2205 * 4},
        {48000, false, kCapturing, 2400 * 6}, {48000, true, kCapturing, 2400 * 4},
        {96000, false, kCapturing, 4800 * 6}, {96000, true, kRateNotForMp2, 0},
        {88100, false, kCapturing, 4410 * 6}, {88100, true, kRateNotForMp2, 0},
        {88200, false, kNoSignal, 0},         {32000, true, kNoSignal, 0},
        {192000, false, kNoSignal, 0},        {0, false, kNoSignal, 0},
    };
    for (const auto& row : rows) {
        SpdifFormat format;
        EXPECT_EQ(SpdifFormatOfRate(row.rate, row.mp2, 2, 2, format), row.result) << row.rate;
        if (row.result != kCapturing) continue;
        EXPECT_EQ(format.sampleRate, row.rate);
        EXPECT_EQ(format.bitsPerSample, row.mp2 ? 16 : 24);
        EXPECT_EQ(format.bufferLength, row.bytes) << row.rate;
    }
}

TEST_F(PDAudioInTest, StartsTheCardByItsControls) {
    input_.SetInputSelection(3);
    psi_.lockedAt = 3;
    ASSERT_EQ(Start(false, 1), SpdifResult::kCapturing);
    const std::string ring = "1B0430 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0";
    EXPECT_EQ(psi_.controls, (Strings{"open", "1B0454 0 0", "1B0450 F0 1", ring, ring, "1B0420 3 0",
                                      "1B041C 0 0", "1B041C 0 0", "1B041C 0 0", "1B0414 0 0"}));
    EXPECT_EQ(psi_.waited, 20u);
    EXPECT_EQ(format_.bufferLength, 7200u);
}

TEST_F(PDAudioInTest, TellsWhyItDoesNotStartAndClosesTheCard) {
    spdif = &input_;
    const auto refused = [&] {
        boxes.shown.clear();
        psi_.rateReads = 0;
        EXPECT_EQ(Engine().WavStartRecording(), 1);
        EXPECT_TRUE(Engine().IsClosed());
        return boxes.Texts();
    };
    psi_.opens = false;
    EXPECT_EQ(refused(), Texts{u"No driver installed"});
    EXPECT_EQ(psi_.controls, Strings{"open"});
    psi_.opens = true;

    psi_.failing = SpdifControl::kSelectInput;
    EXPECT_EQ(refused(), Texts{u"No PDAudio card present"});
    EXPECT_EQ(psi_.controls.back(), "close");
    psi_.failing.reset();

    psi_.lockedAt = 11;
    EXPECT_EQ(refused(), Texts{u"No valid digital input signal"});
    EXPECT_EQ(psi_.rateReads, 10);
    psi_.lockedAt = 1;
    psi_.rateCode = 10;
    audio.mp2 = true;
    EXPECT_EQ(refused(), Texts{u"Sample rate not supported at mp2-recording"});
    audio.mp2 = false;
    waves.in.results["OpenInput"] = WaveResult::kNoDevice;
    EXPECT_EQ(refused(), Texts{u"waveInOpen"});
    EXPECT_EQ(psi_.controls.back(), "close");

    psi_.status = 0x100;
    EXPECT_EQ(refused(),
              (Texts{u"Record Fail no S/PDIF input\n", u"No valid digital input signal"}));
    EXPECT_EQ(boxes.shown[0].title, u"PDAudio");
    EXPECT_EQ(boxes.shown[0].icon, BoxIcon::kInformation);
    EXPECT_EQ(psi_.controls.back(), "close");

    PDAudioIn none(nullptr, loop, clock, report);
    EXPECT_EQ(none.PDAudioStart(false, 1, 2, listener_, format_), SpdifResult::kNoDriver);
}

TEST_F(PDAudioInTest, CopiesTheUpperBytesOfTheChannelsThatAreRecorded) {
    struct Row {
        bool mp2;
        std::uint16_t channels;
        Bytes heard;
    };
    for (const Row& row :
         {Row{false, 2, {1, 0x41, 0x81, 2, 0x42, 0x82, 3, 0x43, 0x83, 4, 0x44, 0x84}},
          Row{false, 1, {1, 0x41, 0x81, 3, 0x43, 0x83}},
          Row{true, 2, {0x41, 0x81, 0x42, 0x82, 0x43, 0x83, 0x44, 0x84}},
          Row{true, 1, {0x41, 0x81, 0x43, 0x83}}}) {
        psi_.write = 0;
        psi_.made = 0;
        listener_.heard.clear();
        ASSERT_EQ(Start(row.mp2, row.channels), SpdifResult::kCapturing);
        ASSERT_TRUE(Add(static_cast<std::uint32_t>(row.heard.size())));
        psi_.Make(3);  // the card writes sample by sample
        psi_.write += 2;
        Pass(10);
        psi_.write -= 2;
        psi_.Make(1);
        Pass(10);
        EXPECT_EQ(listener_.heard, row.heard);
        EXPECT_EQ(psi_.read, row.channels == 2 ? 12u : 9u);
    }
}

TEST_F(PDAudioInTest, RefusesTheSeventeenthBufferUntilAPlaceIsFree) {
    ASSERT_EQ(Start(false, 2), SpdifResult::kCapturing);
    for (std::uint32_t place = 0; place < 16; ++place)
        ASSERT_TRUE(Add(30));
    EXPECT_FALSE(Add(30));
    psi_.Make(10);
    Pass(10);
    EXPECT_TRUE(Add(30));
    EXPECT_FALSE(Add(30));
    psi_.Make(10 * 15);
    Pass(10);
    EXPECT_EQ(listener_.users.size(), 16U);
    EXPECT_EQ(listener_.heard.back(), static_cast<std::uint8_t>(160 + 0x80));
}

TEST_F(PDAudioInTest, KeepsWhatWaitsInTheRingWhenItStops) {
    ASSERT_EQ(Start(false, 2), SpdifResult::kCapturing);
    ASSERT_TRUE(Add(30));
    ASSERT_TRUE(Add(30));
    psi_.Make(25);
    input_.PDAudioStop();
    EXPECT_EQ(psi_.controls.back(), "1B0418 0 0");
    EXPECT_TRUE(listener_.users.empty()) << "never from within a call";
    EXPECT_TRUE(input_.IsReturning());
    loop.RunPending();
    EXPECT_FALSE(input_.IsReturning());
    EXPECT_TRUE(input_.HasMore());
    ASSERT_TRUE(Add(30));  // the rest, zeros behind it
    loop.RunPending();
    EXPECT_FALSE(input_.HasMore());
    ASSERT_EQ(listener_.heard.size(), 90u);
    EXPECT_EQ(listener_.heard[72], 25);
    EXPECT_EQ(Bytes(listener_.heard.begin() + 75, listener_.heard.end()), Bytes(15, 0));

    ASSERT_TRUE(Add(30));
    input_.PDAudioClose();
    loop.RunPending();
    EXPECT_EQ(listener_.users.size(), 3u);
}

TEST_F(PDAudioInTest, ReportsACardThatDeliversNothing) {
    psi_.lost = 7;
    ASSERT_EQ(Start(false, 2), SpdifResult::kCapturing);
    clock.ticks = 0xFFFFFF00;  // the counter wraps
    psi_.Make(2);
    Pass(1990);
    EXPECT_TRUE(listener_.losses.empty()) << "without a buffer the samples wait";
    ASSERT_TRUE(Add(6));
    Pass(2000);
    EXPECT_TRUE(listener_.losses.empty());
    Pass(3000);
    EXPECT_EQ(listener_.losses, std::vector{WaveLoss::kStalled});
    EXPECT_EQ(boxes.Texts(), Texts{u"Time-out"});
    EXPECT_EQ(input_.LostFrames(), 7u);
}

TEST_F(PDAudioInTest, ABufferThatFindsNoPlaceIsReportedAndTheTakeGoesOn) {
    spdif = &input_;
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Engine().WavStartRecordSaving();
    WaveHeader stray{memory_.emplace_back(7200).data(), 7200, 0, 3};
    EXPECT_FALSE(input_.PDAudioInAddBuffer(stray)) << "the engine's sixteen are there";
    psi_.Make(2 * 2400);
    Pass(10);
    writer.whileWriting = [&] {
        EXPECT_TRUE(input_.PDAudioInAddBuffer(stray));
        writer.whileWriting = {};
    };
    psi_.Make(2 * 2400 * 2);
    Pass(20);
    EXPECT_EQ(boxes.Texts(), Texts{u"PDAudioInAddBuffer"});
    EXPECT_TRUE(Engine().IsSaving());
    EXPECT_EQ(writer.blocks.size(), 2u);
}

TEST_F(PDAudioInTest, ATakeHoldsEverySampleOfTheCardUntilItsStopUnprocessed) {
    audio.stereo = true;
    input.SetInputGain(20);
    spdif = &input_;
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(waves.in.format, (WaveFormat{2, 44100, 176400, 4, 16}));
    EXPECT_EQ(waves.in.Count("Add"), 0U);
    Engine().WavStartRecordSaving();
    audio.bitsPerSample = 99;  // left by a file that was opened meanwhile
    psi_.Make(2 * 2400);       // the buffer that begins the take
    Pass(10);
    ASSERT_TRUE(Engine().IsSaving());
    EXPECT_EQ(audio.sampleRate, 48000U);
    EXPECT_EQ(audio.bitsPerSample, 24);
    const int before = psi_.made;
    for (int period = 0; period < 20; ++period) {
        psi_.Make(2 * 2400);
        Pass(10);
    }
    waves.in.Lose(WaveLoss::kVanished);  // the microphone beside the card does not matter
    // The program falls behind: more sound waits than sixteen buffers hold.
    psi_.Make(2 * 2400 * 20 + 7);
    Engine().WavStopRecording();
    loop.RunPending();
    ASSERT_TRUE(Engine().IsClosed());
    EXPECT_EQ(psi_.controls.back(), "close");
    EXPECT_EQ(takes.calls, (Strings{"prepare", "finished"}));
    EXPECT_TRUE(boxes.shown.empty());
    ASSERT_EQ(writer.blocks.size(), 41U);
    ASSERT_EQ(sheet.levels.size(), 41U);
    int sample = before;
    for (std::size_t block = 0; block < 40; ++block)
        for (std::size_t at = 0; at < writer.blocks[block].size(); at += 3)
            ASSERT_EQ(writer.blocks[block][at], static_cast<std::uint8_t>(++sample))
                << block << " " << at;
    EXPECT_EQ(writer.blocks[40][18], static_cast<std::uint8_t>(sample + 7));
    EXPECT_EQ(writer.blocks[40][21], 0);
}

}  // namespace
}  // namespace orma::test
