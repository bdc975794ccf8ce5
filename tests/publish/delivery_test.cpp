// What arrives at servers, through breaks and refusals.

#include <random>

#include <gmock/gmock.h>

#include "publish_rig.h"
#include "support/riff_chunks.h"

namespace orma::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const Text kConnecting = u"  Connecting...  ";

/// Two clips of MP2 and their ways to the servers.
struct Delivery : PublishTest {
    Delivery() { AddClips(); }

    PublishOutcome Publish(bool fast = false) {
        clock.ticks = 0;
        PublishJob job = Job();
        return fast ? job.MenuPublishFastCliplist(false) : job.MenuPublishCliplist(false);
    }

    /// What arrived by FTP.
    Bytes& Received() { return server.files[u"talk.wav"]; }

    /// Cancels at the n-th question from the moment on when sending the sound begins, in this
    /// attempt.
    void CancelWhileSending(std::uint32_t n, int attempt = 1) {
        progress.cancelAt = 0;
        progress.onText = [this, n, attempt](const Text& text) mutable {
            if (text == u"  Publishing audio...  " && --attempt == 0)
                progress.cancelAt = progress.asked + n;
        };
    }
};

TEST_F(Delivery, IsTheSameToFileByFtpAndByMail) {
    for (const unsigned channels : {1U, 2U}) {
        AddClips(true, 44100, channels);
        settings.PublishMethod = 0;
        clock.ticks = 0;  // it numbers the material
        ASSERT_EQ(Job().MenuPublishCliplistToFile(false), PublishOutcome::kPublished);
        ASSERT_EQ(Publish(), PublishOutcome::kPublished);
        settings.PublishMethod = 2;
        ExpectMails(1);
        ASSERT_EQ(Publish(), PublishOutcome::kPublished);
        EXPECT_THAT(boxes.Texts(), IsEmpty());

        const Bytes file = File(u"pub_talk.wav");
        EXPECT_EQ(Received(), file);
        EXPECT_EQ(Attachments().back(), file);
        EXPECT_EQ(progress.bytes, std::pair(file.size(), file.size()));
        EXPECT_EQ(Findings(file), "");
        EXPECT_THAT(tcp.Sent(), testing::HasSubstr("filename=\"talk.wav\""));
        EXPECT_THAT(tcp.Sent(), testing::HasSubstr("\r\n\r\nHarbour\r\n"));
    }
}

TEST_F(Delivery, SaysTheExactLengthBeforeTheSound) {
    const struct {
        bool mp2;
        std::uint32_t rate;
        unsigned channels;
        bool fast;
        const char* history;
    } cases[] = {
        {false, 44100, 1, false, "B=64,W=16,M=mono"},
        {false, 44100, 2, false, "B=160,W=16,M=stereo"},
        {false, 48000, 2, true, "B=80,W=16,M=mono"},
        {false, 44100, 1, true, "B=80,W=16,M=mono"},
        {true, 48000, 1, true, "B=80,W=16,M=mono"},
        {true, 44100, 2, true, "B=80,W=16,M=mono"},
    };
    settings.FastBitrateIndex = 4;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.mp2 << ' ' << c.rate << ' ' << c.channels << c.fast);
        AddClips(c.mp2, c.rate, c.channels);
        const std::uint32_t index = c.channels == 2 ? 8 : 3;
        audio.bitrate.SetMp2Bitrate(c.mp2 ? audio.bitrate.Index() : index, report);
        const std::uint32_t before = audio.bitrate.Index();
        ASSERT_EQ(Publish(c.fast), PublishOutcome::kPublished);
        EXPECT_EQ(audio.bitrate.Index(), before);
        EXPECT_EQ(audio.stereo, c.mp2 && c.channels == 2);
        const Bytes& file = Received();
        EXPECT_EQ(Findings(file), "");
        EXPECT_EQ(LoadLe<std::uint32_t>(&file.at(4)) + 8, file.size());
        EXPECT_THAT(std::string(file.begin(), file.begin() + 800), testing::HasSubstr(c.history));
    }
}

