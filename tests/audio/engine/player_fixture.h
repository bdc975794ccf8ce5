#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "audio/engine/player.h"
#include "audio/files/wav_bytes.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma::test {

using Periods = std::vector<std::uint32_t>;

/// Boxes behind which events go on, as they do on a screen.
class EventfulBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox& box) override {
        texts.push_back(box.text);
        if (const auto behind = std::exchange(whileShowing, nullptr)) behind();
        return BoxAnswer::kOk;
    }

    std::vector<Text> texts;
    std::function<void()> whileShowing;  // behind the next box
};

class LoggingPlayerListener : public PlayerListener {
  public:
    void OnPosition(std::uint32_t heard, std::uint8_t level) override {
        positions.push_back(heard);
        levels.push_back(level);
        if (whileTold) whileTold();
    }
    void OnPlaceMoved(std::uint32_t position) override {
        events.push_back("place " + std::to_string(position));
    }
    void OnCutChosen(std::int32_t index) override {
        events.push_back("cut " + std::to_string(index));
    }
    void OnPlaying(bool playing) override { events.emplace_back(playing ? "playing" : "stopped"); }
    std::optional<PeriodRange> NextRange() override { return next ? next() : std::nullopt; }
    void OnPlayedOut() override { events.emplace_back("played out"); }
    void OnOutputLost(WaveLoss) override { events.emplace_back("lost"); }

    Periods positions;
    std::vector<std::uint8_t> levels;
    std::vector<std::string> events;
    std::function<void()> whileTold;
    std::function<std::optional<PeriodRange>()> next;
};

/// A player on a fake loudspeaker, and takes whose samples say which period they belong to: mono,
/// 44100 Hz, twenty periods a second.
class PlayerTest : public testing::Test {
  protected:
    static constexpr std::uint32_t kBufferBytes = 4410;

    /// Makes a take of `periods` current; its samples are 0, 1, 2 ... a period each.
    void MakeTake(std::uint32_t periods) {
        WriteFileBytes(audioPath, NumberedTake(periods));
        length = periods;
        sheet.levels.clear();
        for (std::uint32_t i = 0; i < periods; ++i)
            sheet.levels.push_back(static_cast<std::uint8_t>(i % 80));
    }

    void Start(std::int32_t position, std::uint16_t channels = 1) {
        waves.out.played.clear();
        player.WavRestartPlaying(position);
        EXPECT_TRUE(player.StartPlaying(channels));
    }

    /// Plays from `position` until nothing is left to be played; what was heard, by periods.
    Periods Hear(std::int32_t position) {
        Start(position);
        FinishAll();
        return Heard();
    }

    void FinishAll() {
        while (waves.out.FinishOne())
            loop.RunPending();
    }

    void Finish(std::size_t count) {
        for (std::size_t n = 0; n < count; ++n)
            ASSERT_TRUE(waves.out.FinishOne());
    }

    [[nodiscard]] Periods Heard() const {
        Periods heard;
        for (std::size_t at = 0; at + kBufferBytes <= waves.out.played.size(); at += kBufferBytes) {
            const std::uint8_t* buffer = &waves.out.played[at];
            heard.push_back(LoadLe<std::uint16_t>(buffer));
            EXPECT_EQ(LoadLe<std::uint16_t>(buffer + kBufferBytes - 2), heard.back())
                << "a buffer that holds more than one period";
        }
        return heard;
    }

    [[nodiscard]] auto Told(const std::string& event) const {
        return std::ranges::count(listener.events, event);
    }

    TempFolder folder;
    FaultyStorage storage;
    EventfulBoxes boxes;
    ErrorReporter report{boxes, storage};
    AudioState audio;
    Mp2Decoder decoder{audio, storage, u""};
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    CaptureBuffers buffers;
    Text audioPath = folder.Path(u"take.wav");
    std::uint32_t length = 0;
    LevelSheet sheet;
    std::int32_t currentCut = -1;
    TransportState transport = TransportState::kPlaying;
    LoggingPlayerListener listener;
    Player player{{.waves = waves,
                   .readers = {{storage, report}, audio, decoder},
                   .buffers = buffers,
                   .recording = {audioPath, length, sheet, currentCut},
                   .transport = transport,
                   .listener = listener}};
};

/// begin, begin + 1 ... end - 1.
[[nodiscard]] inline Periods Range(std::uint32_t begin, std::uint32_t end) {
    Periods range;
    for (; begin < end; ++begin)
        range.push_back(begin);
    return range;
}

}  // namespace orma::test
