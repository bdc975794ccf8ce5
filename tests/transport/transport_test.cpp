#include "transport/transport.h"

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

    /// Presses buttons; lets periods be heard (+n), moves the place (@n), runs what is pending (|),
    /// notes the cursor (.), and takes hold of the place or lets it go: ( and ).
    void Press(const std::string& script) {
        std::istringstream in(script);
        int number = 0;
        for (char key = 0; in >> key;) {
            if (key == '+' || key == '@') in >> number;
            if (key == '+') Hear(number);
            if (key == '@') transport.MoveTo(number);
            if (key == '|') loop.RunPending();
            if (key == '.') places += std::to_string(Cursor()) + " ";
            if (key == '(' || key == ')') transport.Drag(key == '(');
            if (std::string_view("RPS<>bf").find(key) != std::string_view::npos)
                Desktop::Press(key);
        }
    }

    std::string places;
};

TEST(TransportTest, EveryButtonInEveryStateLeadsWhereTheTableSays) {
    constexpr std::string_view kButtons = "RPS<>bf";
    const struct {
        std::string way;  // there
        std::string_view next;
        LitButtons lit;
    } states[] = {{"", "1305400", {.stop = true}},
                  {"R", "0201111", {.record = true}},
                  {"RP", "2202222", {.play = true, .record = true}},
                  {"P", "0305433", {.play = true}},
                  {">", "0305444", {.fastForward = true}},
                  {"<", "0305455", {.rewind = true}}};
    for (int state = 0; state < 6; ++state) {
        for (std::size_t i = 0; i < kButtons.size(); ++i) {
            SCOPED_TRACE(std::to_string(state) + kButtons[i]);
            Desk desk;
            desk.Press(states[state].way + " +2");
            ASSERT_EQ(desk.Lamp(), state);
            desk.Press({kButtons[i]});
            if (state == 2) desk.loop.RunPending();  // the take drains
            const int next = states[state].next[i] - '0';
            EXPECT_EQ(desk.Lamp(), next);
            EXPECT_EQ(desk.lit, states[next].lit);
            EXPECT_EQ(desk.app.recorder.IsActive(), next == 1 || next == 2);
            EXPECT_EQ(desk.app.recorder.IsSavingPending(), next == 2);
            EXPECT_EQ(desk.app.player.IsPlaying(), next >= 3);
            EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
            if (next != 0 || state == 2) continue;
            desk.Press(state >= 3 ? "R" : "P");
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
        {{}, "< +500 .", "50o", "0 "},
        {{30, 55}, "@30 P +500 .", "30o", "55 "},
        // What is heard, not what is written; the begin comes first behind every stop.
        {{}, "S . S .", "", "0 0 "},
        {{}, "P +10 S S P +5 S . S . S .", "3030", "45 40 45 "},
        {{70, 100}, "@80 P +100 S . S . S . S S .", "30o", "80 100 80 80 "},
        // Trying the microphone forgets nothing.
        {{}, "P +10 S RS | S . S .", "3010c", "40 50 "},
        // From one to the other without a stop.
        {{}, "P +10 > +5 < P +500", "34530o", ""},
        {{}, "@100 > < +8 S", "50", ""},
        // A place that is picked has its own end, and winding knows none but the recording's.
        {{30, 55}, "@30 P +2 @10 +200 .", "30o", "100 "},
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
        desk.Press(row.script);
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
        {"R", [](Desk& desk) { desk.waves.in.Lose(WaveLoss::kVanished); }, "10c", 40},
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
        SCOPED_TRACE(row.pressed);
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
        desk.Press("P");
        EXPECT_EQ(desk.app.recording.currentCut, row.cutBehind);
        desk.Hear(200);
        ASSERT_FALSE(desk.Heard().empty());
        EXPECT_EQ(desk.Heard().front(), row.first);
        EXPECT_EQ(desk.Heard().back(), row.last);
    }
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
            if (failing)
                desk.storage.FailAt(FaultyStorage::kOpen | FaultyStorage::kWrite, 1,
                                    FaultyStorage::Extent::kFromThenOn);
            const ClipEntry before = *desk.app.clips.Current();
            desk.Press({row.button});
            desk.storage.FailAt(0, 0);

            EXPECT_EQ(desk.Lamp(), 0) << "an edge that may not go on does not wind either";
            const bool mayMove = row.cut != row.cutBehind || row.selection != row.selectionBehind;
            const bool moved = mayMove && !failing;
            EXPECT_EQ(desk.boxes.shown.empty(), moved || !mayMove);
            EXPECT_EQ(desk.moves.size(), moved ? 1U : 0U);
            // The cursor stays on the edge.
            EXPECT_EQ(recording.cursor, row.cursor + (!moved ? 0 : row.button == '>' ? 1 : -1));
            const PeriodRange selection = moved ? row.selectionBehind : row.selection;
            EXPECT_EQ((PeriodRange{recording.selectionStart, recording.selectionEnd}), selection);
            EXPECT_EQ(recording.sheet.cuts[0], moved ? row.cutBehind : row.cut);
            const ClipEntry& clip = *desk.app.clips.Current();
            const PeriodRange stored =
                selection != row.selection ? selection : PeriodRange{before.begin, before.end};
            EXPECT_EQ((PeriodRange{clip.begin, clip.end}), stored);
            if (!moved || row.cut == row.cutBehind) continue;
            EXPECT_EQ(GetVuRemovedRanges(desk.app.files, recording.levelPath),
                      recording.sheet.cuts);
            EXPECT_EQ(clip.length, kLength - (row.cutBehind.end - row.cutBehind.begin));
        }
    }
}

