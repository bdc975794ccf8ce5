#include "transport/transport.h"

#include <array>
#include <sstream>

#include "transport/desktop.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kLength = 100;  // periods of the recording, 20 a second

/// One take is there; its clip is current and the cursor stands at 40.
class Desk : public Desktop {
  public:
    Desk() {
        EXPECT_TRUE(app.project.SelectClip(AddTake(u"old", kLength, {{60, 70, 7}})));
        app.recording.sheet.marks = {10, 50, 90};
        transport.MoveTo(40);
        transport.SetOptions({.closeSynchronisation = true});
    }

    void Select(PeriodRange range) {
        app.recording.selectionStart = range.begin;
        app.recording.selectionEnd = range.end;
    }

    /// Presses buttons, lets periods be heard (+n), moves the place (@n), runs what is pending (|)
    /// notes the cursor (.), and takes hold of the place or lets it go: ( and ).
    void Play(const std::string& script) {
        std::istringstream in(script);
        int number = 0;
        for (char key = 0; in >> key;) {
            if (key == '+' || key == '@') in >> number;
            if (key == '+')
                Hear(number);
            else if (key == '@')
                transport.MoveTo(number);
            else if (key == '|')
                loop.RunPending();
            else if (key == '(' || key == ')')
                transport.Drag(key == '(');
            else if (key == '.')
                places += std::to_string(Cursor()) + " ";
            else
                Press(key);
        }
    }

    std::string places;
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
            Desk desk;
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

TEST(TransportTest, WhereTheButtonsLead) {
    struct Case {
        PeriodRange selection;
        const char* script;
        const char* told;
        const char* places;
    };
    const Case cases[] = {
        // To the end, which may be the beginning.
        {{}, "P +500 . P", "30o", "100 "},
        {{}, "> +500 . >", "40o", "100 "},
        {{}, "< +500 .", "50o", "0 "},
        {{30, 55}, "@30 P +500 .", "30o", "55 "},
        // What is heard, not what is written; the begin comes first behind every stop.
        {{}, "S . S .", "", "0 0 "},
        {{}, "P +10 S . S . S . S .", "30", "50 40 50 40 "},
        {{}, "P +10 S S P +5 S . S . S .", "3030", "45 40 45 "},
        {{70, 100}, "@80 P +100 S . S . S . S S .", "30o", "80 100 80 80 "},
        // Trying the microphone forgets nothing, a take does.
        {{}, "P +10 S RS | S . S .", "3010c", "40 50 "},
        {{}, "P +10 S RPS | S . S .", "30120c", "40 50 "},  // discarded: too short
        // From one to the other without a stop.
        {{}, "P +10 > +5 < P +500", "34530o", ""},
        {{}, "@100 > < +8 S", "50", ""},
        // A place that is picked has its own end, and winding knows none but the recording's.
        {{30, 55}, "@30 P +2 @10 +200 .", "30o", "100 "},
        {{30, 55}, "@30 P +2 @80 +200 .", "30o", "100 "},
        {{30, 55}, "P > +500 .", "340o", "100 "},
        {{30, 55}, "P > +6 @35 P +100 .", "3430o", "55 "},
        // Dragged about, it still plays.
        {{30, 55}, "( @30 P +2 ( @80 ) +200 .", "3630o", "100 "},
        {{30, 55}, "@30 P +2 ( @10 @40 +200 . )", "360o", "55 "},
        {{}, "P > ( +2 ) S", "340", ""},
        // What is still heard behind the last buffer can be stopped, and wound back.
        {{30, 98}, "@98 P S +3", "30", ""},
        {{30, 98}, "@98 P < +3", "35", ""},
        {{30, 95}, "b.b.b.b.f.f.f.f.f.f.f.f.", "", "30 10 0 0 10 30 50 90 95 100 100 100 "},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.script);
        Desk desk;
        desk.Select(row.selection);
        desk.Play(row.script);
        EXPECT_EQ(desk.told, row.told);
        EXPECT_EQ(desk.places, row.places);
        EXPECT_EQ(desk.app.player.IsPlaying(), desk.Lamp() >= 3);
        EXPECT_TRUE(desk.moves.empty()) << "an edge is nudged only while stopped";
        EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
    }
}

TEST(TransportTest, WhatEndsByItselfLeavesTheTransportStopped) {
    struct Case {
        const char* pressed;
        void (*end)(Desk&);
        const char* told;
        std::uint32_t cursor;
    };
    const Case cases[] = {
        {"P", [](Desk& desk) { desk.waves.out.events->OnWaveOutLost(WaveLoss::kVanished); }, "30",
         40},
        {"P", [](Desk& desk) { desk.app.player.WavExitPlaying(); }, "30", 40},
        {"R", [](Desk& desk) { desk.waves.in.Lose(WaveLoss::kVanished); }, "10c", 40},
        {"RP",
         [](Desk& desk) {
             desk.Speak(30);
             desk.waves.in.Lose(WaveLoss::kStalled);
         },
         "120c", 0},
        {"RP",
         [](Desk& desk) {
             desk.Speak(5);
             desk.storage.FailAt(FaultyStorage::kWrite, 1, FaultyStorage::Extent::kFromThenOn);
             desk.Speak(40);
             desk.storage.FailAt(0, 0);
         },
         "120c", 0},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::string(row.pressed) + " " + row.told);
        Desk desk;
        desk.Press(row.pressed);
        row.end(desk);
        desk.loop.RunPending();
        EXPECT_EQ(desk.told, row.told);
        EXPECT_EQ(desk.Cursor(), row.cursor);
        EXPECT_EQ(desk.lit, LitButtons{.stop = true});
    }
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
        Desk desk;
        desk.app.recording.cursor = row.cursor;
        desk.app.recording.currentCut = row.cut;
        desk.Select(row.selection);
        desk.Press('P');
        EXPECT_EQ(desk.app.recording.currentCut, row.cutBehind);
        desk.Hear(200);
        ASSERT_FALSE(desk.Heard().empty());
        EXPECT_EQ(desk.Heard().front(), row.first);
        EXPECT_EQ(desk.Heard().back(), row.last);
    }
    Desk desk;  // a pause skips nothing
    desk.Play("P +10 S");
    desk.waves.out.played.clear();
    desk.Play("P +1");
    EXPECT_EQ(desk.Heard().front(), 50U);
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
            Desk desk;
            CurrentRecording& recording = desk.app.recording;
            recording.sheet.cuts = {row.cut};
            recording.currentCut = row.cut.third == 7 ? 0 : -1;
            recording.cursor = row.cursor;
            desk.Select(row.selection);
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

