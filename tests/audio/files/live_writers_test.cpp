#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/queued_ftp/queued_ftp_clients.h"
#include "support/stalling_ftp.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t kPieceBytes = 4410;  // 50 ms of mono at 44100 Hz

class Heard : public UploadListener {
  public:
    void OnUploadEnded(const UploadOutcome& outcome) override { outcomes.push_back(outcome); }
    void OnLogInFailed(const FtpResult&) override {}

    std::vector<UploadOutcome> outcomes;
};

/// Takes that are uploaded while they are made, to a server that misbehaves; each is compared with
/// a take of the same sound that knows of no network.
class LiveWriters : public testing::TestWithParam<WriterKind> {
  protected:
    LiveWriters() { bench.audio.bitrate.SetMp2Bitrate(9, bench.files.report); }

    JStreamAudioWrite& Start(const Text& name) {
        bench.context.live = {.ftp = live, .account = {.server = server, .folder = u"in"}};
        JStreamAudioWrite& writer = bench.Select(GetParam());
        writer.Connect();
        writer.Open(name);
        return writer;
    }

    /// Feeds pieces from number `first` on while the writer is healthy; returns how many.
    std::uint32_t Feed(JStreamAudioWrite& writer, std::uint32_t pieces, std::uint32_t first = 0) {
        std::uint32_t fed = 0;
        while (fed < pieces && writer.IsOpen()) {
            writer.WriteSamples(sound.data() + std::size_t{first + fed} * kPieceBytes, kPieceBytes);
            ++fed;
            if (unhurried) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return fed;
    }

    /// A whole take, whose sound is complete even where its upload is not; how many pieces it has.
    std::uint32_t Record(const Text& name, std::uint32_t pieces) {
        JStreamAudioWrite& writer = Start(name);
        const std::uint32_t fed = Feed(writer, pieces);
        writer.Close();
        EXPECT_FALSE(writer.IsOpen());
        ExpectWholeTake(name, fed);
        return fed;
    }

    bool Ended() { return clients.Wait(patience); }

    std::vector<Text> Boxes() { return bench.files.boxes.Texts(); }

    /// The local take `name` is what a writer without a network makes of the first `pieces`.
    void ExpectWholeTake(const Text& name, std::uint32_t pieces) {
        const bool wav = GetParam() == WriterKind::kWavFtp;
        const Bytes expected = Plain(wav ? WriterKind::kWavFile : WriterKind::kMp2File, pieces);
        EXPECT_GT(expected.size(), 2000U);
        EXPECT_TRUE(bench.File(name + (wav ? u".wav" : u".mp2")) == expected);
    }

    /// The remote file is what the encoder makes of the first `pieces`.
    void ExpectWholeUpload(const UploadOutcome& outcome, const Text& path, std::uint32_t pieces) {
        EXPECT_TRUE(outcome.IsWhole());
        EXPECT_EQ(outcome.path, path);
        EXPECT_EQ(outcome.remoteBytes, outcome.bytes);
        EXPECT_TRUE(line.server.files[path] == Plain(WriterKind::kMp2File, pieces));
    }

    Bytes Plain(WriterKind kind, std::uint32_t pieces) {
        WriterBench plain;
        plain.audio.bitrate = bench.audio.bitrate;
        JStreamAudioWrite& writer = plain.Select(kind);
        writer.Open(u"plain");
        writer.WriteSamples(sound.data(), pieces * kPieceBytes);
        writer.Close();
        return plain.File(kind == WriterKind::kWavFile ? u"plain.wav" : u"plain.mp2");
    }

    const Bytes sound = Pattern(std::size_t{200} * kPieceBytes);
    Text server = u"studio";
    bool unhurried = false;
    StallingFtp line;
    PosixEventLoop loop;
    Heard heard;
    QueuedFtpClients clients{line, loop, heard, 256 * 1024};
    QueuedFtpClients narrow{line, loop, heard, 160 * 1024};
    WriterBench bench;
    FakePatience patience;
    FtpServices services{clients, bench.files.report, patience};
    FtpServices narrowServices{narrow, bench.files.report, patience};
    const FtpServices* live = &services;
};

INSTANTIATE_TEST_SUITE_P(Kinds, LiveWriters,
                         testing::Values(WriterKind::kWavFtp, WriterKind::kMp2Ftp));

TEST_P(LiveWriters, StalledServerGetsBothTakesWholeOnceItRecovers) {
    line.frozen = true;
    EXPECT_EQ(Record(u"a00", 60), 60U);
    line.frozen = false;  // and again within the second take
    JStreamAudioWrite& writer = Start(u"a01");
    EXPECT_EQ(Feed(writer, 30), 30U);
    line.frozen = true;
    EXPECT_EQ(Feed(writer, 100, 30), 100U);
    writer.Close();
    EXPECT_EQ(clients.UnderWay(), 2U);
    patience.goOn = false;
    EXPECT_FALSE(Ended());
    patience.goOn = true;
    line.frozen = false;
    ASSERT_TRUE(Ended());
    ASSERT_EQ(heard.outcomes.size(), 2U);
    EXPECT_EQ(clients.BytesWaiting(), 0U);
    ExpectWholeTake(u"a01", 130);
    ExpectWholeUpload(heard.outcomes[0], u"in/a00.mp2", 60);
    ExpectWholeUpload(heard.outcomes[1], u"in/a01.mp2", 130);
    EXPECT_EQ(std::ranges::count(line.server.log, "CONNECT studio:21"), 1);
    EXPECT_THAT(Boxes(), ElementsAre());
}

TEST_P(LiveWriters, DeadLinkEndsTheTakeWhichIsComplete) {
    unhurried = true;
    line.server.breaksAfter = 30'000;
    EXPECT_LT(Record(u"a00", 200), 200U);
    ASSERT_TRUE(Ended());
    ASSERT_EQ(heard.outcomes.size(), 1U);
    EXPECT_FALSE(heard.outcomes[0].IsWhole());
    EXPECT_TRUE(heard.outcomes[0].began);
    EXPECT_EQ(heard.outcomes[0].result.code, kFtpConnectionLost);
    EXPECT_THAT(Boxes(), ElementsAre(u"Connection lost"));

    EXPECT_EQ(Record(u"a01", 60), 60U);
    ASSERT_TRUE(Ended());
    ExpectWholeUpload(heard.outcomes[1], u"in/a01.mp2", 60);
}

TEST_P(LiveWriters, ServerThatNeverTookTheFileUpLeavesTheTakeAlone) {
    unhurried = true;
    line.server.connection = {kFtpRefused, 530, u"530 Login incorrect."};
    line.server.opening = {kFtpRefused, 550, u"550 No such folder."};
    for (const Text name : {u"a00", u"a01"}) {
        EXPECT_EQ(Record(name, 60), 60U);
        ASSERT_TRUE(Ended());
        EXPECT_FALSE(heard.outcomes.back().IsWhole() || heard.outcomes.back().began);
        EXPECT_EQ(heard.outcomes.back().result.code, kFtpRefused);
        line.server.connection = {};  // the next one is let in, and refused at the file
    }
    ASSERT_EQ(heard.outcomes.size(), 2U);
    EXPECT_EQ(heard.outcomes[1].result.replyNumber, 550);
    EXPECT_THAT(Boxes(), ElementsAre());

    server.clear();
    EXPECT_EQ(Record(u"a02", 60), 60U);
    EXPECT_THAT(Boxes(), ElementsAre(u"No FTP server: the take is not uploaded"));
    EXPECT_EQ(clients.UnderWay(), 0U);
}

TEST_P(LiveWriters, FullQueueIsADeadLink) {
    live = &narrowServices;
    JStreamAudioWrite& writer = Start(u"a00");
    unhurried = true;
    EXPECT_EQ(Feed(writer, 20), 20U);
    while (narrow.BytesWaiting() > 0)
        std::this_thread::yield();
    line.frozen = true;
    const std::uint32_t fed = Feed(writer, 180, 20);
    EXPECT_LT(fed, 180U);
    writer.Close();
    ExpectWholeTake(u"a00", 20 + fed);
    ASSERT_TRUE(narrow.Wait(patience));  // gives up a server that still stands still
    EXPECT_EQ(heard.outcomes.back().result.code, kFtpTimeout);
    EXPECT_THAT(Boxes(), ElementsAre(u"Timeout"));
}

TEST_P(LiveWriters, AQueueThatASlowLineEmptiesTakesUpMoreAtOnce) {
    live = &narrowServices;
    JStreamAudioWrite& writer = Start(u"a00");
    line.room = 0;  // the stall
    std::uint32_t fed = 0;
    while (narrow.BytesWaiting() < 140'000 && fed < 160)
        fed += Feed(writer, 1, fed);
    // Enough for a full piece behind the first one, which is as long as the thread was slow.
    line.room = 110'000;
    for (int ms = 0; ms < 2000 && narrow.BytesWaiting() > 100'000; ++ms)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    fed += Feed(writer, 40, fed);
    EXPECT_TRUE(writer.IsOpen());
    line.room = 1 << 30;
    writer.Close();
    ASSERT_TRUE(narrow.Wait(patience));
    ExpectWholeUpload(heard.outcomes[0], u"in/a00.mp2", fed);
}

TEST_P(LiveWriters, NothingIsWholeThatTheServerDidNotConfirmOrHasInAnotherSize) {
    const auto isWhole = [&](const Text& name) {
        Record(name, 60);
        EXPECT_TRUE(Ended());
        return heard.outcomes.back().IsWhole();
    };
    line.server.confirmation = {kFtpRefused, 452, u"452 Insufficient storage space."};
    EXPECT_FALSE(isWhole(u"a00"));
    line.server.confirmation = {};
    line.claimedSize = 5;
    EXPECT_FALSE(isWhole(u"a01"));
    line.claimedSize.reset();
    line.server.knowsSize = false;
    EXPECT_TRUE(isWhole(u"a02"));
}

TEST_P(LiveWriters, GivingUpEndsUploadsAndNoTake) {
    line.frozen = true;
    line.deaf = true;  // as in a handshake
    Record(u"a00", 60);
    JStreamAudioWrite& writer = Start(u"a01");
    Feed(writer, 30);
    clients.GiveUp();
    ASSERT_TRUE(Ended());
    ASSERT_EQ(heard.outcomes.size(), 2U);
    for (const UploadOutcome& outcome : heard.outcomes)
        EXPECT_EQ(outcome.result.code, kFtpCancelled);
    EXPECT_EQ(Feed(writer, 30, 30), 30U);
    writer.Close();
    ExpectWholeTake(u"a01", 60);
    EXPECT_THAT(Boxes(), ElementsAre());

    Start(u"a02");  // left to the destructors, which wait for no server
    Feed(writer, 30);
}

TEST_P(LiveWriters, DigitalTakesAreUploadedInTheirUpper16BitsOrNotAtAll) {
    if (GetParam() == WriterKind::kMp2Ftp) return;  // such takes get 16 bits from the card
    Bytes deep;
    for (std::size_t i = 0; i < 60 * kPieceBytes; i += 2)
        deep.insert(deep.end(), {std::uint8_t{77}, sound[i], sound[i + 1]});
    bench.audio.alternativeSampleSize = true;
    bench.audio.bitsPerSample = 24;
    bench.context.wavTemplate.blockAlign = 3;
    for (const std::uint32_t rate : {44100U, 96000U}) {
        bench.audio.sampleRate = rate;
        JStreamAudioWrite& writer = Start(rate == 44100 ? u"a00" : u"a01");
        WriteAll(writer, deep, deep.size());
        EXPECT_TRUE(writer.IsOpen());
        writer.Close();
        EXPECT_TRUE(Ended());
    }
    const WavFields fields{.bits = 24, .blockAlign = 3};
    EXPECT_TRUE(bench.File(u"a00.wav") == WavBytes(fields, deep));
    EXPECT_EQ(bench.File(u"a01.wav").size(), WavHeader::kBytes + deep.size());
    ASSERT_EQ(heard.outcomes.size(), 1U);
    ExpectWholeUpload(heard.outcomes[0], u"in/a00.mp2", 60);
    EXPECT_THAT(Boxes(), ElementsAre(u"No MP2 of 96000 Hz: the take is not uploaded"));
}

}  // namespace
}  // namespace orma::test