TEST(TransportTest, ATakeFromRecordReadyToClip) {
    Desk desk;
    desk.Press("P +10 S R @5");
    EXPECT_EQ(desk.Cursor(), 50U) << "not while the input is open";
    desk.Speak(7);
    EXPECT_FALSE(desk.app.recorder.IsSavingPending());
    desk.Press("PR");
    EXPECT_TRUE(desk.markTexts.empty()) << "nothing is saved yet";
    desk.Speak(11);
    desk.Press("R");
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
    desk.Press("S . S . P +8 .");
    EXPECT_EQ(desk.places, "0 0 8 ") << "the places of the other recording do not count";
    EXPECT_EQ(desk.asked, "sync ");
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{});
}

TEST(TransportTest, TheFirstPressOfRecordGoesToTheGainToolWhereThereIsOneAndTheHeadsetChooses) {
    InputProcessingSettings settings;
    settings.sets[0].name = settings.currentSetName = u"mic_int";
    settings.sets[1].name = u"mic_ext";
    const struct {
        bool hasTool, externalRecorder;
        const char* asked;
    } cases[] = {
        {true, false, "tool1 sync "}, {false, false, "tool1 sync "}, {true, true, "sync "}};
    for (const auto& row : cases) {
        Desk desk;
        desk.transport.SetOptions(
            {.runGainTool = true, .gainToolMode = 1, .closeSynchronisation = true});
        desk.app.input.Load(settings, 44100);
        desk.hasTool = row.hasTool;
        desk.app.audio.externalRecorder = row.externalRecorder;
        desk.headset = 1;
        desk.Press("R");
        EXPECT_EQ(desk.Lamp(), row.hasTool && !row.externalRecorder ? 0 : 1);
        if (desk.Lamp() == 0) desk.Press("R");
        EXPECT_EQ(desk.Lamp(), 1);
        EXPECT_EQ(desk.asked, row.asked);
        EXPECT_EQ(desk.app.input.CurrentSetName(), u"mic_ext");
        desk.headset = 0;
        desk.Press("R");
        EXPECT_EQ(desk.app.input.CurrentSetName(), u"mic_ext") << "not when the button goes out";
    }
}

TEST(TransportTest, ARefusedStartLeavesItStoppedAndReadyForPlaying) {
    Desk desk;
    desk.waves.in.results["Start"] = WaveResult::kFailed;
    desk.waves.out.results["OpenOutput#1"] = WaveResult::kFailed;
    desk.Press("RP");
    EXPECT_EQ(desk.told, "1030");
    EXPECT_EQ(desk.asked, "");
    EXPECT_EQ(desk.boxes.shown.size(), 2U);
    desk.Press("PS");
    EXPECT_EQ(desk.told, "103030");
    ASSERT_EQ(desk.storage.Delete(desk.folder.Path(u"old.wav")), 0U);
    desk.Press("P");
    EXPECT_EQ(desk.told, "103030") << "a recording that is gone is not played";
}

}  // namespace
}  // namespace orma::test