TEST(TransportTest, ATakeFromRecordReadyToClip) {
    Desk desk;
    desk.Play("P +10 S R @5 .");
    EXPECT_EQ(desk.places, "50 ") << "not while the input is open";
    desk.Speak(7);
    EXPECT_FALSE(desk.app.recorder.IsSavingPending());
    desk.Press("PR");
    EXPECT_TRUE(desk.markTexts.empty()) << "nothing is saved yet";
    desk.Speak(11);
    desk.Press('R');
    desk.Speak(14);
    desk.Press("PR");
    EXPECT_EQ(desk.markTexts, (std::vector<Text>{u"  Mark   1 ", u"  Mark   2 "}));
    desk.Press("SP");
    EXPECT_EQ(desk.told, "30120") << "not before the take is closed";
    desk.loop.RunPending();
    EXPECT_EQ(desk.told, "30120c");
    EXPECT_EQ(desk.app.recording.sheet.marks, (std::vector<std::uint32_t>{10, 24}));
    EXPECT_EQ(desk.app.clips.Count(), 2);
    EXPECT_EQ(desk.app.player.Range(), PeriodRange{});
    desk.places.clear();
    desk.Play("S . S . P +8 .");
    EXPECT_EQ(desk.places, "0 0 8 ") << "the places of the other recording do not count";
    EXPECT_EQ(desk.asked, "sync ");
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, AnMp2TakeIsRewoundFromItsVeryEnd) {
    Desk desk;
    desk.app.audio.mp2 = true;
    desk.Press("RP");
    desk.Speak(60);
    desk.Play("S | @1000");
    const std::uint32_t end = desk.Cursor();
    desk.Play("< +3");
    EXPECT_EQ(desk.Lamp(), 5);
    desk.Press('S');
    EXPECT_LT(desk.Cursor(), end);
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, TheFirstPressOfRecordGoesToTheGainToolWhereThereIsOneAndTheHeadsetChooses) {
    InputProcessingSettings settings;
    settings.sets[0].name = settings.currentSetName = u"mic_int";
    settings.sets[1].name = u"mic_ext";
    for (const bool hasTool : {false, true}) {
        for (const bool externalRecorder : {false, true}) {
            Desk desk;
            desk.transport.SetOptions(
                {.runGainTool = true, .gainToolMode = 1, .closeSynchronisation = true});
            desk.app.input.Load(settings, 44100);
            desk.hasTool = hasTool;
            desk.headset = hasTool ? 1 : 0;
            desk.app.audio.externalRecorder = externalRecorder;
            desk.Press('R');
            const bool taken = hasTool && !externalRecorder;
            EXPECT_EQ(desk.Lamp(), taken ? 0 : 1);
            if (taken) desk.Press('R');
            EXPECT_EQ(desk.Lamp(), 1);
            EXPECT_EQ(desk.asked, externalRecorder ? "sync " : "tool1 sync ");
            const Text expected = hasTool ? u"mic_ext" : u"mic_int";
            EXPECT_EQ(desk.app.input.CurrentSetName(), expected);
            desk.headset = 1;
            desk.Press('R');
            EXPECT_EQ(desk.app.input.CurrentSetName(), expected) << "not when the button goes out";
        }
    }
}

TEST(TransportTest, ARefusedStartLeavesItStoppedAndReadyForPlaying) {
    for (const char* call : {"OpenInput", "Start"}) {
        SCOPED_TRACE(call);
        Desk desk;
        desk.waves.in.results[call] = WaveResult::kFailed;
        desk.Press('R');
        EXPECT_EQ(desk.told, "10");
        EXPECT_EQ(desk.asked, "");
        desk.Press('P');
        EXPECT_EQ(desk.Lamp(), 3);
        EXPECT_EQ(desk.boxes.shown.size(), 1U);
    }
    Desk desk;
    desk.waves.out.results["OpenOutput"] = WaveResult::kFailed;
    desk.Press('P');
    EXPECT_EQ(desk.told, "30");
    ASSERT_EQ(desk.storage.Delete(desk.folder.Path(u"old.wav")), 0U);
    desk.Press('P');
    EXPECT_EQ(desk.told, "30") << "a recording that is gone is not played";
}

}  // namespace
}  // namespace orma::test
