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

PublishOutcome Cliplist(PublishRig& rig) {
    return rig.Job().MenuPublishCliplist(false);
}

TEST(Delivery, IsTheSameToFileByFtpAndByMail) {
    for (const unsigned channels : {1U, 2U}) {
        PublishRig rig;
        rig.AddClips(true, 44100, channels);
        ASSERT_EQ(rig.Job().MenuPublishCliplistToFile(false), PublishOutcome::kPublished);
        ASSERT_EQ(Cliplist(rig), PublishOutcome::kPublished);
        rig.settings.PublishMethod = 2;
        rig.ExpectMails(1);
        ASSERT_EQ(Cliplist(rig), PublishOutcome::kPublished);
        EXPECT_THAT(rig.boxes.Texts(), IsEmpty());

        const Bytes file = rig.File(u"pub_talk.wav");
        EXPECT_EQ(rig.server.files[u"talk.wav"], file);
        EXPECT_THAT(rig.Attachments(), ElementsAre(file));
        EXPECT_EQ(rig.progress.bytes, std::pair(file.size(), file.size()));
        EXPECT_EQ(rig.Findings(file), "");
        EXPECT_THAT(rig.tcp.Sent(), testing::HasSubstr("filename=\"talk.wav\""));
        EXPECT_THAT(rig.tcp.Sent(), testing::HasSubstr("\r\n\r\nHarbour\r\n"));
        EXPECT_EQ(rig.dialogs.shown, std::vector<int>{107});
    }
}

TEST(Delivery, SaysTheExactLengthBeforeTheSound) {
    struct Case {
        bool mp2;
        std::uint32_t rate;
        unsigned channels;
        bool fast;
    };
    for (const Case& c :
         {Case{false, 44100, 1, false}, Case{false, 44100, 2, false}, Case{false, 48000, 2, true},
          Case{false, 44100, 1, true}, Case{true, 48000, 1, true}, Case{true, 44100, 2, true}}) {
        SCOPED_TRACE(testing::Message() << c.mp2 << ' ' << c.rate << ' ' << c.channels << c.fast);
        PublishRig rig;
        rig.AddClips(c.mp2, c.rate, c.channels);
        if (!c.mp2 && c.channels == 2) rig.audio.bitrate.SetMp2Bitrate(9, rig.report);
        rig.settings.FastBitrateIndex = 4;
        const Mp2Bitrate before = rig.audio.bitrate;
        PublishJob job = rig.Job();
        ASSERT_EQ(c.fast ? job.MenuPublishFastCliplist(false) : job.MenuPublishCliplist(false),
                  PublishOutcome::kPublished);
        EXPECT_EQ(rig.audio.bitrate.Index(), before.Index());
        EXPECT_EQ(rig.audio.stereo, c.mp2 && c.channels == 2);
        const Bytes& file = rig.server.files[u"talk.wav"];
        EXPECT_EQ(rig.Findings(file), "");
        EXPECT_EQ(LoadLe<std::uint32_t>(&file.at(4)) + 8, file.size());
        const char* const mode = c.fast || c.channels == 1 ? "mono" : "stereo";
        EXPECT_THAT(std::string(file.begin(), file.begin() + 800),
                    testing::HasSubstr(Format("A=MPEG1L2,F=48000,B=%u,W=16,M=%s",
                                              c.fast ? 80 : before.BitsPerSecond() / 1000, mode)));
    }
}

TEST(Delivery, AFastPublicationHearsBothChannels) {
    // What is published of a recording with these channels, L and R of each sample.
    const auto data = [](bool mp2, const std::vector<std::int16_t>& sound, unsigned channels) {
        PublishRig rig;
        rig.SetFormat(mp2, channels);
        rig.AddTake(u"talk00", sound, 44100, channels);
        rig.AddClip(u"talk00");
        EXPECT_EQ(rig.Job().MenuPublishFastCliplist(false), PublishOutcome::kPublished);
        const Bytes& file = rig.server.files[u"talk.wav"];
        for (const RiffChunk& chunk : RiffChunks(file))
            if (chunk.id == "data") return Bytes(chunk.content.begin(), chunk.content.end());
        return Bytes();
    };
    const std::vector<std::int16_t> voice = Speech(48000, 48000, 1);
    // The voice times these factors, in as many channels.
    const auto scaled = [&](std::initializer_list<double> factors) {
        std::vector<std::int16_t> sound;
        for (const std::int16_t sample : voice)
            for (const double factor : factors)
                sound.push_back(static_cast<std::int16_t>(sample * factor));
        return sound;
    };
    const auto left = scaled({1, 0});
    const auto right = scaled({0, 1});
    const auto none = scaled({0, 0});
    const Bytes expected = data(false, scaled({0.5}), 1);
    EXPECT_EQ(data(false, left, 2), expected);
    EXPECT_EQ(data(false, right, 2), expected);
    const Bytes silence = data(false, none, 2);
    EXPECT_NE(silence, expected);
    EXPECT_EQ(data(false, scaled({1, -1}), 2), silence);
    EXPECT_EQ(data(true, left, 2), data(true, right, 2));
    EXPECT_NE(data(true, right, 2), data(true, none, 2));
}