TEST_F(Delivery, AFastPublicationHearsBothChannels) {
    const std::vector<std::int16_t> voice = Speech(48000, 48000, 1);
    // What is published of the voice times these factors, in as many channels.
    const auto data = [&](bool mp2, std::initializer_list<double> factors) {
        std::vector<std::int16_t> sound;
        for (const std::int16_t sample : voice)
            for (const double factor : factors)
                sound.push_back(static_cast<std::int16_t>(sample * factor));
        const auto channels = static_cast<unsigned>(factors.size());
        SetFormat(mp2, channels);
        clips.Clear();
        AddTake(u"talk00", sound, 44100, channels);
        AddClip(u"talk00");
        EXPECT_EQ(Publish(true), PublishOutcome::kPublished);
        for (const RiffChunk& chunk : RiffChunks(Received()))
            if (chunk.id == "data") return Bytes(chunk.content.begin(), chunk.content.end());
        return Bytes();
    };
    const Bytes half = data(false, {0.5});
    EXPECT_EQ(data(false, {1, 0}), half);
    EXPECT_EQ(data(false, {0, 1}), half);
    const Bytes silence = data(false, {0, 0});
    EXPECT_NE(silence, half);
    EXPECT_EQ(data(false, {1, -1}), silence);
    EXPECT_EQ(data(true, {1, 0}), data(true, {0, 1}));
    EXPECT_NE(data(true, {0, 1}), data(true, {0, 0}));
}

TEST_F(Delivery, ResumesExactlyWhereverItBreaks) {
    std::mt19937 random(20090115);
    for (const bool fast : {false, true}) {
        progress.onText = nullptr;
        ASSERT_EQ(Publish(fast), PublishOutcome::kPublished);
        const Bytes whole = Received();
        std::uniform_int_distribution<std::size_t> anywhere(0, whole.size() - 1);
        int breaks = 0;
        progress.onText = [&](const Text& text) {
            if (text != kConnecting || breaks-- <= 0) return;
            server.breaksAfter = anywhere(random) / 3;
            server.losesAtBreak = breaks % 2 == 0 ? anywhere(random) / 20 : 0;
        };
        for (int run = 0; run < (fast ? 6 : 30); ++run) {
            server.files.clear();
            settings.AutoResume = run % 2 == 0 ? 1 : 0;
            boxes.answers.assign(run % 2 == 0 ? 0 : 12, BoxAnswer::kYes);
            breaks = 1 + run % 3;
            ASSERT_EQ(Publish(fast), PublishOutcome::kPublished) << run;
            ASSERT_TRUE(Received() == whole) << run;
        }
    }
}

