#include "app/transport.h"

#include <sstream>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_bytes.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kPeriodBytes = 4410;
constexpr std::uint32_t kLength = 100;  // periods of the recording, 20 a second

struct Helpers : DesktopHelpers {
    bool StartMicrophoneGainTool(std::uint32_t mode) override {
        asked.push_back("tool " + std::to_string(mode));
        return hasTool;
    }
    void CloseSynchronisation() override { asked.emplace_back("sync"); }

    bool hasTool = false;
    std::vector<std::string> asked;
};

/// The application with its buttons, on a fake microphone and loudspeaker. One take is there, whose
/// samples say the period; its clip is current and the cursor stands at 40.
class Desktop : public HeadsetProbe, public TransportListener, public PublishProgress {
  public:
    Desktop() {
        EXPECT_TRUE(OpenOrCreateProject(app, folder.Path(u"talk.opr")));
        Bytes data(std::size_t{kLength} * kPeriodBytes);
        for (std::size_t i = 0; i < data.size() / 2; ++i)
            StoreLe(&data[2 * i], static_cast<std::uint16_t>(i / (kPeriodBytes / 2)));
        WriteFileBytes(folder.Path(u"old.wav"), WavBytes({}, data));
        LevelSheet sheet;
        sheet.marks = {10, 50, 90};
        sheet.cuts = {{60, 70, 7}};
        sheet.levels.assign(kLength, 40);
        EXPECT_TRUE(WriteVuFile(app.files, folder.Path(u"old.jvu"), sheet));
        ClipEntry clip;
        clip.name = u"old";
        clip.folder = folder.Path();
        EXPECT_TRUE(app.project.SelectClip(app.clips.Append(clip)));
        transport.MoveTo(40);
        app.settings.CloseSync = 1;
    }

    /// A button as a screen presses it: toggles ask for the opposite of their look.
    void Press(char button) {
        switch (button) {
            case 'R':
                return transport.Record(!lit.record);
            case 'P':
                return transport.Play(!lit.play);
            case 'S':
                return transport.Stop(!lit.stop);
            case '<':
                return transport.Rewind(!lit.rewind);
            case '>':
                return transport.FastForward(!lit.fastForward);
            case 'b':
                return transport.BackMark();
            default:
                return transport.ForwardMark();
        }
    }

    void Press(std::string_view buttons) {
        for (const char button : buttons)
            Press(button);
    }

    /// Lets `periods` be heard.
    void Hear(int periods) {
        for (int i = 0; i < periods && waves.out.FinishOne(); ++i)
            loop.RunPending();
    }

    void Speak(int periods) {
        for (int i = 0; i < periods; ++i)
            (void)waves.in.DeliverValue(500);
    }

    [[nodiscard]] std::uint32_t Cursor() const { return app.recording.cursor; }
    [[nodiscard]] int Lamp() const { return static_cast<int>(transport.State()); }

    int State(bool) override { return headset; }
    void OnTransportState(TransportState state, const LitButtons& buttons) override {
        told += std::to_string(static_cast<int>(state));
        lit = buttons;
    }
    void OnMarkText(const Text& text, std::uint32_t) override { markTexts.push_back(text); }
    void OnEdgeMoved(const EdgeMove& move) override { moves.push_back(move); }
    void OnClosed() override { told += 'c'; }
    void OnPlayedOut() override { told += 'o'; }
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }

    TempFolder folder;
    FaultyStorage storage;
    FakeBoxes boxes;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    Helpers helpers;
    int headset = -1;
    std::string told;  // the events, in order: state numbers, 'c' input closed, 'o' played out
    LitButtons lit{.stop = true};
    std::vector<Text> markTexts;
    std::vector<EdgeMove> moves;
    Application app{Ports{.storage = storage,
                          .clock = clock,
                          .boxes = boxes,
                          .loop = loop,
                          .waves = waves,
                          .headset = *this,
                          .desktop = &helpers},
                    FrontEnd{*this, *this}, folder.Path()};
    Transport& transport = app.transport;
};

