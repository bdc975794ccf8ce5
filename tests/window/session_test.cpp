// A reporter's work in the window, from its start to its end, on a display in memory.

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "audio/files/level_tables.h"
#include "audio/files/vu_file.h"
#include "settings/settings_store.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"
#include "support/test_files.h"
#include "transport/desktop.h"
#include "window/window_desk.h"

namespace orma::test {
namespace {

using Samples = std::vector<std::int16_t>;

constexpr std::size_t kPeriod = 2205;  // samples
constexpr std::size_t kSecond = 44100;

/// Noise of which no stretch repeats, each period as loud as none beside it.
Samples Voice(std::size_t seconds) {
    Samples voice = Ramp(seconds * kSecond);
    for (std::size_t i = 0; i < voice.size(); ++i) {
        const auto loudness = static_cast<int>(500 + i / kPeriod * 7919 % 30000);
        voice[i] = static_cast<std::int16_t>(voice[i] * loudness / 32768);
    }
    return voice;
}

/// What a recorder without gain and equaliser makes of it: the DC blocker's work alone.
Samples AsRecorded(const Samples& heard) {
    Samples recorded;
    std::int32_t held = 0;
    for (const std::int16_t sample : heard) {
        const std::int32_t value = sample - (held >> 10);
        held += value;
        recorded.push_back(static_cast<std::int16_t>(std::clamp(value, -32767, 32767)));
    }
    return recorded;
}

/// Marks, levels and sound of the take tell the same story as the voice.
void ExpectTake(const WindowDesk& desk, const Samples& voice) {
    const Samples take = ReadSoundFile(desk.Path(u"talk00.wav"));
    ASSERT_EQ(take.size() % kPeriod, 0U);
    ASSERT_GT(take.size(), 2 * kSecond);
    // What the stop flushed back follows as it was heard, and is silent where nothing was.
    const Samples spoken = AsRecorded(voice);
    const auto last = take.end() - kPeriod;
    const auto found = std::search(spoken.begin(), spoken.end(), take.begin(), last);
    ASSERT_NE(found, spoken.end()) << "the take is no stretch of what was spoken";
    const auto end = voice.begin() + (found - spoken.begin()) + (last - take.begin());
    const auto silent = std::mismatch(last, take.end(), end).first;
    EXPECT_TRUE(std::all_of(silent, take.end(), [](std::int16_t sample) { return sample == 0; }));

    const auto sheet = DecodeVuFile(ReadFileBytes(desk.Path(u"talk00.jvu")));
    ASSERT_TRUE(sheet);
    ASSERT_EQ(sheet->levels.size(), take.size() / kPeriod);
    for (std::size_t i = 0; i + 1 < sheet->levels.size(); ++i) {
        std::uint32_t peak = 0;
        for (std::size_t at = i * kPeriod; at < (i + 1) * kPeriod; ++at)
            peak = std::max(peak, static_cast<std::uint32_t>(std::abs(take[at])));
        ASSERT_EQ(sheet->levels[i], LevelOfPeak(peak)) << "period " << i;
    }
    ASSERT_EQ(sheet->marks.size(), 3U);
    EXPECT_GT(sheet->marks.front(), 0U);
    EXPECT_TRUE(std::ranges::is_sorted(sheet->marks, std::less_equal<>()));
    EXPECT_LT(sheet->marks.back(), sheet->levels.size());
    EXPECT_EQ(sheet->rangeEnd, sheet->levels.size());
}

void ExpectProject(const WindowDesk& desk) {
    Desktop reader;
    ASSERT_TRUE(OpenProject(reader.app, desk.Path(u"talk.opr")));
    ASSERT_EQ(reader.app.clips.Count(), 1);
    ASSERT_TRUE(reader.app.project.SelectClip(0));
    EXPECT_EQ(reader.app.recording.audioPath, desk.Path(u"talk00.wav"));
    EXPECT_EQ(reader.app.recording.sheet.marks.size(), 3U);
    EXPECT_TRUE(reader.boxes.shown.empty());
}

void ExpectSettings(const WindowDesk& desk, const Bytes& configurationBefore) {
    EXPECT_EQ(ReadFileBytes(desk.Path(u"OrmaIni.sup")), configurationBefore);
    TestFiles files;
    SettingsRecord settings;
    SettingsStore store(files.services, desk.Path({}), settings);
    EXPECT_FALSE(store.LoadUserState());
    EXPECT_FALSE(store.LoadConfiguration());
    EXPECT_EQ(settings.LastFolder, desk.Path({}));
    EXPECT_EQ(settings.LastName, u"talk");
    EXPECT_EQ(settings.CurrentProjectName, u"talk");
}

TEST(WindowSessionTest, AFirstTakeFromStartToExitIsAllThereAfterwards) {
    const Samples voice = Voice(120);
    TempFolder sounds;
    WriteSoundFile(sounds.Path(u"voice.wav"), 1, kSecond, voice);
    const Text heard = sounds.Path(u"heard.wav");
    // Twice as fast as a clock, so that the test is short.
    WindowDesk desk("virtual:in=" + ToUtf8(sounds.Path(u"voice.wav")) + ",out=" + ToUtf8(heard) +
                    ",pace=2");
    const Bytes configuration = ReadFileBytes(desk.Path(u"OrmaIni.sup"));
    const auto shows = [&](TextView control, const std::string& value) {
        return desk.RunUntil([&] { return desk.ValueOf(control) == value; });
    };

    desk.Click(Element::Record);
    ASSERT_TRUE(shows(u"Status", "Ready"));
    ASSERT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Level") != "-49 dB or less"; }));
    desk.Click(Element::Play);
    ASSERT_TRUE(shows(u"Status", "Recording"));
    desk.Pass(300);
    desk.PressKey(Qt::Key_9);
    EXPECT_TRUE(shows(u"Time", "  Mark   1 "));
    desk.Pass(300);
    desk.Click(Element::Record);
    EXPECT_TRUE(shows(u"Time", "  Mark   2 "));
    desk.Pass(300);
    desk.PressKey(Qt::Key_9);
    EXPECT_TRUE(shows(u"Time", "  Mark   3 "));
    desk.Pass(300);
    desk.Click(Element::Stop);
    ASSERT_TRUE(shows(u"Name", "talk00"));
    EXPECT_EQ(desk.ValueOf(u"Status"), "Stopped");

    desk.PressKey(Qt::Key_8);
    ASSERT_TRUE(shows(u"Status", "Playing"));
    ASSERT_TRUE(shows(u"Status", "Stopped")) << "at the end of the take";
    const Samples take = ReadSoundFile(desk.Path(u"talk00.wav"));
    const Samples played = ReadSoundFile(heard);
    ASSERT_GE(played.size(), take.size());
    EXPECT_NE(std::search(played.begin(), played.end(), take.begin(), take.end()), played.end());

    desk.Choose("View", "About");
    EXPECT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Status") == "no such control"; }));
    desk.Choose("File", "Exit");
    EXPECT_TRUE(desk.End());

    ASSERT_NO_FATAL_FAILURE(ExpectTake(desk, voice));
    ASSERT_NO_FATAL_FAILURE(ExpectProject(desk));
    ExpectSettings(desk, configuration);
}

/// The sixteen buffers of a take hold 0.8 s; what comes beyond them waits behind the audio thread.
TEST(WindowSessionTest, AStallOfThreeSecondsDuringATakeLosesNoSample) {
    using namespace std::chrono_literals;
    PulseServer server;
    ASSERT_TRUE(server.IsRunning()) << "pulseaudio does not start";
    const Samples voice = Voice(6);
    TempFolder sounds;
    WriteSoundFile(sounds.Path(u"voice.wav"), 1, kSecond, voice);
    WindowDesk desk("portaudio");
    desk.Click(Element::Record);
    ASSERT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Status") == "Ready"; }));
    desk.Click(Element::Play);
    ASSERT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Time") > "  0m:00s.50"; }));

    const pid_t player = server.Speak(sounds.Path(u"voice.wav"));
    // Heard, so that the stall lies within the voice.
    ASSERT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Level") != "-49 dB or less"; }));
    bool stalled = false;
    QTimer::singleShot(0, [&] {
        std::this_thread::sleep_for(3s);
        stalled = true;
    });
    ASSERT_TRUE(desk.RunUntil([&] { return stalled; }));
    EXPECT_EQ(::waitpid(player, nullptr, WNOHANG), 0) << "the voice ended within the stall";
    ASSERT_TRUE(desk.RunUntil([&] { return ::waitpid(player, nullptr, WNOHANG) == player; }));
    desk.Pass(1000);
    EXPECT_EQ(desk.ValueOf(u"Warning"), "");
    desk.Click(Element::Stop);
    ASSERT_TRUE(desk.RunUntil([&] { return desk.ValueOf(u"Name") == "talk00"; }));
    desk.Choose("File", "Exit");
    EXPECT_TRUE(desk.End());

    const Samples take = ReadSoundFile(desk.Path(u"talk00.wav"));
    const Samples spoken = AsRecorded(voice);
    EXPECT_NE(std::search(take.begin(), take.end(), spoken.begin(), spoken.end()), take.end())
        << "the voice is not whole in the take";
}

}  // namespace
}  // namespace orma::test
