#include "audio/engine/player_fixture.h"

namespace orma::test {
namespace {

using Strings = std::vector<std::string>;
using Texts = std::vector<Text>;
using Cuts = std::vector<RemovedRange>;

Periods operator+(Periods left, const Periods& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST_F(PlayerTest, FourBuffersCirculateAndAnEndMarkerEndsPlaying) {
    MakeTake(10);
    player.SetOutputDevice(u"desk");
    ASSERT_TRUE(player.StartPlaying(1));
    EXPECT_EQ(waves.out.calls,
              (Strings{"OpenOutput", "Pause", "Prepare", "Write", "Prepare", "Write", "Prepare",
                       "Write", "Prepare", "Write", "Restart"}));
    EXPECT_EQ(waves.out.name, u"desk");
    EXPECT_EQ(waves.out.format, (WaveFormat{1, 44100, 88200, 2, 16}));
    EXPECT_EQ(waves.out.queue.size(), 4U);
    Finish(10);
    EXPECT_EQ(Heard(), Range(0, 10));
    ASSERT_EQ(waves.out.queue.size(), 1U);
    EXPECT_EQ(waves.out.queue.front()->bufferLength, 0U) << "the end marker";
    EXPECT_TRUE(listener.events == Strings{"playing"} && !player.IsPlaying());
    Finish(1);
    EXPECT_EQ(listener.events, (Strings{"playing", "played out"}));
    EXPECT_TRUE(player.IsClosed() && !player.IsActive() && !buffers.AnyQueued());
    EXPECT_EQ(player.Position(), 10);
    // Four buffers tell nothing, then the time lags by three.
    EXPECT_EQ(listener.positions, Range(1, 8));
    EXPECT_EQ(listener.levels, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7}));

    EXPECT_EQ(Hear(9), Periods{9});
    EXPECT_EQ(Hear(10), Periods{});
    EXPECT_EQ(Told("played out"), 3);
    EXPECT_TRUE(player.IsClosed() && boxes.texts.empty());
}

// What is heard of cuts and of winding, the property tests prove.

TEST_F(PlayerTest, TheEndOfACutOrARangeIsWhereThePlaceStands) {
    MakeTake(30);
    const struct {
        Cuts cuts;
        std::int32_t from;
        std::uint32_t rangeEnd;
        Periods heard;
        std::int32_t position;
    } cases[] = {
        {{{5, 8, 0}}, 5, 0, Range(8, 30), 30},
        {{{25, 30, 0}}, 20, 0, Range(20, 25), 31},
        {{{0, 30, 0}}, 0, 0, {}, 31},
        {{{5, 8, 0}}, 2, 12, Range(2, 5) + Range(8, 12), 12},
        {{{5, 20, 0}}, 2, 12, Range(2, 5), 13},
        {{}, 28, 99, Range(28, 30), 30},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.from);
        sheet.cuts = row.cuts;
        player.SetRange({0, row.rangeEnd});
        EXPECT_EQ(Hear(row.from), row.heard);
        EXPECT_EQ(player.Position(), row.position);
        EXPECT_TRUE(player.IsClosed());
    }
    // Where a cut is jumped, the graph has the level that stands at its begin.
    sheet.cuts = {{10, 14, 0}};
    player.SetRange({});
    listener.levels.clear();
    (void)Hear(5);
    listener.levels.resize(3);
    // The time and the graph are at 6 while 9 is written.
    EXPECT_EQ(listener.levels, (std::vector<std::uint8_t>{6, 10, 12}));
}