TEST(TransportTest, EveryButtonInEveryStateLeadsWhereTheTableSays) {
    constexpr std::string_view kButtons = "RPS<>bf";
    constexpr std::array<std::string_view, 6> kWays = {"", "R", "RP", "P", ">", "<"};
    constexpr std::array<std::string_view, 6> kNext = {"1305400", "0201111", "2202222",
                                                       "0305433", "0305444", "0305455"};
    constexpr std::array<LitButtons, 6> kLit = {LitButtons{.stop = true},       {.record = true},
                                                {.play = true, .record = true}, {.play = true},
                                                {.fastForward = true},          {.rewind = true}};
    for (std::size_t state = 0; state < kWays.size(); ++state) {
        for (std::size_t i = 0; i < kButtons.size(); ++i) {
            SCOPED_TRACE(std::to_string(state) + kButtons[i]);
            Desktop desk;
            desk.Press(kWays[state]);
            desk.Hear(2);
            ASSERT_EQ(desk.Lamp(), static_cast<int>(state));
            desk.Press(kButtons[i]);
            if (state == 2) desk.loop.RunPending();  // the take drains
            const int next = kNext[state][i] - '0';
            EXPECT_EQ(desk.Lamp(), next);
            EXPECT_EQ(desk.lit, kLit[static_cast<std::size_t>(next)]);
            EXPECT_EQ(desk.app.recorder.IsActive(), next == 1 || next == 2);
            EXPECT_EQ(desk.app.recorder.IsSavingPending(), next == 2);
            EXPECT_EQ(desk.app.player.IsPlaying(), next >= 3);
            EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
            if (next != 0 || state == 2) continue;
            desk.Press(state >= 3 ? 'R' : 'P');
            EXPECT_EQ(desk.Lamp(), state >= 3 ? 1 : 3) << "at once, whatever still comes back";
        }
    }
}

TEST(TransportTest, WhatEndsByItselfLeavesTheTransportStopped) {
    struct Case {
        const char* pressed;
        void (*end)(Desktop&);
        const char* told;
        std::uint32_t cursor;
    };
    const auto hearAll = [](Desktop& desk) { desk.Hear(500); };
    const Case cases[] = {
        {"P", hearAll, "30o", kLength},
        {">", hearAll, "40o", kLength},
        {"<", hearAll, "50o", 0},
        {"P", [](Desktop& desk) { desk.waves.out.events->OnWaveOutLost(WaveLoss::kVanished); },
         "30", 40},
        {"P", [](Desktop& desk) { desk.app.player.WavExitPlaying(); }, "30", 40},
        {"R", [](Desktop& desk) { desk.waves.in.Lose(WaveLoss::kVanished); }, "10c", 40},
        {"RP",
         [](Desktop& desk) {
             desk.Speak(30);
             desk.waves.in.Lose(WaveLoss::kStalled);
         },
         "120c", 0},
        {"RP",
         [](Desktop& desk) {
             desk.Speak(5);
             desk.storage.FailAt(FaultyStorage::kWrite, 1, FaultyStorage::Extent::kFromThenOn);
             desk.Speak(40);
             desk.storage.FailAt(0, 0);
         },
         "120c", 0},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::string(row.pressed) + " " + row.told);
        Desktop desk;
        desk.Press(row.pressed);
        row.end(desk);
        desk.loop.RunPending();
        EXPECT_EQ(desk.told, row.told);
        EXPECT_EQ(desk.Cursor(), row.cursor);
        EXPECT_EQ(desk.lit, LitButtons{.stop = true});
    }
}