TEST(BrokenDelivery, TellsWhatBecameOfABrokenPublication) {
    constexpr bool kMp2 = true;
    constexpr bool kPcm = false;
    struct Case {
        const char* name;
        bool mp2;
        std::size_t breaksAfter;  // 0: not
        std::function<void(PublishRig&)> prepare;
        PublishOutcome outcome;
        Texts boxes;
        std::string last;  // a line of the server's log
    };
    using enum PublishOutcome;
    const Text kLost = u"Connection lost";
    const Text kResume = u"Resume publishing ?";
    const Text kNotPossible = u"Resume not possible\non this server.";
    const Text kSize =
        u"The publication is not verified:\nthe server does not confirm\nthe size of the file.";
    const auto refuseStore = [](int number, std::size_t times) {
        return [=](PublishRig& rig) {
            rig.server.restartedStore = {kFtpRefused, number, u"No."};
            rig.server.refusedRestartedStores = times;
            rig.settings.AutoResume = 1;
        };
    };
    const auto onceConnected = [](std::function<void(FakeFtp&)> change) {
        return [=](PublishRig& rig) {
            rig.progress.onText = [&rig, change](const Text& text) {
                if (text != kConnecting) change(rig.server);
            };
        };
    };
    const auto unconfirmed = [](PublishRig& rig) { rig.server.confirmation.code = kFtpTimeout; };
    // clang-format off
    const Case cases[] = {
        {"the user does not want to go on", kMp2, 9000,
         [](PublishRig& rig) { rig.boxes.answers.clear(); },
         kFailed, {kLost, kResume}, "QUIT"},
        {"no restart", kMp2, 9000,
         [](PublishRig& rig) { rig.server.takesRestart = false; },
         kFailed, {kLost, kResume, kNotPossible}, "REST 9000"},
        {"a restart that stores nothing", kMp2, 9000, refuseStore(451, FakeFtp::kNever),
         kFailed, {kNotPossible}, "REST 9000"},
        {"a file that the dead session still holds", kMp2, 9000, refuseStore(450, 3),
         kPublished, {}, "REST 9000"},
        {"sizes that it does not tell any more", kMp2, 0,
         onceConnected([](FakeFtp& server) { server.knowsSize = false; }),
         kUnverified, {kSize}, "SIZE talk.wav"},
        {"no sizes: it went on, but who knows", kMp2, 9000,
         [](PublishRig& rig) { rig.server.knowsSize = false; },
         kUnverified, {kLost, kResume, kSize}, "SIZE talk.wav"},
        {"bytes that vanish unnoticed", kMp2, 9000,
         [](PublishRig& rig) {
             rig.server.breaking = {};
             rig.server.losesAtBreak = 5;
             rig.boxes.answers = {BoxAnswer::kYes};
         },
         kPublished, {kResume}, "SIZE talk.wav"},
        {"no connection later, without going on by itself", kMp2, 9000,
         onceConnected([](FakeFtp& server) { server.connection.code = kFtpCannotConnect; }),
         kFailed, {kLost, kResume, u"Cannot connect"}, "CONNECT srv:21"},
        {"never confirmed", kMp2, 0, unconfirmed, kFailed, {u"Timeout", kResume}, "CLOSE"},
        {"PCM", kPcm, 9000, [](PublishRig&) {}, kFailed, {kLost}, "QUIT"},
        {"PCM, never confirmed", kPcm, 0, unconfirmed, kUnverified,
         {u"Timeout", u"The publication is not verified:\nthe server does not confirm it."},
         "CLOSE"},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PublishRig rig;
        rig.AddClips(c.mp2);
        if (c.breaksAfter > 0) {
            rig.server.breaksAfter = c.breaksAfter;
            rig.boxes.answers = {BoxAnswer::kOk, BoxAnswer::kYes};
        }
        c.prepare(rig);
        EXPECT_EQ(rig.Job().MenuPublishCliplist(false), c.outcome);
        EXPECT_EQ(rig.boxes.Texts(), c.boxes);
        if (c.outcome == kPublished) {
            EXPECT_EQ(rig.Findings(rig.server.files[u"talk.wav"]), "");
        }
        EXPECT_THAT(rig.server.log, Contains(c.last));
        if (!c.mp2) {
            EXPECT_THAT(rig.server.log, Not(Contains(testing::StartsWith("REST"))));
        }
    }
}

TEST_F(Delivery, BeginsAnewWhereTheServersFileIsNotThePieceThatWasSent) {
    settings.AutoResume = 1;
    ASSERT_EQ(Publish(), PublishOutcome::kPublished);
    const Bytes whole = Received();
    const std::vector<std::function<void()>> afterTheBreak = {
        [&] { server.files.erase(u"talk.wav"); },  // it drops what broke off
        [&] { Received().resize(whole.size()); },  // it has more than was sent
        [] {},                                     // it shows what was there before
    };
    for (const auto& meddle : afterTheBreak) {
        Received() = Bytes(5000, 'o');
        server.breaksAfter = 9000;
        server.hidesUploads = &meddle == &afterTheBreak.back();
        bool first = true;
        progress.onText = [&](const Text& text) {
            if (text == kConnecting && !std::exchange(first, false)) meddle();
        };
        EXPECT_EQ(Publish(), PublishOutcome::kPublished);
        EXPECT_TRUE(Received() == whole);
        EXPECT_THAT(server.log, Not(Contains(testing::StartsWith("REST"))));
    }
}

