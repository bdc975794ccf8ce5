// A take in the window while the machine stalls, on a display in memory.

#include <QApplication>
#include <QMainWindow>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "platform/qt/qt_event_loop.h"
#include "support/fake_running_instance.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"
#include "support/test_files.h"
#include "window/window_session.h"

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

struct WindowSessionTest : testing::Test {
    WindowSessionTest() {
        EXPECT_TRUE(server.IsRunning()) << "pulseaudio does not start";
        std::string error;
        EXPECT_TRUE(machine.Open({.home = files.folder.Native().string(),
                                  .audio = "portaudio",
                                  .hardware = "none",
                                  .trace = {}},
                                 error))
            << error;
        session.emplace(machine, running);
        EXPECT_TRUE(session->Start({}));
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const shown = qobject_cast<QMainWindow*>(widget)) window = shown;
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
    }
    ~WindowSessionTest() override {
        EXPECT_TRUE(files.boxes.shown.empty());
        session.reset();
        std::filesystem::current_path("/");  // the folder is about to go
    }

    void Press(Qt::Key key) { QTest::keyClick(window->windowHandle(), key); }

    /// What the control of that name tells helpers of the desktop.
    [[nodiscard]] std::string ValueOf(TextView control) const {
        for (const Win* const win : static_cast<PageWidget*>(window->centralWidget())->Controls())
            if (win->Label().name == control) return ToUtf8(win->Value());
        return "no such control";
    }

    /// Lets the window run meanwhile.
    [[nodiscard]] bool Shows(TextView control, const std::string& value) const {
        return QTest::qWaitFor([&] { return ValueOf(control) == value; }, 20'000);
    }

    PulseServer server;
    TestFiles files;
    QtEventLoop loop;
    Machine machine{loop, files.boxes};
    std::vector<std::string> log;
    FakeRunningInstance running{log};
    std::optional<WindowSession> session;
    QMainWindow* window = nullptr;
};

/// The sixteen buffers of a take hold 0.8 s; what comes beyond them waits behind the audio thread.
TEST_F(WindowSessionTest, AStallOfThreeSecondsDuringATakeLosesNoSample) {
    using namespace std::chrono_literals;
    const Samples voice = Voice(6);
    TempFolder sounds;
    WriteSoundFile(sounds.Path(u"voice.wav"), 1, kSecond, voice);
    Press(Qt::Key_9);
    ASSERT_TRUE(Shows(u"Status", "Ready"));
    Press(Qt::Key_8);
    ASSERT_TRUE(Shows(u"Status", "Recording"));
    QTest::qWait(500);

    const pid_t player = server.Speak(sounds.Path(u"voice.wav"));
    // Heard, so that the stall lies within the voice.
    ASSERT_TRUE(QTest::qWaitFor([&] { return ValueOf(u"Level") != "-49 dB or less"; }, 20'000));
    std::this_thread::sleep_for(3s);
    EXPECT_EQ(::waitpid(player, nullptr, WNOHANG), 0) << "the voice ended within the stall";
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return ::waitpid(player, nullptr, WNOHANG) == player; }, 20'000));
    QTest::qWait(1000);
    EXPECT_EQ(ValueOf(u"Warning"), "");
    Press(Qt::Key_7);
    ASSERT_TRUE(Shows(u"Name", "default00"));
    window->close();
    EXPECT_EQ(loop.Run(), 0);
    EXPECT_TRUE(session->End());

    const Samples take = ReadSoundFile(files.folder.Path(u"default00.wav"));
    const Samples spoken = AsRecorded(voice);
    EXPECT_NE(std::search(take.begin(), take.end(), spoken.begin(), spoken.end()), take.end())
        << "the voice is not whole in the take";
}

}  // namespace
}  // namespace orma::test