TEST(TransportTest, StopWhileStoppedGoesToBeginAndEndOfTheLastPlaying) {
    Desktop desk;
    const auto visited = [&desk](int presses) {
        std::ostringstream places;
        while (presses-- > 0) {
            desk.Press('S');
            places << desk.Cursor() << ' ';
        }
        return places.str();
    };
    EXPECT_EQ(visited(2), "0 0 ") << "nothing was played yet";
    desk.transport.MoveTo(40);
    desk.Press('P');
    desk.Hear(10);
    EXPECT_EQ(desk.Cursor(), 50U) << "what is heard, not what is written";
    desk.Press('S');
    EXPECT_EQ(desk.Cursor(), 50U);
    EXPECT_EQ(visited(3), "40 50 40 ");

    desk.app.recording.selectionStart = 70;
    desk.app.recording.selectionEnd = kLength;
    desk.transport.MoveTo(80);
    desk.Press('P');
    desk.Hear(100);
    EXPECT_EQ(visited(3), "80 100 80 ") << "the begin comes first behind every stop";
    desk.Press("S");
    EXPECT_EQ(desk.Cursor(), kLength);
    desk.Press("P");
    EXPECT_EQ(desk.Lamp(), 0) << "at the end nothing is left to play";

    desk.Press("RS");
    desk.loop.RunPending();
    EXPECT_EQ(visited(2), "0 0 ") << "recording forgets them";
    EXPECT_EQ(desk.app.player.Range(), PeriodRange{});
    desk.Press("P");
    desk.Hear(10);
    desk.Press("S");
    ASSERT_TRUE(desk.app.project.OpenRecording(desk.folder.Path(u"old.wav")));
    desk.app.recording.audioPath = desk.folder.Path(u"other.wav");
    EXPECT_EQ(visited(2), "0 0 ") << "they are of another recording";
}

TEST(TransportTest, PlayingBeginsAtTheCursorASecondBeforeTheCurrentCutAndEndsWithTheSelection) {
    struct Case {
        std::uint32_t cursor;
        std::int32_t cut;
        PeriodRange selection;
        std::uint32_t first, last;  // periods that are heard
        std::int32_t cutBehind;
    };
    const Case cases[] = {
        {40, -1, {0, 0}, 40, 99, -1},   {65, 0, {0, 0}, 40, 99, 0},
        {60, 0, {50, 80}, 50, 79, 0},   {70, 0, {66, 80}, 70, 79, 0},
        {60, 0, {80, 90}, 40, 99, 0},   {71, 0, {0, 0}, 71, 99, -1},
        {20, -1, {30, 50}, 20, 99, -1}, {30, -1, {30, 50}, 30, 49, -1},
        {50, -1, {30, 50}, 50, 99, -1},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::to_string(row.cursor) + " cut " + std::to_string(row.cut));
        Desktop desk;
        CurrentRecording& recording = desk.app.recording;
        recording.cursor = row.cursor;
        recording.currentCut = row.cut;
        recording.selectionStart = row.selection.begin;
        recording.selectionEnd = row.selection.end;
        desk.Press('P');
        EXPECT_EQ(recording.currentCut, row.cutBehind);
        desk.Hear(200);
        const Bytes& heard = desk.waves.out.played;
        ASSERT_GT(heard.size(), kPeriodBytes);
        EXPECT_EQ(LoadLe<std::uint16_t>(heard.data()), row.first);
        EXPECT_EQ(LoadLe<std::uint16_t>(&heard[heard.size() - 2]), row.last);
    }
}