TEST(Delivery, ResumesExactlyWhereverItBreaks) {
    std::mt19937 random(20090115);
    for (const bool fast : {false, true}) {
        PublishRig rig;
        rig.AddClips();
        PublishJob job = rig.Job();
        const auto publish = [&] {
            rig.clock.ticks = 0;
            return fast ? job.MenuPublishFastCliplist(false) : job.MenuPublishCliplist(false);
        };
        ASSERT_EQ(publish(), PublishOutcome::kPublished);
        const Bytes whole = rig.server.files[u"talk.wav"];
        std::uniform_int_distribution<std::size_t> anywhere(0, whole.size() - 1);
        int breaks = 0;
        rig.progress.onText = [&](const Text& text) {
            if (text != kConnecting || breaks-- <= 0) return;
            rig.server.breaksAfter = anywhere(random) / 3;
            rig.server.losesAtBreak = breaks % 2 == 0 ? anywhere(random) / 20 : 0;
        };
        for (int run = 0; run < (fast ? 6 : 30); ++run) {
            rig.server.files.clear();
            rig.settings.AutoResume = run % 2 == 0 ? 1 : 0;
            if (run % 2 != 0) rig.boxes.answers.assign(12, BoxAnswer::kYes);
            breaks = 1 + run % 3;
            ASSERT_EQ(publish(), PublishOutcome::kPublished) << run;
            ASSERT_TRUE(rig.server.files[u"talk.wav"] == whole) << run;
            rig.boxes.answers.clear();
        }
    }
}