TEST_F(Delivery, WaitsForAServerThatIsAwayAndPacesItself) {
    settings.AutoResume = 1;
    server.connection.code = kFtpCannotConnect;
    server.failingConnections = 5;
    EXPECT_EQ(Publish(), PublishOutcome::kPublished);
    EXPECT_GE(clock.ticks, 5000U) << "a second each, no hammering";
    EXPECT_THAT(boxes.Texts(), IsEmpty());
    EXPECT_EQ(Findings(Received()), "");

    // Until the user has enough of it.
    server.failingConnections = FakeFtp::kNever;
    progress.cancelAt = progress.asked + 100;
    EXPECT_EQ(Publish(), PublishOutcome::kCancelled);
    EXPECT_EQ(boxes.Texts(), Texts{u"Publishing was cancelled.\nNothing was published."});
}

const Texts kIncomplete = {u"Publishing was cancelled.\nThe publication is incomplete."};

TEST_F(Delivery, ThatIsCancelledEndsTheFileAndSendsNothingMore) {
    settings.PublishText = 1;
    ExpectMails(1);
    for (const std::uint32_t method : {0U, 2U}) {
        settings.PublishMethod = method;
        boxes.shown.clear();
        CancelWhileSending(method == 0 ? 5 : 2);
        EXPECT_EQ(Publish(), PublishOutcome::kCancelled);
        EXPECT_EQ(boxes.Texts(), kIncomplete);
        const Bytes received = method == 0 ? Received() : Attachments().at(0);
        const std::string text(received.begin(), received.end());
        EXPECT_THAT(text, testing::HasSubstr("qlty")) << "its end is written";
        EXPECT_EQ(server.files.size(), 1U);
    }
}

TEST_F(Delivery, ThatIsCancelledInAnotherAttemptHasNoEndInTheMiddle) {
    settings.AutoResume = 1;
    server.breaksAfter = 9000;
    CancelWhileSending(1, 2);
    EXPECT_EQ(Publish(), PublishOutcome::kCancelled);
    EXPECT_EQ(Received().size(), 9000U);
    EXPECT_EQ(boxes.Texts(), kIncomplete);
    EXPECT_THAT(server.log, Not(Contains("CLOSE")));
}

TEST_F(Delivery, OfADamagedTakeIsNotClosedAsIfItWereWhole) {
    Bytes take = File(u"talk00.mp2");
    take[take.size() / 192 / 2 * 192] = 0;
    WriteFileBytes(Path(u"talk00.mp2"), take);
    EXPECT_EQ(Publish(), PublishOutcome::kFailed);
    EXPECT_FALSE(Received().empty());
    EXPECT_THAT(server.log, Not(Contains("CLOSE")));
}

TEST_F(Delivery, OfBareFramesIsTheSoundAlone) {
    settings.BwfHeader = 0;
    settings.PublishExtension = u"mpg";
    settings.FtpFolder = u"news/in";
    for (const bool mp2 : {true, false}) {
        AddClips(mp2, 48000);
        ASSERT_EQ(Publish(), PublishOutcome::kPublished);
        const Bytes& file = server.files[mp2 ? u"news/in/talk.mpg" : u"news/in/talk.mp2"];
        ASSERT_GT(file.size(), 192U);
        EXPECT_EQ(file.size() % 192, 0U);
        for (std::size_t at = 0; at < file.size(); at += 192)
            ASSERT_EQ(LoadLe<std::uint16_t>(&file[at]), 0xFDFF);
        EXPECT_EQ(progress.bytes, std::pair(file.size(), file.size()));
    }
}

}  // namespace
}  // namespace orma::test