TEST(TransportTest, APauseSkipsNothingAndWindingGoesOnFromWhatIsHeard) {
    Desktop desk;
    desk.Press('P');
    desk.Hear(10);
    desk.Press("S");
    desk.waves.out.played.clear();
    desk.Press("P");
    desk.Hear(1);
    EXPECT_EQ(LoadLe<std::uint16_t>(desk.waves.out.played.data()), 50);

    desk.Press('>');
    desk.Hear(5);
    desk.Press('<');
    desk.Press('P');
    EXPECT_EQ(desk.told,
              "3034"
              "53")
        << "from one to the other without a stop";
    EXPECT_EQ(desk.waves.out.Count("OpenOutput"), 2U);
    desk.transport.MoveTo(kLength);
    desk.Hear(100);
    ASSERT_EQ(desk.Lamp(), 0);
    desk.Press('>');
    EXPECT_EQ(desk.Lamp(), 0);
    desk.Press('<');
    desk.Hear(8);
    EXPECT_EQ(desk.Lamp(), 5) << "winding back from the end";
    EXPECT_LT(desk.Cursor(), kLength - 20);
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, APlaceThatIsPickedWhilePlayingIsPlayedToItsOwnEnd) {
    for (const std::int32_t place : {10, 80}) {
        Desktop desk;
        desk.app.recording.selectionStart = 30;
        desk.app.recording.selectionEnd = 55;
        desk.transport.MoveTo(30);
        desk.Press('P');
        desk.Hear(2);
        desk.transport.MoveTo(place);
        EXPECT_EQ(desk.Lamp(), 3) << place;
        desk.Hear(200);
        EXPECT_EQ(desk.Cursor(), kLength) << place;
    }
}

TEST(TransportTest, WhatIsStillHeardBehindTheLastBufferCanBeStoppedAndWoundBack) {
    for (const char button : {'S', '<'}) {
        Desktop desk;
        desk.app.recording.selectionStart = 30;
        desk.app.recording.selectionEnd = 98;
        desk.transport.MoveTo(98);
        desk.Press('P');
        ASSERT_FALSE(desk.app.player.IsPlaying()) << "two periods are all in the queue";
        desk.Press(button);
        desk.Hear(3);
        EXPECT_EQ(desk.told, button == 'S' ? "30" : "35");
        EXPECT_TRUE(desk.moves.empty()) << "an edge is nudged only while stopped";
        EXPECT_EQ(desk.app.player.IsClosed(), button == 'S');
    }
}

TEST(TransportTest, AnMp2TakeIsRewoundFromItsVeryEnd) {
    Desktop desk;
    desk.app.audio.mp2 = true;
    desk.Press("RP");
    desk.Speak(60);
    desk.Press('S');
    desk.loop.RunPending();
    desk.transport.MoveTo(1000);
    const std::uint32_t end = desk.Cursor();
    desk.Press('<');
    desk.Hear(3);
    EXPECT_EQ(desk.Lamp(), 5);
    desk.Press('S');
    EXPECT_LT(desk.Cursor(), end);
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, WindingLeavesTheSelection) {
    Desktop desk;
    desk.app.recording.selectionStart = 30;
    desk.app.recording.selectionEnd = 55;
    desk.Press("P>");
    desk.Hear(6);
    EXPECT_TRUE(desk.app.player.IsPlaying());
    EXPECT_GT(desk.Cursor(), 60U);
    desk.transport.MoveTo(35);
    desk.Press('P');
    desk.Hear(100);
    EXPECT_EQ(desk.Cursor(), 55U) << "back to playing, it ends with the selection again";
}