TEST_F(PlayerTest, AMovedPlaceIsHeardBehindTheQueueAndChoosesTheCutAtItsEdge) {
    MakeTake(100);
    sheet.cuts = {{10, 20, 0}, {20, 30, 0}};
    player.WavRestartPlaying(20);
    player.WavRestartPlaying(30);
    EXPECT_EQ(listener.events, (Strings{"cut 0", "place 20", "cut 1", "place 30"}));
    ASSERT_TRUE(player.StartPlaying(1));
    Finish(2);
    EXPECT_EQ(listener.positions, (Periods{31, 32}));
    player.WavRestartPlaying(70);
    EXPECT_EQ(player.DisplayPosition(), 70U);
    Finish(6);
    EXPECT_EQ(Heard(), Range(30, 36) + Range(70, 72));
    EXPECT_EQ(listener.positions, (Periods{31, 32, 71, 72})) << "four buffers tell nothing";
    transport = TransportState::kDragging;
    player.WavRestartPlaying(50);
    Finish(1);
    EXPECT_EQ(listener.positions.back(), 47U) << "while dragging the screens follow at once";
    player.WavRestartPlaying(10);
    EXPECT_EQ(currentCut, 0);
    EXPECT_EQ(Told("cut 0"), 1) << "no redrawing while playing";

    player.WavRestartPlaying(100);
    EXPECT_FALSE(player.IsPlaying());
    FinishAll();
    EXPECT_EQ(player.Position(), 100);
    EXPECT_EQ(Told("played out"), 1);
    currentCut = -1;
    sheet.cuts = {{0, 5, 0}};
    player.WavRestartPlaying(-1);
    EXPECT_EQ(player.Position(), 0);
    EXPECT_EQ(currentCut, -1) << "outside is at no edge";
    EXPECT_EQ(Told("place 100") + Told("place 0"), 0);
}

TEST_F(PlayerTest, APauseKeepsTheDeviceAndTheNextStartWaitsForItsBuffers) {
    MakeTake(50);
    ASSERT_TRUE(player.StartPlaying(1));
    Finish(3);
    player.StopPlaying();
    EXPECT_TRUE(player.IsActive() && !player.IsPlaying() && !player.IsClosed());
    player.WavRestartPlaying(40);
    ASSERT_TRUE(player.StartPlaying(1));
    EXPECT_EQ(waves.out.Count("Write"), 7U) << "its buffers are still on their way back";
    loop.RunPending();
    EXPECT_EQ(waves.out.queue.size(), 4U);
    FinishAll();
    EXPECT_EQ(Heard(), Range(0, 3) + Range(40, 50));
    EXPECT_EQ(waves.out.Count("OpenOutput"), 1U);

    // Paused in peace, then in another format.
    Start(0);
    player.StopPlaying();
    loop.RunPending();
    EXPECT_FALSE(player.IsActive() || player.IsClosed());
    EXPECT_TRUE(waves.out.queue.empty()) << "no end marker behind a pause";
    ASSERT_TRUE(player.StartPlaying(2));
    EXPECT_EQ(waves.out.format.channels, 2);
    EXPECT_EQ(waves.out.queue.front()->bufferLength, 2 * kBufferBytes);

    player.WavExitPlaying();
    EXPECT_TRUE(player.IsClosed() && !player.IsActive() && !buffers.AnyQueued());
    loop.RunPending();
    EXPECT_EQ(Told("played out"), 1);
    EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(PlayerTest, RefusesToStartWhereItWouldDisturb) {
    MakeTake(20);
    EXPECT_FALSE(player.StartPlaying(1, true));
    buffers[9].queued = true;
    EXPECT_FALSE(player.StartPlaying(1));
    EXPECT_EQ(waves.out.Count("OpenOutput"), 0U);
    buffers[9].queued = false;
    Start(0);
    EXPECT_FALSE(player.StartPlaying(1));
    EXPECT_EQ(boxes.texts, (Texts{u"StartPlaying", u"StartPlaying", u"StartPlaying"}));
    EXPECT_TRUE(player.IsPlaying());
}

TEST_F(PlayerTest, EveryFailureOfTheDeviceHasItsNameAndNoneHangs) {
    const struct {
        std::string call;
        Text text;
        Periods heard;
        bool open = false;  // the device, afterwards
    } cases[] = {
        {"OpenOutput", u"waveOutOpen", {}},
        {"Restart", u"waveOutRestart", {}},
        {"Prepare#2", u"waveOutPrepareHeader err=4", {0, 2, 3, 4, 5}},
        {"Write#2", u"waveOutWrite bufid=1", {0, 2, 3, 4, 5}},
        {"Unprepare#3", u"waveOutUnprepareHeader", Range(0, 6)},
        {"Prepare#7", u"waveOutPrepareHeader0 err=4", Range(0, 6)},
        {"Write#7", u"waveOutWrite 0", Range(0, 6)},
        {"Reset", u"waveOutReset", Range(0, 6), true},
        {"Close", u"waveOutClose", Range(0, 6)},
    };
    MakeTake(6);
    const auto play = [&](const std::string& failing) {
        waves.out = {};
        waves.out.results[failing] = WaveResult::kFailed;
        player.WavRestartPlaying(0);
        (void)player.StartPlaying(1);
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.call);
        boxes.texts.clear();
        play(one.call);
        FinishAll();
        EXPECT_EQ(Heard(), one.heard);
        EXPECT_EQ(boxes.texts, Texts{one.text});
        EXPECT_EQ(player.IsClosed(), !one.open);
        EXPECT_FALSE(player.IsActive());
        waves.out.results.clear();
        player.WavExitPlaying();
    }
    play("Write");
    EXPECT_TRUE(player.IsClosed() && !player.IsPlaying()) << "no buffer would ever come back";
}