TEST(Delivery, TellsWhatBecameOfABrokenPublication) {
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
    const auto refuseStore = [](int number, std::size_t times, std::uint8_t autoResume) {
        return [=](PublishRig& rig) {
            const Text words = FormatText("%d No.", number);
            rig.server.restartedStore = {kFtpRefused, number, words};
            rig.server.refusedRestartedStores = times;
            rig.settings.AutoResume = autoResume;
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
        {"a restart that stores nothing", kMp2, 9000, refuseStore(451, FakeFtp::kNever, 1),
         kFailed, {kNotPossible}, "REST 9000"},
        {"a store that the disk has no room for", kMp2, 9000, refuseStore(552, FakeFtp::kNever, 0),
         kFailed, {kLost, kResume, u"FtpOpenFile 12003 552 No.", kResume}, "REST 9000"},
        {"a file that the dead session still holds", kMp2, 9000, refuseStore(450, 3, 1),
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
        {"PCM in silence", kPcm, 9000,
         [](PublishRig& rig) { rig.settings.AutoResume = 1; },
         kFailed, {u"Publishing interrupted!"}, "QUIT"},
        {"PCM, never confirmed", kPcm, 0, unconfirmed, kUnverified,
         {u"Timeout", u"The publication is not verified:\nthe server does not confirm it."},
         "CLOSE"},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PublishRig rig;
        rig.AddClips(c.mp2, 44100, 1);
        if (c.breaksAfter > 0) {
            rig.server.breaksAfter = c.breaksAfter;
            rig.boxes.answers = {BoxAnswer::kOk, BoxAnswer::kYes};
        }
        c.prepare(rig);
        EXPECT_EQ(Cliplist(rig), c.outcome);
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

TEST(Delivery, BeginsAnewWhereTheServersFileIsNotThePieceThatWasSent) {
    PublishRig rig;
    rig.AddClips();
    rig.settings.AutoResume = 1;
    const auto publish = [&] {
        rig.clock.ticks = 0;
        return Cliplist(rig);
    };
    ASSERT_EQ(publish(), PublishOutcome::kPublished);
    const Bytes whole = rig.server.files[u"talk.wav"];
    const std::vector<std::function<void()>> afterTheBreak = {
        [&] { rig.server.files.erase(u"talk.wav"); },                 // it drops what broke off
        [&] { rig.server.files[u"talk.wav"].resize(whole.size()); },  // it has more than was sent
        [] {},  // it shows what was there before
    };
    for (const auto& meddle : afterTheBreak) {
        rig.server.files[u"talk.wav"] = Bytes(5000, 'o');
        rig.server.breaksAfter = 9000;
        rig.server.hidesUploads = &meddle == &afterTheBreak.back();
        rig.server.log.clear();
        bool first = true;
        rig.progress.onText = [&](const Text& text) {
            if (text == kConnecting && !std::exchange(first, false)) meddle();
        };
        EXPECT_EQ(publish(), PublishOutcome::kPublished) << testing::PrintToString(rig.server.log);
        EXPECT_TRUE(rig.server.files[u"talk.wav"] == whole);
        EXPECT_THAT(rig.server.log, Not(Contains(testing::StartsWith("REST"))));
    }
}

TEST(Delivery, WaitsForAServerThatIsAwayAndPacesItself) {
    PublishRig rig;
    rig.AddClips();
    rig.settings.AutoResume = 1;
    rig.server.connection.code = kFtpCannotConnect;
    rig.server.failingConnections = 5;
    rig.clock.ticks = 0;
    EXPECT_EQ(Cliplist(rig), PublishOutcome::kPublished);
    EXPECT_GE(rig.clock.ticks, 5000U) << "a second each, no hammering";
    EXPECT_THAT(rig.boxes.Texts(), IsEmpty());
    EXPECT_EQ(rig.Findings(rig.server.files[u"talk.wav"]), "");

    // Until the user has enough of it.
    rig.server.failingConnections = FakeFtp::kNever;
    rig.progress.cancelAt = rig.progress.asked + 100;
    EXPECT_EQ(Cliplist(rig), PublishOutcome::kCancelled);
    EXPECT_THAT(rig.boxes.Texts(),
                ElementsAre(u"Publishing was cancelled.\nNothing was published."));
    rig.progress.cancelAt = 0;
    rig.server.connection.code = kFtpCannotConnect;
    rig.settings.AutoResume = 0;
    rig.boxes.shown.clear();
    EXPECT_EQ(Cliplist(rig), PublishOutcome::kFailed);
    EXPECT_THAT(rig.boxes.Texts(), ElementsAre(u"Cannot connect", u"Resume publishing ?"));
}

TEST(Delivery, ThatIsCancelledEndsTheFileAndSendsNothingMore) {
    for (const std::uint32_t method : {0U, 2U}) {
        PublishRig rig;
        rig.AddClips();
        rig.settings.PublishMethod = method;
        rig.settings.PublishText = 1;
        rig.ExpectMails(1);
        rig.progress.onText = [&](const Text& text) {
            if (text == u"  Publishing audio...  ")
                rig.progress.cancelAt = rig.progress.asked + (method == 0 ? 5 : 2);
        };
        EXPECT_EQ(Cliplist(rig), PublishOutcome::kCancelled);
        EXPECT_THAT(rig.boxes.Texts(),
                    ElementsAre(u"Publishing was cancelled.\nThe publication is incomplete."));
        const Bytes received = method == 0 ? rig.server.files[u"talk.wav"] : rig.Attachments()[0];
        const std::string text(received.begin(), received.end());
        EXPECT_THAT(text, testing::HasSubstr("qlty")) << "its end is written";
        EXPECT_EQ(rig.server.files.size(), method == 0 ? 1U : 0U);
    }
}

TEST(Delivery, ThatStopsInTheMiddleLeavesNothingThatLooksWhole) {
    PublishRig cancelled;
    cancelled.AddClips();
    cancelled.settings.AutoResume = 1;
    cancelled.server.breaksAfter = 9000;
    int attempts = 0;
    cancelled.progress.onText = [&](const Text& text) {
        if (text == u"  Publishing audio...  " && ++attempts == 2)
            cancelled.progress.cancelAt = cancelled.progress.asked + 1;
    };
    EXPECT_EQ(Cliplist(cancelled), PublishOutcome::kCancelled);
    EXPECT_EQ(cancelled.server.files[u"talk.wav"].size(), 9000U) << "no end in the middle of it";
    EXPECT_THAT(cancelled.boxes.Texts(),
                ElementsAre(u"Publishing was cancelled.\nThe publication is incomplete."));
    EXPECT_THAT(cancelled.server.log, Not(Contains("CLOSE")));

    PublishRig unreadable;
    unreadable.AddClips();
    Bytes take = unreadable.File(u"talk00.mp2");
    take[take.size() / 192 / 2 * 192] = 0;
    WriteFileBytes(unreadable.Path(u"talk00.mp2"), take);
    EXPECT_EQ(Cliplist(unreadable), PublishOutcome::kFailed);
    EXPECT_FALSE(unreadable.server.files[u"talk.wav"].empty());
    EXPECT_THAT(unreadable.server.log, Not(Contains("CLOSE")));
}

TEST(Delivery, OfBareFramesIsTheSoundAlone) {
    for (const bool mp2 : {true, false}) {
        PublishRig rig;
        rig.AddClips(mp2, 48000, 1);
        rig.settings.BwfHeader = 0;
        rig.settings.PublishExtension = u"mpg";
        rig.settings.FtpFolder = u"news/in";
        ASSERT_EQ(Cliplist(rig), PublishOutcome::kPublished);
        const Bytes& file = rig.server.files[mp2 ? u"news/in/talk.mpg" : u"news/in/talk.mp2"];
        ASSERT_GT(file.size(), 192U);
        EXPECT_EQ(file.size() % 192, 0U);
        for (std::size_t at = 0; at < file.size(); at += 192)
            ASSERT_EQ(LoadLe<std::uint16_t>(&file[at]), 0xFDFF);
        EXPECT_EQ(rig.progress.bytes, std::pair(file.size(), file.size()));
    }
}

}  // namespace
}  // namespace orma::test