TEST(TransportTest, WindingNudgesTheEdgeUnderTheCursorAndStoresIt) {
    struct Case {
        std::uint32_t cursor;
        RemovedRange cut;  // the current one, if its third value is 7
        PeriodRange selection;
        char button;
        RemovedRange cutBehind;
        PeriodRange selectionBehind;
    };
    const Case cases[] = {
        {60, {60, 70, 7}, {60, 80}, '<', {59, 70, 7}, {60, 80}},  // the cut goes first
        {60, {60, 70, 7}, {0, 0}, '>', {61, 70, 7}, {0, 0}},
        {70, {60, 70, 7}, {0, 0}, '>', {60, 71, 7}, {0, 0}},
        {69, {69, 70, 7}, {0, 0}, '>', {70, 70, 7}, {0, 0}},
        {70, {70, 70, 7}, {0, 0}, '>', {70, 71, 7}, {0, 0}},
        {70, {70, 70, 7}, {0, 0}, '<', {69, 70, 7}, {0, 0}},
        {0, {0, 70, 7}, {0, 0}, '<', {0, 70, 7}, {0, 0}},
        {kLength, {60, kLength, 7}, {0, 0}, '>', {60, kLength, 7}, {0, 0}},
        {60, {60, 70, 0}, {60, 80}, '<', {60, 70, 0}, {59, 80}},
        {80, {60, 70, 7}, {60, 80}, '>', {60, 70, 7}, {60, 81}},
        {79, {60, 70, 0}, {79, 80}, '>', {60, 70, 0}, {79, 80}},
        {80, {60, 70, 0}, {79, 80}, '<', {60, 70, 0}, {79, 80}},
    };
    for (const bool failing : {false, true}) {
        for (const Case& row : cases) {
            SCOPED_TRACE(std::to_string(row.cursor) + row.button + (failing ? " failing" : ""));
            Desktop desk;
            CurrentRecording& recording = desk.app.recording;
            recording.sheet.cuts = {row.cut};
            recording.currentCut = row.cut.third == 7 ? 0 : -1;
            recording.cursor = row.cursor;
            recording.selectionStart = row.selection.begin;
            recording.selectionEnd = row.selection.end;
            const ClipEntry before = *desk.app.clips.Current();
            if (failing)
                desk.storage.FailAt(FaultyStorage::kOpen | FaultyStorage::kWrite, 1,
                                    FaultyStorage::Extent::kFromThenOn);
            desk.Press(row.button);
            desk.storage.FailAt(0, 0);

            EXPECT_EQ(desk.Lamp(), 0) << "an edge that may not go on does not wind either";
            const bool moves = row.cut != row.cutBehind || row.selection != row.selectionBehind;
            const bool moved = moves && !failing;
            const PeriodRange selection{recording.selectionStart, recording.selectionEnd};
            EXPECT_EQ(recording.sheet.cuts[0], moved ? row.cutBehind : row.cut);
            EXPECT_EQ(selection, moved ? row.selectionBehind : row.selection);
            ASSERT_EQ(desk.moves.size(), moved ? 1U : 0U);
            EXPECT_EQ(desk.boxes.shown.empty(), moved || !moves);
            const ClipEntry& clip = *desk.app.clips.Current();
            if (!moved) {
                EXPECT_EQ(recording.cursor, row.cursor);
                EXPECT_EQ(clip.begin, before.begin);
                EXPECT_EQ(clip.end, before.end);
                continue;
            }
            EXPECT_EQ(desk.moves[0].from, row.cursor);
            EXPECT_EQ(desk.moves[0].to, recording.cursor) << "the cursor stays on the edge";
            if (row.cut != row.cutBehind) {
                const auto stored = ReadVuFile(desk.app.files, recording.levelPath);
                ASSERT_TRUE(stored);
                EXPECT_EQ(stored->cuts, recording.sheet.cuts);
                EXPECT_EQ(clip.length, kLength - (row.cutBehind.end - row.cutBehind.begin));
            } else {
                EXPECT_EQ(clip.begin, selection.begin);
                EXPECT_EQ(clip.end, selection.end);
            }
        }
    }
}

TEST(TransportTest, MarkButtonsStepOverMarksSelectionAndEnds) {
    Desktop desk;
    desk.app.recording.selectionStart = 30;
    desk.app.recording.selectionEnd = 95;
    std::ostringstream places;
    for (const char button : std::string_view("bbbbffffffff")) {
        desk.Press(button);
        places << desk.Cursor() << ' ';
    }
    EXPECT_EQ(places.str(), "30 10 0 0 10 30 50 90 95 100 100 100 ");
}

