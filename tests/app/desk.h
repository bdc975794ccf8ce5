#pragma once

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/quiet_ports.h"
#include "support/test_files.h"

namespace orma::test {

class LoggingDesktop : public DesktopHelpers {
  public:
    [[nodiscard]] bool StartCommand(const Text& command, const Text& argument) override {
        asked.push_back(command + u" " + argument);
        return starts;
    }
    [[nodiscard]] bool StartMicrophoneGainTool(std::uint32_t) override { return starts; }

    bool starts = true;
    std::vector<Text> asked;
};

/// The application on real files and a scripted microphone; a test may build it more than once, as
/// starting again does.
class Desk : public TransportListener {
  public:
    [[nodiscard]] std::unique_ptr<Application> Start() {
        auto app = std::make_unique<Application>(Ports{.storage = files.storage,
                                                       .clock = clock,
                                                       .boxes = files.boxes,
                                                       .loop = loop,
                                                       .waves = waves,
                                                       .headset = headset,
                                                       .desktop = &desktop},
                                                 FrontEnd{*this, progress}, files.folder.Path());
        LoadSettings(*app);
        return app;
    }

    [[nodiscard]] Text Path(TextView name = {}) const { return files.folder.Path(name); }
    [[nodiscard]] bool Exists(TextView name) { return files.storage.Exists(Path(name)); }

    /// Ends the take, from the stop button to the closed device.
    void Stop(Application& app) {
        app.recorder.WavStopRecording();
        loop.RunPending();
        ASSERT_TRUE(app.recorder.IsClosed());
    }

    /// A take of which `periods` buffers were saved so far.
    void Begin(Application& app, int periods) {
        ASSERT_EQ(app.recorder.WavStartRecording(), 0);
        app.recorder.WavStartRecordSaving();
        const Bytes sound(2205 * 2 * app.audio.Channels(), 7);
        for (int i = 0; i < periods + 1; ++i)
            waves.in.Deliver(sound);
    }

    void Record(Application& app, int periods) {
        Begin(app, periods);
        Stop(app);
    }

    /// Stores settings as the set-up program would.
    void Configure(const std::function<void(SettingsRecord&)>& change) {
        SettingsRecord record;
        SettingsStore store(files.services, files.folder.Path(), record);
        (void)store.LoadConfiguration();
        change(record);
        ASSERT_TRUE(store.SaveConfiguration());
    }

    TestFiles files;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    NoHeadset headset;
    LoggingDesktop desktop;
    NoProgress progress;
};

}  // namespace orma::test
