#include "ui/screens/record_w_win.h"

#include <set>

#include "audio/files/level_tables.h"
#include "ui/screens/key_lists.h"
#include "ui/screens/recorder_desk.h"

namespace orma::test {
namespace {

constexpr std::int16_t kQuiet = 3;
constexpr std::int16_t kSpeech = 4000;
constexpr std::int16_t kClipped = 32767;

/// A recording of 100 periods is there, with marks at 20 and 60 and the cursor at 40.
class MarkedDesk : public RecorderDesk {
  public:
    using RecorderDesk::RecorderDesk;

    void Open() {
        ASSERT_TRUE(app.project.SelectClip(AddTake(u"old", 100, {})));
        app.recording.sheet.marks = {20, 60};
        transport.MoveTo(40);
    }

    /// What a key has changed: states, cursor, gain and volume, outside and inside.
    [[nodiscard]] std::string Changes() {
        return Format("%d@%u g%d v%u G%d V%d", Lamp(), Cursor(), app.input.InputGainDb(),
                      app.input.OutputStep(), outside.GainCode(), outside.VolumeCode());
    }
};

TEST(RecordWWinTest, EveryKeyDoesWhatTheTableSays) {
    RecorderScreenOptions noMarks = kEverything;
    noMarks.markButtons = false;
    RecorderScreenOptions noGain = kEverything;
    noGain.gainControl = false;
    constexpr const char* kSame = "0@40 g12 v14 G192 V121";
    struct Case {
        Key key;
        RecorderScreenOptions options;
        bool upsideDown;
        bool external;
        const char* changes;
    };
    const Case cases[] = {
        {Key::kLeft, kEverything, false, false, "0@20 g12 v14 G192 V121"},
        {Key::kRight, kEverything, false, false, "0@60 g12 v14 G192 V121"},
        {Key::kLeft, noMarks, false, false, "0@40 g12 v13 G192 V121"},
        {Key::kRight, noMarks, false, false, "0@40 g12 v15 G192 V121"},
        {Key::kLeft, kEverything, false, true, "0@40 g12 v14 G192 V120"},
        {Key::kRight, kEverything, false, true, "0@40 g12 v14 G192 V122"},
        {Key::kUp, kEverything, false, false, "0@40 g13 v14 G192 V121"},
        {Key::kDown, kEverything, false, false, "0@40 g11 v14 G192 V121"},
        {Key::kUp, kEverything, false, true, "0@40 g12 v14 G194 V121"},
        {Key::kDown, kEverything, false, true, "0@40 g12 v14 G190 V121"},
        {Key::kUp, noGain, false, false, kSame},
        {Key::kUp, noGain, false, true, kSame},
        {Key::k1, kEverything, false, false, "0@20 g12 v14 G192 V121"},
        {Key::k3, kEverything, false, false, "0@60 g12 v14 G192 V121"},
        {Key::k1, noMarks, false, false, kSame},
        {Key::k3, noMarks, false, false, kSame},
        {Key::k2, kEverything, false, false, "5@17 g12 v14 G192 V121"},
        {Key::k5, kEverything, false, false, "4@57 g12 v14 G192 V121"},
        {Key::k7, kEverything, false, false, "0@0 g12 v14 G192 V121"},
        {Key::k8, kEverything, false, false, "3@40 g12 v14 G192 V121"},
        {Key::k9, kEverything, false, false, "1@40 g12 v14 G192 V121"},
        {Key::kEnter, kEverything, false, false, "3@40 g12 v14 G192 V121"},
        {Key::kSpace, kEverything, false, false, kSame},
        // Held upside down: the arrows alone, the other way round.
        {Key::kLeft, kEverything, true, false, "0@60 g12 v14 G192 V121"},
        {Key::kRight, kEverything, true, false, "0@20 g12 v14 G192 V121"},
        {Key::kUp, kEverything, true, false, "0@40 g11 v14 G192 V121"},
        {Key::kDown, kEverything, true, false, "0@40 g13 v14 G192 V121"},
        {Key::k1, kEverything, true, false, kSame},
        {Key::k9, kEverything, true, false, kSame},
        {Key::kEnter, kEverything, true, false, kSame},
    };
    for (const Case& row : cases) {
        MarkedDesk desk(row.options, row.upsideDown, row.external);
        desk.Open();
        desk.screen->OnKey(row.key);
        EXPECT_EQ(desk.Changes(), row.changes)
            << "key " << static_cast<int>(row.key) << " upside down " << row.upsideDown
            << " external " << row.external << " marks " << row.options.markButtons;
    }
}

TEST(RecordWWinTest, ListsExactlyTheKeysThatDoSomething) {
    RecorderScreenOptions noMarks = kEverything;
    noMarks.markButtons = false;
    const struct {
        RecorderScreenOptions options;
        bool upsideDown;
        bool external;
    } cases[] = {{kEverything, false, false}, {noMarks, false, false}, {{}, false, false},
                 {kEverything, false, true},  {{}, false, true},       {kEverything, true, false}};
    for (const auto& one : cases) {
        MarkedDesk idle(one.options, one.upsideDown, one.external);
        idle.Open();
        const std::string before = idle.Changes();
        const std::set<Key> listed = KeysOf(*idle.screen);
        for (int code = 0; code < 256; ++code)
            if (!listed.contains(static_cast<Key>(code)))
                idle.screen->OnKey(static_cast<Key>(code));
        EXPECT_EQ(idle.Changes(), before) << one.upsideDown << one.external;
        for (const Key key : listed) {
            MarkedDesk desk(one.options, one.upsideDown, one.external);
            desk.Open();
            desk.screen->OnKey(key);
            EXPECT_NE(desk.Changes(), before) << ToUtf8(NameOf(key)) << one.upsideDown;
        }
        ExpectTooltipsNameKeysOf(*idle.screen);
    }
}

TEST(RecordWWinTest, EnterPressesPlayUntilSomethingRunsAndThenStop) {
    RecorderDesk desk;
    std::string states;
    desk.screen->OnKey(Key::k9);
    for (int i = 0; i < 2; ++i) {
        desk.screen->OnKey(Key::kEnter);
        states += std::to_string(desk.Lamp());
        desk.Hear(30, kSpeech);
    }
    EXPECT_EQ(states, "20");
}

TEST(RecordWWinTest, TheTableKeepsItsPlacesWhateverIsSwitchedOff) {
    struct Case {
        RecorderScreenOptions options;
        bool external;
        std::set<std::size_t> missing;
    };
    const std::set<std::size_t> none = {kMaxTime,    kBattery,    kGainText, kGainKnob,
                                        kVolumeText, kVolumeKnob, kBackMark, kForwardMark};
    const Case cases[] = {
        {kEverything, false, {}},
        {{}, false, none},
        {{}, true, {kMaxTime, kBattery, kBackMark, kForwardMark}},
        {{.gainControl = true},
         false,
         {kMaxTime, kBattery, kVolumeText, kVolumeKnob, kBackMark, kForwardMark}},
    };
    const Element order[] = {Element::Stop,     Element::Play,        Element::Record,
                             Element::Rewind,   Element::FastForward, Element::VU,
                             Element::RecTime,  Element::RecStatus,   Element::Name,
                             Element::MaxTime,  Element::Battery,     Element::CFACGainText,
                             Element::GainKnob, Element::CFACVolText, Element::CFACVolKnob,
                             Element::BackMark, Element::ForwardMark, Element::MaxTime};
    for (const Case& row : cases) {
        RecorderDesk desk(row.options, false, row.external);
        const auto& table = desk.screen->Controls();
        ASSERT_EQ(table.size(), std::size(order));
        for (std::size_t i = 0; i < table.size(); ++i) {
            ASSERT_EQ(table[i] == nullptr, row.missing.contains(i)) << i;
            if (!table[i]) continue;
            EXPECT_EQ(table[i]->Bounds(), desk.rig.skin.RectOf(order[i])) << i;
            EXPECT_NE(table[i]->Label().role, ControlRole::kNone) << i;
            EXPECT_FALSE(table[i]->Label().name.empty()) << i;
            EXPECT_FALSE(table[i]->Label().hint.empty()) << i;
        }
        // The gaps take no pointer, and the events that show them do no harm.
        const Rect mark = desk.rig.skin.RectOf(Element::BackMark);
        EXPECT_EQ(desk.screen->HitTest({mark.x + 1, mark.y + 1}), table[kBackMark].get());
        desk.screen->TurnGain(1);
        desk.screen->TurnVolume(1);
        desk.screen->PressRecord();
        desk.screen->PressStop();
        desk.screen->Paint();
    }
}

TEST(RecordWWinTest, ButtonsLampAndTimeFollowTheTransport) {
    RecorderDesk desk;
    const auto shown = [&] {
        return desk.LitButtonsShown() + " " + desk.ValueAt(kLamp) + " " + desk.ValueAt(kTime);
    };
    EXPECT_EQ(shown(), "S Stopped   0m:00s.00");
    desk.screen->PressRecord();
    EXPECT_EQ(shown(), "R Ready   0m:00s.00");
    desk.screen->PressPlay();
    desk.Hear(1 + 27, kSpeech);  // saving begins behind the next buffer
    EXPECT_EQ(shown(), "PR Recording   0m:01s.35");

    desk.screen->PressRecord();  // a mark, for a second
    desk.Hear(19, kSpeech);
    desk.screen->Tick();
    EXPECT_EQ(shown(), "PR Recording   Mark   1 ");
    desk.Hear(1, kSpeech);
    EXPECT_EQ(shown(), "PR Recording   0m:02s.35");

    desk.screen->PressStop();
    desk.loop.RunPending();
    EXPECT_EQ(desk.LitButtonsShown(), "S");
    EXPECT_EQ(desk.ValueAt(kName), "talk00");
    desk.transport.MoveTo(0);
    desk.screen->PressPlay();
    desk.Desktop::Hear(13);
    EXPECT_EQ(shown(), "P Playing   0m:00s.65");
    EXPECT_LT(dynamic_cast<VuWin*>(desk.At(kVu))->BarOffset(), 79);
    desk.screen->PressStop();
    EXPECT_EQ(shown(), "S Stopped   0m:00s.65");
    EXPECT_EQ(dynamic_cast<VuWin*>(desk.At(kVu))->BarOffset(), 80) << "all dark";
}

TEST(RecordWWinTest, TheDisplayTellsTimeLeftBatteryGainAndVolume) {
    MarkedDesk desk;
    const auto minutesLeft = [&] { return desk.app.recorder.RecordingTimeLeft() / 60; };
    std::uint32_t minutes = 0;
    do {  // others write to the same disk
        minutes = minutesLeft();
        desk.screen->Refresh();
    } while (minutes != minutesLeft());
    EXPECT_EQ(desk.ValueAt(kMaxTime), Format("%.2uh:%.2um max", minutes / 60, minutes % 60));
    EXPECT_EQ(desk.ValueAt(kBattery), "Battery: 83%");
    EXPECT_EQ(desk.ValueAt(kGainText), "+12dB");
    EXPECT_EQ(desk.ValueAt(kVolumeText), "  -6dB");

    desk.battery.reset();
    desk.screen->OnTimeLeftChanged();
    EXPECT_EQ(desk.ValueAt(kBattery), "") << "a machine without one";
    desk.At(kGainKnob)->StepBy(-12);
    desk.At(kVolumeKnob)->StepBy(6);
    EXPECT_EQ(desk.ValueAt(kGainText), "+0dB");
    EXPECT_EQ(desk.ValueAt(kVolumeText), "  +0dB");

    RecorderDesk outside(kEverything, false, true);
    EXPECT_EQ(outside.ValueAt(kGainText), "+0dB");
    outside.At(kGainKnob)->StepBy(3);
    outside.At(kVolumeKnob)->StepBy(-2);
    EXPECT_EQ(outside.ValueAt(kGainText), "+3dB");
    EXPECT_EQ(outside.ValueAt(kVolumeText), "  -2dB");
}

TEST(RecordWWinTest, OverloadIsToldUntilTheNextTakeOrAClick) {
    for (const bool saving : {false, true}) {
        RecorderDesk desk;
        desk.screen->PressRecord();
        if (saving) desk.screen->PressPlay();
        desk.Hear(1, kSpeech);
        desk.Hear(2, kClipped);
        desk.Hear(30, kSpeech);
        EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
        EXPECT_EQ(desk.ValueAt(kMaxTime), "") << "it stands in its place";
        EXPECT_EQ(desk.host.announced, (std::vector<Text>{u"Too loud: overload"})) << "once";
        if (saving) desk.screen->PressRecord();  // a mark
        EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
        desk.screen->PressStop();
        desk.loop.RunPending();
        desk.screen->PressStop();
        EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload") << "the take is to be judged";

        desk.screen->PressRecord();
        EXPECT_EQ(desk.ValueAt(kWarning), "");
        EXPECT_NE(desk.ValueAt(kMaxTime), "");
        desk.Hear(1, kClipped);
        EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
        desk.screen->PressPlay();
        desk.Hear(2, kSpeech);
        EXPECT_EQ(desk.ValueAt(kWarning), "") << "that was before this take";
        desk.Hear(1, kClipped);
        const Rect line = desk.rig.skin.RectOf(Element::MaxTime);
        EXPECT_EQ(desk.rig.PressAt(*desk.screen, {line.x + 1, line.y + 1}), desk.At(kWarning));
        EXPECT_EQ(desk.ValueAt(kWarning), "");
        EXPECT_EQ(desk.screen->HitTest({line.x + 1, line.y + 1}), nullptr);
    }
}

TEST(RecordWWinTest, AWarningStandsInItsOwnColour) {
    RecorderDesk desk(RecorderScreenOptions{});
    desk.screen->PressRecord();
    desk.rig.ink.Forget();
    desk.Hear(1, kClipped);
    bool found = false;
    for (const auto& drawn : desk.rig.ink.texts) {
        if (drawn.text != u"Too loud: overload") continue;
        EXPECT_EQ(drawn.colour, desk.rig.skin.Colours().waveformEditCut);
        found = true;
    }
    EXPECT_TRUE(found);
}

TEST(RecordWWinTest, SilenceOfFiveSecondsIsToldUntilThereIsSound) {
    RecorderDesk desk;
    desk.screen->PressRecord();
    desk.Hear(1, kClipped);
    desk.Hear(99, kQuiet);
    EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
    desk.Hear(1, kQuiet);
    EXPECT_EQ(desk.ValueAt(kWarning), "No sound from the microphone") << "more urgent";
    desk.screen->PressPlay();
    desk.Hear(3, kQuiet);
    EXPECT_EQ(desk.ValueAt(kWarning), "No sound from the microphone");
    desk.Hear(1, kSpeech);
    EXPECT_EQ(desk.ValueAt(kWarning), "");
    desk.Hear(100, kQuiet);
    EXPECT_EQ(desk.ValueAt(kWarning), "No sound from the microphone");
    desk.screen->PressStop();
    EXPECT_EQ(desk.ValueAt(kWarning), "") << "nobody listens any more";

    RecorderDesk digital(RecorderScreenOptions{.spdif = true});
    digital.screen->PressRecord();
    digital.Hear(100, kQuiet);
    EXPECT_EQ(digital.ValueAt(kWarning), "No sound from the input");

    RecorderDesk narrow(kEverything, false, false, "[MaxTime]\r\nw=100\r\n");
    narrow.screen->PressRecord();
    narrow.Hear(100, kQuiet);
    EXPECT_EQ(narrow.ValueAt(kWarning), "No sound");
    EXPECT_EQ(narrow.host.announced, (std::vector<Text>{u"No sound from the microphone"}));
}

TEST(RecordWWinTest, LostDevicesAndLostSoundAreTold) {
    RecorderDesk desk;
    desk.screen->PressRecord();
    desk.waves.in.lostFrames = 50;  // before saving: in no take
    desk.screen->PressPlay();
    desk.Hear(30, kSpeech);
    EXPECT_EQ(desk.ValueAt(kWarning), "");
    desk.waves.in.lostFrames = 51;
    desk.Hear(1, kSpeech);
    EXPECT_EQ(desk.ValueAt(kWarning), "Some sound was lost");
    desk.waves.in.Lose(WaveLoss::kVanished);
    desk.loop.RunPending();
    EXPECT_EQ(desk.ValueAt(kWarning), "Microphone lost");
    EXPECT_EQ(desk.LitButtonsShown(), "S");

    desk.transport.MoveTo(0);
    desk.screen->PressPlay();
    desk.waves.out.events->OnWaveOutLost(WaveLoss::kStalled);
    EXPECT_EQ(desk.ValueAt(kWarning), "Loudspeaker stalled");
    desk.screen->PressPlay();
    EXPECT_EQ(desk.ValueAt(kWarning), "Some sound was lost") << "the loudspeaker is back";
    desk.screen->PressStop();
    desk.transport.Record(true);  // a key of the case
    EXPECT_EQ(desk.ValueAt(kWarning), "");
}

TEST(RecordWWinTest, BehindAnotherScreenItListensAndDrawsNothing) {
    RecorderDesk desk;
    desk.host.told.clear();
    desk.screen->Left();
    EXPECT_EQ(desk.host.told, "-0 menus ");
    desk.rig.PaintPage();
    desk.screen->PressRecord();
    desk.screen->PressPlay();
    desk.Hear(1, kSpeech);
    desk.Hear(9, kClipped);
    EXPECT_EQ(desk.rig.TakeChanges(), std::vector<Rect>{});
    EXPECT_EQ(desk.host.announced, (std::vector<Text>{u"Too loud: overload"}))
        << "heard all the same";

    desk.host.told.clear();
    desk.screen->Entered();
    EXPECT_EQ(desk.host.told, "+0 paint ");
    desk.screen->Paint();
    EXPECT_EQ(desk.LitButtonsShown(), "PR");
    EXPECT_EQ(desk.ValueAt(kLamp), "Recording");
    EXPECT_EQ(desk.ValueAt(kTime), "  0m:00s.45");
    EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
    EXPECT_EQ(dynamic_cast<VuWin*>(desk.At(kVu))->BarOffset(), 0);
}

TEST(RecordWWinTest, TheExternalRecordersLevelFallsByAnEighthOfTheWay) {
    RecorderDesk desk(kEverything, false, true);
    ExternalLevel level;
    const auto read = [&](std::uint32_t value, bool stereo) {
        desk.device.level = value;
        return level.Read(desk.outside, stereo);
    };
    EXPECT_EQ(read(0x4000'7FFF, false), LevelOfPeak(0x4000)) << "mono: the upper half";
    EXPECT_EQ(read(0x4000'7FFF, true), 0) << "stereo: the larger one";
    EXPECT_EQ(read(0, true), LevelOfPeak(0x7FFF - 0x0FFF));
    level.Rest();
    EXPECT_EQ(read(0, true), kQuietLevel);

    desk.device.level = 0x7FFF'0000;
    desk.screen->Tick();
    const auto* const meter = dynamic_cast<VuWin*>(desk.At(kVu));
    EXPECT_EQ(meter->BarOffset(), 80) << "the input is closed";
    desk.screen->PressRecord();
    desk.screen->Tick();
    EXPECT_EQ(meter->BarOffset(), 0);
    EXPECT_EQ(desk.ValueAt(kWarning), "Too loud: overload");
}

}  // namespace
}  // namespace orma::test