TEST(TransportTest, ATakeFromRecordReadyToClip) {
    Desktop desk;
    desk.Press('R');
    desk.transport.MoveTo(5);
    EXPECT_EQ(desk.Cursor(), 40U) << "not while the input is open";
    desk.Speak(7);
    EXPECT_FALSE(desk.app.recorder.IsSavingPending());
    desk.Press('P');
    desk.Press('R');
    EXPECT_TRUE(desk.markTexts.empty()) << "nothing is saved yet";
    desk.Speak(11);
    desk.Press('R');
    desk.Speak(14);
    desk.Press("PR");
    EXPECT_EQ(desk.markTexts, (std::vector<Text>{u"  Mark   1 ", u"  Mark   2 "}));
    desk.Press('S');
    desk.Press('P');
    EXPECT_EQ(desk.told, "120") << "not before the take is closed";
    desk.loop.RunPending();
    EXPECT_EQ(desk.told, "120c");
    EXPECT_EQ(desk.app.recording.sheet.marks, (std::vector<std::uint32_t>{10, 24}));
    EXPECT_EQ(desk.app.clips.Count(), 2);
    desk.Press('P');
    desk.Hear(8);
    EXPECT_EQ(desk.Lamp(), 3);
    EXPECT_GT(desk.Cursor(), 0U) << "the new take is heard from its begin";
    EXPECT_EQ(desk.helpers.asked, std::vector<std::string>{"sync"});
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, RecordChoosesTheEqualizerSetForTheHeadset) {
    for (const int headset : {-1, 0, 1}) {
        Desktop desk;
        desk.headset = headset;
        InputProcessingSettings settings;
        settings.sets[0].name = u"mic_int";
        settings.sets[1].name = u"mic_ext";
        settings.currentSetName = u"mic_int";
        desk.app.input.Load(settings, 44100);
        desk.Press('R');
        EXPECT_EQ(desk.app.input.CurrentSetName(), headset == 1 ? u"mic_ext" : u"mic_int");
        desk.headset = 1;
        desk.Press('R');
        EXPECT_EQ(desk.Lamp(), 0);
        EXPECT_EQ(desk.app.input.CurrentSetName(), headset == 1 ? u"mic_ext" : u"mic_int")
            << "not when the button goes out";
    }
}

TEST(TransportTest, TheGainToolTakesTheFirstPressWhereThereIsOne) {
    struct Case {
        bool hasTool;
        bool externalRecorder;
        std::vector<std::string> asked;
    };
    for (const Case& row : {Case{false, false, {"tool 1", "sync"}},
                            Case{true, false, {"tool 1", "sync"}}, Case{true, true, {"sync"}}}) {
        Desktop desk;
        desk.app.settings.MicGainTool = 1;
        desk.app.settings.MicGainToolMode = 1;
        desk.helpers.hasTool = row.hasTool;
        desk.app.audio.externalRecorder = row.externalRecorder;
        desk.Press('R');
        const bool taken = row.hasTool && !row.externalRecorder;
        EXPECT_EQ(desk.Lamp(), taken ? 0 : 1);
        if (taken) desk.Press('R');
        EXPECT_EQ(desk.Lamp(), 1);
        EXPECT_EQ(desk.helpers.asked, row.asked);
    }
}

TEST(TransportTest, ARefusedStartLeavesItStoppedAndReadyForPlaying) {
    for (const char* call : {"OpenInput", "Start"}) {
        SCOPED_TRACE(call);
        Desktop desk;
        desk.waves.in.results[call] = WaveResult::kFailed;
        desk.Press('R');
        EXPECT_EQ(desk.told, "10");
        EXPECT_TRUE(desk.helpers.asked.empty());
        desk.Press('P');
        EXPECT_EQ(desk.Lamp(), 3);
        EXPECT_EQ(desk.boxes.shown.size(), 1U);
    }
    Desktop desk;
    desk.waves.out.results["OpenOutput"] = WaveResult::kFailed;
    desk.Press('P');
    EXPECT_EQ(desk.told, "30");
    ASSERT_EQ(desk.storage.Delete(desk.folder.Path(u"old.wav")), 0U);
    desk.Press('P');
    EXPECT_EQ(desk.told, "30") << "a recording that is gone is not played";
}

}  // namespace
}  // namespace orma::test
