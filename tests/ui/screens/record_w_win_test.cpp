#include "ui/screens/record_w_win.h"

#include "audio/files/level_tables.h"
#include "platform/system_status.h"
#include "ui/screens/screen_desk.h"

namespace orma::test {
namespace {

constexpr std::int16_t kQuiet = 3;
constexpr std::int16_t kSpeech = 4000;
constexpr std::int16_t kClipped = 32767;
constexpr RecorderScreenOptions kEverything{.showMaxTime = true,
                                            .showBattery = true,
                                            .markButtons = true,
                                            .gainControl = true,
                                            .volumeControl = true};

/// How the device is set up and held.
struct DeskOptions {
    RecorderScreenOptions shown = kEverything;
    bool upsideDown = false;
    bool external = false;
    std::string layout{};
};

/// An external recorder that answers to everything and has one level.
class OutsideRecorder : public ExternalRecorder {
  public:
    [[nodiscard]] std::vector<Text> OutputNames() override { return {u"speakers", u"MAYCOM 1"}; }
    [[nodiscard]] WaveResult Query(std::uint32_t, const WaveFormat&, std::uint32_t, RecorderMessage,
                                   std::span<std::uint8_t>) override {
        return WaveResult::kOk;
    }
    [[nodiscard]] WaveResult Send(RecorderLine, std::uint32_t, RecorderMessage subCode,
                                  std::span<std::uint8_t> parameter) override {
        if (subCode == RecorderMessage::kValue) StoreLe(parameter.data(), level);
        return WaveResult::kOk;
    }

    std::uint32_t level = 0;  // a channel in each half
};

class RecorderDesk : public ScreenDesk<RecordWWin>, public SystemStatus {
  public:
    explicit RecorderDesk(const DeskOptions& options = {})
        : ScreenDesk({.upsideDown = options.upsideDown, .layout = options.layout}),
          outside(options.external ? &device : nullptr, app.report) {
        InputProcessingSettings input;
        input.inputGainDb = 12;
        input.outputStep = 14;
        app.input.Load(input, 44100);
        (void)outside.FindExternalRecorder();
        outside.LineOpened(RecorderLine::kInput);
        Make(RecorderScreenServices{app.transport, app.recorder, app.recording, app.audio,
                                    app.input, outside, *this},
             options.shown);
    }

    /// Lets the microphone hear `periods` of one sample value.
    void Listen(int periods, std::int16_t sample) {
        for (int i = 0; i < periods; ++i) {
            app.input.ClearState();  // else the DC blocker would take a constant away
            (void)waves.in.DeliverValue(sample);
        }
    }
    [[nodiscard]] std::string Warning() const { return ValueOf(u"Warning"); }
    [[nodiscard]] int BarOffset() const {
        return dynamic_cast<const VuWin&>(*Find(u"Level")).BarOffset();
    }

    std::optional<int> BatteryPercent() override { return battery; }
    std::optional<std::uint64_t> FreeMemory() override { return std::nullopt; }
    std::optional<int> ProcessorLoad() override { return std::nullopt; }

