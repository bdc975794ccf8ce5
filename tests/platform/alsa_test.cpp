#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "platform/alsa/alsa_cards.h"
#include "platform/alsa/alsa_headset.h"
#include "platform/alsa/alsa_mixer.h"
#include "platform/alsa/alsa_recorder.h"
#include "platform/alsa/alsa_spdif_card.h"
#include "platform/alsa/digital_frames.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"

namespace orma::test {
namespace {

constexpr const char* kCards =
    " 0 [PCH            ]: HDA-Intel - HDA Intel PCH\n"
    "                      HDA Intel PCH at 0xf7f10000 irq 32\n"
    " 3 [One            ]: USB-Audio - MAYCOM One\n"
    "                      MAYCOM One at usb-0000:00:14.0-1, full speed\n";
constexpr const char* kPcms =
    "00-00: ALC892 Analog : ALC892 Analog : playback 1 : capture 1\n"
    "00-01: ALC892 Digital : ALC892 Digital : playback 1\n"
    "03-02: USB Audio IEC958 : USB Audio IEC958 : capture 1\n";

TEST(AlsaListings, NameCardsAndTheDigitalInput) {
    const auto cards = ParseAlsaCards(kCards);
    ASSERT_EQ(cards.size(), 2u);
    EXPECT_EQ(cards[0].name, "HDA Intel PCH");
    EXPECT_EQ(cards[1].number, 3);
    EXPECT_EQ(cards[1].name, "MAYCOM One");
    const auto captures = ParseAlsaCaptures(kPcms);
    ASSERT_EQ(captures.size(), 2u);
    const auto digital = FindDigitalInput(captures);
    ASSERT_TRUE(digital);
    EXPECT_EQ(digital->card, 3);
    EXPECT_EQ(digital->device, 2);
    EXPECT_FALSE(FindDigitalInput({captures[0]}));
    EXPECT_TRUE(ParseAlsaCaptures("00-\nx: capture 1").empty());
}

TEST(AlsaJacks, TellAboutAHeadset) {
    const std::tuple<std::vector<AlsaJack>, int, int> cases[] = {
        {{{"Mic Jack", true}, {"Headphone Phantom Jack", true}}, -1, -1},
        {{{"Headphone Jack", false}, {"Headphone Jack", true}}, 1, 1},
        {{{"Headset Mic Jack", false}, {"Headphone Jack", true}}, 0, 1}};
    for (const auto& [jacks, state, alternative] : cases) {
        EXPECT_EQ(HeadsetStateOf(jacks, false), state);
        EXPECT_EQ(HeadsetStateOf(jacks, true), alternative);
    }
}

TEST(AlsaMixer, MovesTheBestElementOfTheSide) {
    const std::vector<MixerElement> elements{{"Speaker", false, true},
                                             {"Boost", true, false},
                                             {"Mic", true, true},
                                             {"PCM", false, true}};
    EXPECT_EQ(PickMixerElement(elements, MixerSide::kCapture), 2u);
    EXPECT_EQ(PickMixerElement(elements, MixerSide::kPlayback), 3u);
}

TEST(DigitalFrames, KeepTheUpper24Bits) {
    const auto packed = [](DigitalLayout layout, const Bytes& from) {
        Bytes to(from.size() / BytesOfSample(layout) * 3);
        PackDigitalSamples(layout, from, to);
        return to;
    };
    const Bytes wanted{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(packed(DigitalLayout::k24In3Bytes, wanted), wanted);
    EXPECT_EQ(packed(DigitalLayout::k24In4Bytes, {1, 2, 3, 99, 4, 5, 6, 99}), wanted);
    EXPECT_EQ(packed(DigitalLayout::k24InUpper32, {99, 1, 2, 3, 99, 4, 5, 6}), wanted);
    EXPECT_EQ(packed(DigitalLayout::k16, {2, 3, 5, 6}), (Bytes{0, 2, 3, 0, 5, 6}));

    EXPECT_EQ(DigitalRateOfStatus(Bytes{0, 0, 0, 0xF2, 0}), 48000u);
    EXPECT_EQ(DigitalRateOfStatus(Bytes{0, 0, 0, 1, 0}), 0u);
    EXPECT_EQ(DigitalRateOfStatus(Bytes{1, 0, 0, 2, 0}), 0u) << "professional format";
}

TEST(AlsaHardware, ThatIsAbsentIsNotSpokenOf) {
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(AlsaSpdifCard({.pcm = "hw:27,3"}).Open());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

/// The adapters on real ALSA devices: those of the sound server's plug-in.
struct AlsaOnPulse : testing::Test {
    AlsaOnPulse() {
        EXPECT_TRUE(server.IsRunning()) << "pulseaudio does not start";
        std::ofstream(folder.Native(u"asound.conf"))
            << "</usr/share/alsa/alsa.conf>\n"
               "pcm.digital { type pulse device mic.monitor }\n"
               "pcm.!plughw { @args [ CARD ] @args.CARD { type string } type pulse device mic }\n"
               "ctl.!hw { @args [ CARD ] @args.CARD { type string } type pulse }\n";
        std::ofstream(folder.Native(u"cards")) << kCards;
        ::setenv("ALSA_CONFIG_PATH", folder.Native(u"asound.conf").c_str(), 1);
    }
    ~AlsaOnPulse() override { ::unsetenv("ALSA_CONFIG_PATH"); }

    PulseServer server;
    TempFolder folder;
};

TEST_F(AlsaOnPulse, CapturesADigitalInputBitByBit) {
    const Text file = folder.Path(u"speech.wav");
    const auto speech = Ramp(44100);
    WriteSoundFile(file, 1, 44100, speech);

    const auto ask = [](AlsaSpdifCard& card, SpdifControl code, ByteSpan input) {
        SpdifCard::Answer answer{};
        EXPECT_TRUE(card.Control(code, input, answer));
        return answer[0];
    };
    AlsaSpdifCard unknown({.pcm = "digital"});
    ASSERT_TRUE(unknown.Open());
    EXPECT_EQ(SpdifRateOfCode(ask(unknown, SpdifControl::kReadRate, Bytes{0, 0})), 0u)
        << "a rate that neither signal nor device tells";
    EXPECT_NE(ask(unknown, SpdifControl::kReadStatus, Bytes{0, 0}), 0);
    unknown.Close();

    AlsaSpdifCard card({.pcm = "digital", .rate = 44100});
    ASSERT_TRUE(card.Open());
    EXPECT_FALSE(card.Open()) << "it is open";
    ask(card, SpdifControl::kSetRing, SpdifRingBlock{}.Encode());
    ask(card, SpdifControl::kSelectInput, Bytes{0, 0});
    EXPECT_EQ(SpdifRateOfCode(ask(card, SpdifControl::kReadRate, Bytes{0, 0})), 44100u);
    EXPECT_EQ(ask(card, SpdifControl::kReadStatus, Bytes{0, 0}), 0);

    const pid_t player = server.Speak(file);
    // The program is away for longer than the ring alone could bear.
    std::this_thread::sleep_for(std::chrono::milliseconds(1900));
    EXPECT_EQ(PulseServer::Wait(player), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    ask(card, SpdifControl::kStop, Bytes{0, 0});
    std::vector<std::int16_t> left;
    std::uint32_t read = 0;
    for (std::uint32_t write = card.WritePosition(); read != write; write = card.WritePosition()) {
        for (; read != write; read = (read + 6) % SpdifCard::kRingBytes)
            left.push_back(LoadLe<std::int16_t>(&card.Ring()[read + 1]));
        card.SetReadPosition(read);
    }
    EXPECT_EQ(card.LostFrames(), 0u);
    EXPECT_GT(left.size(), 2u * 44100);
    EXPECT_FALSE(std::ranges::search(left, speech).empty())
        << "the speech is not in what was captured";
}

TEST_F(AlsaOnPulse, ARecorderIsACardWhoseMixerFollowsTheCodes) {
    AlsaRecorder recorder(ToUtf8(folder.Path()));
    EXPECT_EQ(recorder.OutputNames(),
              (std::vector<Text>{u"default", u"HDA Intel PCH", u"MAYCOM One"}));
    const auto send = [&](RecorderMessage subCode, std::uint32_t value) {
        std::array<std::uint8_t, 4> code{};
        StoreLe(code.data(), value);
        return recorder.Send(RecorderLine::kInput, kRecorderDriverMessage, subCode, code);
    };
    EXPECT_EQ(send(RecorderMessage::kGain, 190), WaveResult::kNoDevice) << "not found yet";
    std::array<std::uint8_t, RecorderInformation::kBytes> block{};
    for (const std::uint32_t output : {3U, 2U})
        EXPECT_EQ(recorder.Query(output, {1, 48000, 96000, 2, 16}, kRecorderDriverMessage,
                                 RecorderMessage::kInformation, block),
                  output == 2 ? WaveResult::kOk : WaveResult::kNoDevice);
    EXPECT_EQ(send(RecorderMessage::kGain, 190), WaveResult::kOk);
    EXPECT_EQ(send(RecorderMessage::kVolume, 119), WaveResult::kOk);
    EXPECT_EQ(send(RecorderMessage::kValue, 0), WaveResult::kFailed);
    // This mixer has no decibels: (190 - 126) / 128 and (119 - 111) / 16 of its range.
    EXPECT_EQ(std::system("pactl get-source-volume mic.monitor | grep -q ' 50%'"), 0);
    EXPECT_EQ(std::system("pactl get-sink-volume mic | grep -q ' 50%'"), 0);
}

}  // namespace
}  // namespace orma::test