TEST_F(PlayerTest, ALostDeviceEndsPlaying) {
    MakeTake(50);
    ASSERT_TRUE(player.StartPlaying(1));
    Finish(2);
    waves.out.events->OnWaveOutLost(WaveLoss::kVanished);
    EXPECT_TRUE(player.IsClosed() && !player.IsActive() && !buffers.AnyQueued());
    EXPECT_EQ(listener.events, (Strings{"playing", "lost"}));
    EXPECT_EQ(boxes.texts, Texts{u"Sound output lost"});
    EXPECT_EQ(Hear(48), Range(48, 50));
}

TEST_F(PlayerTest, ATakeThatCannotBeReadAnyMoreIsHeardUpToThere) {
    MakeTake(50);
    ASSERT_TRUE(player.StartPlaying(1));
    Finish(2);
    storage.FailAt(FaultyStorage::kRead, 1, FaultyStorage::Extent::kFromThenOn, 5);
    // Behind the reader's box all the other buffers come back.
    boxes.whileShowing = [&] { Finish(3); };
    FinishAll();
    EXPECT_EQ(Heard(), Range(0, 6));
    EXPECT_EQ(boxes.texts.size(), 1U);
    EXPECT_TRUE(player.IsClosed());
    EXPECT_EQ(listener.events, (Strings{"playing", "played out"}));
}

TEST_F(PlayerTest, ButtonsPressedBehindABoxOrFromAListenerCountAtOnce) {
    MakeTake(50);
    const std::function<void()> presses[] = {
        [&] { player.StopPlaying(); },
        [&] { player.WavExitPlaying(); },
        [&] { player.WavRestartPlaying(3); },
        [&] {
            player.StopPlaying();
            player.StartPlaying(1);  // refused behind the reader's box
        },
        [&] { waves.out.events->OnWaveOutLost(WaveLoss::kStalled); },
    };
    for (const auto& press : presses) {
        Start(0);
        storage.FailAt(FaultyStorage::kRead, 1, FaultyStorage::Extent::kOnce, 5);
        boxes.whileShowing = press;
        FinishAll();
        loop.RunPending();
        EXPECT_FALSE(player.IsPlaying() || player.IsActive());
        player.WavExitPlaying();
    }
    // From a listener: stopped and started anew, no buffer is written twice.
    int told = 0;
    listener.whileTold = [&] {
        if (++told != 2) return;
        player.StopPlaying();
        player.WavRestartPlaying(45);
        EXPECT_TRUE(player.StartPlaying(1));
    };
    Start(0);
    Finish(2);
    loop.RunPending();
    FinishAll();
    EXPECT_EQ(Heard(), Range(0, 2) + Range(45, 50));
    EXPECT_TRUE(player.IsClosed());
}

}  // namespace
}  // namespace orma::test