    OutsideRecorder device;
    ExternalRecorderControl outside;
    std::optional<int> battery = 83;
};

TEST(RecordWWinTest, EveryKeyDoesWhatTheTableSays) {
    const DeskOptions whole;
    const DeskOptions noMarks{.shown = {.gainControl = true, .volumeControl = true}};
    const DeskOptions noGain{.shown = {.markButtons = true, .volumeControl = true}};
    const DeskOptions outside{.external = true};
    const DeskOptions turned{.upsideDown = true};
    constexpr const char* kSame = "0@40 g12 v14 G192 V121";
    const struct {
        Key key;
        const DeskOptions& options;
        const char* outcome;  // state, cursor, gain and volume inside and outside
    } cases[] = {
        {Key::kLeft, whole, "0@20 g12 v14 G192 V121"},
        {Key::kRight, whole, "0@60 g12 v14 G192 V121"},
        {Key::kUp, whole, "0@40 g13 v14 G192 V121"},
        {Key::kDown, whole, "0@40 g11 v14 G192 V121"},
        {Key::k1, whole, "0@20 g12 v14 G192 V121"},
        {Key::k3, whole, "0@60 g12 v14 G192 V121"},
        {Key::k2, whole, "5@17 g12 v14 G192 V121"},
        {Key::k5, whole, "4@57 g12 v14 G192 V121"},
        {Key::k7, whole, "0@0 g12 v14 G192 V121"},
        {Key::k8, whole, "3@40 g12 v14 G192 V121"},
        {Key::k9, whole, "1@40 g12 v14 G192 V121"},
        {Key::kEnter, whole, "3@40 g12 v14 G192 V121"},
        {Key::kLeft, noMarks, "0@40 g12 v13 G192 V121"},
        {Key::kRight, noMarks, "0@40 g12 v15 G192 V121"},
        {Key::k1, noMarks, kSame},
        {Key::k3, noMarks, kSame},
        {Key::kUp, noGain, kSame},
        {Key::kLeft, outside, "0@40 g12 v14 G192 V120"},
        {Key::kRight, outside, "0@40 g12 v14 G192 V122"},
        {Key::kUp, outside, "0@40 g12 v14 G194 V121"},
        {Key::kDown, outside, "0@40 g12 v14 G190 V121"},
        // The arrows alone, the other way round.
        {Key::kLeft, turned, "0@60 g12 v14 G192 V121"},
        {Key::kRight, turned, "0@20 g12 v14 G192 V121"},
        {Key::kUp, turned, "0@40 g11 v14 G192 V121"},
        {Key::kDown, turned, "0@40 g13 v14 G192 V121"},
        {Key::k1, turned, kSame},
    };
    for (const auto& [key, options, outcome] : cases) {
        RecorderDesk desk(options);
        ASSERT_TRUE(desk.app.project.SelectClip(desk.AddTake(u"old", 100, {})));
        desk.app.recording.sheet.marks = {20, 60};
        desk.transport.MoveTo(40);
        desk.screen->OnKey(key);
        const auto& input = desk.app.input;
        EXPECT_EQ(Format("%d@%u g%d v%u G%d V%d", desk.Lamp(), desk.Cursor(), input.InputGainDb(),
                         input.OutputStep(), desk.outside.GainCode(), desk.outside.VolumeCode()),
                  outcome)
            << ToUtf8(NameOf(key)) << (options.upsideDown ? " turned" : "");
        desk.ExpectKeysAndTooltipsAgree();
    }
}

TEST(RecordWWinTest, TheTableHasWhatIsSwitchedOnInItsOrder) {
    const std::string always = "Stop,Play,Record,Rewind,Fast forward,Level,Time,Status,Name,";
    const std::string level = "Microphone gain,Microphone gain,Volume,Volume,";
    const std::pair<DeskOptions, std::string> cases[] = {
        {{}, "Time left,Battery," + level + "Previous mark,Next mark,"},
        {{.shown = {}}, ""},
        {{.shown = {}, .external = true}, level},
        {{.shown = {.gainControl = true}}, "Microphone gain,Microphone gain,"},
    };
    for (const auto& [options, expected] : cases) {
        RecorderDesk desk(options);
        std::string names;
        for (const Win* const control : Singly(desk.screen->Controls())) {
            names += ToUtf8(control->Label().name) + ",";
            EXPECT_NE(control->Label().role, ControlRole::kNone) << names;
            EXPECT_FALSE(control->Label().hint.empty()) << names;
        }
        EXPECT_EQ(names, always + expected + "Warning,");
        desk.ExpectKeysAndTooltipsAgree();
        // The gaps take no pointer, and the events that show them do no harm.
        const Rect mark = desk.rig.skin.RectOf(Element::BackMark);
        EXPECT_EQ(desk.screen->HitTest({mark.x + 1, mark.y + 1}), desk.Find(u"Previous mark"));
        desk.screen->TurnGain(1);
        desk.screen->TurnVolume(1);
        desk.screen->PressRecord();
        desk.screen->PressStop();
    }
}

TEST(RecordWWinTest, ButtonsLampAndTimeFollowTheTransport) {
    RecorderDesk desk;
    const auto shown = [&] {
        return desk.Lit() + desk.ValueOf(u"Status") + " " + desk.ValueOf(u"Time");
    };
    EXPECT_EQ(shown(), "Stop Stopped   0m:00s.00");
    desk.screen->PressRecord();
    EXPECT_EQ(shown(), "Record Ready   0m:00s.00");
    desk.screen->OnKey(Key::kEnter);
    desk.Listen(1 + 27, kSpeech);  // saving begins behind the next buffer
    EXPECT_EQ(shown(), "Play Record Recording   0m:01s.35");

    desk.screen->PressRecord();  // a mark, for a second
    desk.Listen(19, kSpeech);
    desk.screen->Tick();
    EXPECT_EQ(shown(), "Play Record Recording   Mark   1 ");
    desk.Listen(1, kSpeech);
    EXPECT_EQ(shown(), "Play Record Recording   0m:02s.35");

    desk.screen->OnKey(Key::kEnter);
    desk.loop.RunPending();
    EXPECT_EQ(desk.Lit(), "Stop ");
    EXPECT_EQ(desk.ValueOf(u"Name"), "talk00");
    desk.transport.MoveTo(0);
    desk.screen->PressPlay();
    desk.Hear(13);
    EXPECT_EQ(shown(), "Play Playing   0m:00s.65");
    EXPECT_LT(desk.BarOffset(), 79);
    desk.screen->PressStop();
    EXPECT_EQ(shown(), "Stop Stopped   0m:00s.65");
    EXPECT_EQ(desk.BarOffset(), 80) << "all dark";
}

TEST(RecordWWinTest, TheDisplayTellsBatteryGainAndVolume) {
    RecorderDesk desk;
    const auto gains = [](const RecorderDesk& some) {
        return some.ValueOf(u"Microphone gain") + some.ValueOf(u"Volume");
    };
    EXPECT_EQ(desk.ValueOf(u"Battery"), "Battery: 83%");
    EXPECT_EQ(gains(desk), "+12dB  -6dB");

    desk.battery.reset();
    desk.screen->OnTimeLeftChanged();
    EXPECT_EQ(desk.ValueOf(u"Battery"), "") << "a machine without one";
    desk.Find(u"Microphone gain", true)->StepBy(-12);
    desk.Find(u"Volume", true)->StepBy(6);
    EXPECT_EQ(gains(desk), "+0dB  +0dB");

    RecorderDesk outside({.external = true});
    outside.Find(u"Microphone gain", true)->StepBy(3);
    outside.Find(u"Volume", true)->StepBy(-2);
    EXPECT_EQ(gains(outside), "+3dB  -2dB");
}

TEST(RecordWWinTest, OverloadIsToldUntilTheNextTakeOrAClick) {
    for (const bool saving : {false, true}) {
        RecorderDesk desk;
        desk.screen->PressRecord();
        if (saving) desk.screen->PressPlay();
        desk.Listen(1, kSpeech);
        desk.Listen(2, kClipped);
        desk.Listen(30, kSpeech);
        EXPECT_EQ(desk.Warning(), "Too loud: overload");
        EXPECT_EQ(desk.ValueOf(u"Time left"), "") << "it stands in its place";
        EXPECT_EQ(desk.host.announced, (std::vector<Text>{u"Too loud: overload"})) << "once";
        if (saving) desk.screen->PressRecord();  // a mark
        EXPECT_EQ(desk.Warning(), "Too loud: overload");
        desk.screen->PressStop();
        desk.loop.RunPending();
        desk.screen->PressStop();
        EXPECT_EQ(desk.Warning(), "Too loud: overload") << "the take is to be judged";

        desk.screen->PressRecord();
        EXPECT_EQ(desk.Warning(), "");
        EXPECT_NE(desk.ValueOf(u"Time left"), "");
        desk.Listen(1, kClipped);
        EXPECT_EQ(desk.Warning(), "Too loud: overload");
        desk.screen->PressPlay();
        desk.Listen(2, kSpeech);
        EXPECT_EQ(desk.Warning(), "") << "that was before this take";
        desk.Listen(1, kClipped);
        const Rect line = desk.rig.skin.RectOf(Element::MaxTime);
        EXPECT_EQ(desk.rig.PressAt(*desk.screen, {line.x + 1, line.y + 1}), desk.Find(u"Warning"));
        EXPECT_EQ(desk.Warning(), "");
        EXPECT_EQ(desk.screen->HitTest({line.x + 1, line.y + 1}), nullptr);
    }
}

TEST(RecordWWinTest, SilenceOfFiveSecondsIsToldUntilThereIsSound) {
    RecorderDesk desk;
    desk.screen->PressRecord();
    desk.Listen(1, kClipped);
    desk.Listen(99, kQuiet);
    EXPECT_EQ(desk.Warning(), "Too loud: overload");
    desk.Listen(1, kQuiet);
    EXPECT_EQ(desk.Warning(), "No sound from the microphone") << "more urgent";
    desk.screen->PressPlay();
    desk.Listen(3, kQuiet);
    EXPECT_EQ(desk.Warning(), "No sound from the microphone");
    desk.Listen(1, kSpeech);
    EXPECT_EQ(desk.Warning(), "");
    desk.Listen(100, kQuiet);
    EXPECT_EQ(desk.Warning(), "No sound from the microphone");
    desk.screen->PressStop();
    EXPECT_EQ(desk.Warning(), "") << "nobody listens any more";

    RecorderDesk digital({.shown = {.spdif = true}});
    digital.screen->PressRecord();
    digital.Listen(100, kQuiet);
    EXPECT_EQ(digital.Warning(), "No sound from the input");

    RecorderDesk narrow({.layout = "[MaxTime]\r\nw=100\r\n"});
    narrow.screen->PressRecord();
    narrow.Listen(100, kQuiet);
    EXPECT_EQ(narrow.Warning(), "No sound");
    EXPECT_EQ(narrow.host.announced, (std::vector<Text>{u"No sound from the microphone"}));
}

TEST(RecordWWinTest, LostDevicesAndLostSoundAreTold) {
    RecorderDesk desk;
    desk.screen->PressRecord();
    desk.waves.in.lostFrames = 50;  // before saving: in no take
    desk.screen->PressPlay();
    desk.Listen(30, kSpeech);
    EXPECT_EQ(desk.Warning(), "");
    desk.waves.in.lostFrames = 51;
    desk.Listen(1, kSpeech);
    EXPECT_EQ(desk.Warning(), "Some sound was lost");
    desk.waves.in.Lose(WaveLoss::kVanished);
    desk.loop.RunPending();
    EXPECT_EQ(desk.Warning(), "Microphone lost");
    EXPECT_EQ(desk.Lit(), "Stop ");

    desk.transport.MoveTo(0);
    desk.screen->PressPlay();
    desk.waves.out.events->OnWaveOutLost(WaveLoss::kStalled);
    EXPECT_EQ(desk.Warning(), "Loudspeaker stalled");
    desk.screen->PressPlay();
    EXPECT_EQ(desk.Warning(), "Some sound was lost") << "the loudspeaker is back";
    desk.screen->PressStop();
    desk.transport.Record(true);  // a key of the case
    EXPECT_EQ(desk.Warning(), "");
}

TEST(RecordWWinTest, BehindAnotherScreenItListensAndDrawsNothing) {
    RecorderDesk desk;
    desk.host.told.clear();
    desk.screen->Left();
    EXPECT_EQ(desk.host.told, "-0 menus ");
    desk.rig.PaintPage();
    desk.screen->PressRecord();
    desk.screen->PressPlay();
    desk.Listen(1, kSpeech);
    desk.Listen(9, kClipped);
    EXPECT_EQ(desk.rig.TakeChanges(), std::vector<Rect>{});
    EXPECT_EQ(desk.host.announced, (std::vector<Text>{u"Too loud: overload"}))
        << "heard all the same";

    desk.host.told.clear();
    desk.screen->Entered();
    EXPECT_EQ(desk.host.told, "+0 paint ");
    desk.screen->Paint();
    EXPECT_EQ(desk.Lit(), "Play Record ");
    EXPECT_EQ(desk.ValueOf(u"Status"), "Recording");
    EXPECT_EQ(desk.ValueOf(u"Time"), "  0m:00s.45");
    EXPECT_EQ(desk.Warning(), "Too loud: overload");
    EXPECT_EQ(desk.BarOffset(), 0);
}

TEST(RecordWWinTest, TheExternalRecordersLevelFallsByAnEighthOfTheWay) {
    RecorderDesk desk({.external = true});
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
    EXPECT_EQ(desk.BarOffset(), 80) << "the input is closed";
    desk.screen->PressRecord();
    desk.screen->Tick();
    EXPECT_EQ(desk.BarOffset(), 0);
    EXPECT_EQ(desk.Warning(), "Too loud: overload");
}

}  // namespace
}  // namespace orma::test
