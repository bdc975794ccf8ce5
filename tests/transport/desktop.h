#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_bytes.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/faulty_storage.h"
#include "support/quiet_ports.h"
#include "support/temp_folder.h"

namespace orma::test {

/// The application with its buttons, on a fake microphone and loudspeaker, in an empty project of
/// twenty periods a second.
class Desktop : public HeadsetProbe, public DesktopHelpers, public TransportListener {
  public:
    static constexpr std::uint32_t kPeriodBytes = 4410;  // of one channel

    Desktop() { EXPECT_TRUE(OpenOrCreateProject(app, folder.Path(u"talk.opr"))); }

    /// Adds a clip of a take whose samples are `first`, `first` + 1 ..., a period each; its number.
    std::int32_t AddTake(const Text& name, std::uint32_t periods, std::vector<RemovedRange> cuts,
                         std::uint32_t first = 0, unsigned channels = 1, PeriodRange range = {}) {
        WriteFileBytes(folder.Path(name + u".wav"), NumberedTake(periods, first, channels));
        LevelSheet sheet;
        sheet.cuts = std::move(cuts);
        sheet.levels.assign(periods, 40);
        EXPECT_TRUE(WriteVuFile(app.files, folder.Path(name + u".jvu"), sheet));
        ClipEntry clip;
        clip.name = name;
        clip.folder = folder.Path();
        clip.begin = range.begin;
        clip.end = range.end;
        return app.clips.Append(clip);
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

    /// Lets `periods` be heard, or all that there is.
    void Hear(int periods) {
        for (int i = 0; i < periods && waves.out.FinishOne(); ++i)
            loop.RunPending();
    }

    /// The periods heard so far, of mono output.
    [[nodiscard]] std::vector<std::uint32_t> Heard() const {
        std::vector<std::uint32_t> heard;
        for (std::size_t at = 0; at < waves.out.played.size(); at += kPeriodBytes)
            heard.push_back(LoadLe<std::uint16_t>(&waves.out.played[at]));
        return heard;
    }

    void Speak(int periods) {
        for (int i = 0; i < periods; ++i)
            (void)waves.in.DeliverValue(500);
    }

    [[nodiscard]] std::uint32_t Cursor() const { return app.recording.cursor; }
    [[nodiscard]] int Lamp() const { return static_cast<int>(transport.State()); }

    int State(bool) override { return headset; }
    bool StartMicrophoneGainTool(std::uint32_t mode) override {
        asked += "tool" + std::to_string(mode) + " ";
        return hasTool;
    }
    void CloseSynchronisation() override { asked += "sync "; }
    void OnTransportState(TransportState state, const LitButtons& buttons) override {
        told += std::to_string(static_cast<int>(state));
        lit = buttons;
    }
    void OnMarkText(const Text& text, std::uint32_t) override { markTexts.push_back(text); }
    void OnEdgeMoved(const EdgeMove& move) override { moves.push_back(move); }
    void OnClosed() override { told += 'c'; }
    void OnPlayedOut() override { told += 'o'; }
    std::optional<PeriodRange> NextRange() override { return next ? next() : std::nullopt; }

    TempFolder folder;
    FaultyStorage storage;
    FakeBoxes boxes;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    NoProgress progress;
    int headset = -1;
    bool hasTool = false;
    std::string asked;  // of the desktop
    std::string told;   // the events, in order: state numbers, 'c' input closed, 'o' played out
    LitButtons lit{.stop = true};
    std::vector<Text> markTexts;
    std::vector<EdgeMove> moves;
    std::function<std::optional<PeriodRange>()> next;
    Application app{Ports{.storage = storage,
                          .clock = clock,
                          .boxes = boxes,
                          .loop = loop,
                          .waves = waves,
                          .headset = *this,
                          .desktop = this},
                    FrontEnd{*this, progress}, folder.Path()};
    Transport& transport = app.transport;
};

}  // namespace orma::test
