#include "app/play_list.h"

#include <limits>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_bytes.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kPeriodBytes = 4410;
constexpr std::uint32_t kEnd = std::numeric_limits<std::uint32_t>::max();

/// A project of three clips, whose samples say the period: 0..29 with the cut 10..20, of 100..129
/// the part 105..115, and 200..219 in stereo with everything cut but the last two.
class PlayListTest : public testing::Test,
                     public HeadsetProbe,
                     public TransportListener,
                     public PublishProgress {
  protected:
    PlayListTest() {
        EXPECT_TRUE(OpenOrCreateProject(app, files.folder.Path(u"list.opr")));
        AddClip(u"a", 1, 30, 0, {{10, 20, 0}});
        AddClip(u"b", 1, 30, 100, {}, 5, 15);
        AddClip(u"c", 2, 20, 200, {{0, 9, 0}, {9, 18, 0}});
    }

    void AddClip(const Text& name, unsigned channels, std::uint32_t periods, std::uint32_t first,
                 std::vector<RemovedRange> cuts, std::uint32_t begin = 0, std::uint32_t end = 0) {
        Bytes data(std::size_t{periods} * kPeriodBytes * channels);
        for (std::size_t i = 0; i < data.size() / 2; ++i)
            StoreLe(&data[2 * i],
                    static_cast<std::uint16_t>(first + i / (kPeriodBytes / 2 * channels)));
        const WavFields fields{.channels = channels, .blockAlign = 2 * channels};
        WriteFileBytes(files.folder.Path(name + u".wav"), WavBytes(fields, data));
        LevelSheet sheet;
        sheet.cuts = std::move(cuts);
        sheet.levels.assign(periods, 40);
        EXPECT_TRUE(WriteVuFile(files.services, files.folder.Path(name + u".jvu"), sheet));
        ClipEntry clip;
        clip.name = name;
        clip.folder = files.folder.Path();
        clip.begin = begin;
        clip.end = end;
        app.clips.Append(clip);
    }

    /// The periods that are heard of the list.
    std::vector<std::uint32_t> Hear(std::int32_t first, std::int32_t clips, std::uint32_t from = 0,
                                    std::uint32_t to = kEnd) {
        PlayList playList(app, first, clips);
        playList.Trim(from, to);
        list = &playList;
        waves.out.played.clear();
        if (const auto range = playList.Next()) {
            EXPECT_TRUE(app.transport.PlayRange(*range, 1));
            while (waves.out.FinishOne())
                loop.RunPending();
        }
        EXPECT_TRUE(app.player.IsClosed());
        std::vector<std::uint32_t> heard;
        for (std::size_t at = 0; at < waves.out.played.size(); at += kPeriodBytes)
            heard.push_back(LoadLe<std::uint16_t>(&waves.out.played[at]));
        return heard;
    }

    [[nodiscard]] int State(bool) override { return -1; }
    std::optional<PeriodRange> NextRange() override { return list->Next(); }
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }

    TestFiles files;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    PlayList* list = nullptr;
    Application app{Ports{.storage = files.storage,
                          .clock = clock,
                          .boxes = files.boxes,
                          .loop = loop,
                          .waves = waves,
                          .headset = *this},
                    FrontEnd{*this, *this}, files.folder.Path()};
};

std::vector<std::uint32_t> Joined(std::initializer_list<PeriodRange> ranges) {
    std::vector<std::uint32_t> periods;
    for (const PeriodRange& range : ranges)
        for (std::uint32_t period = range.begin; period < range.end; ++period)
            periods.push_back(period);
    return periods;
}

TEST_F(PlayListTest, ClipsAreHeardInOrderEachInItsRangeAndWithoutItsCuts) {
    EXPECT_EQ(Hear(0, 99), Joined({{0, 10}, {20, 30}, {105, 115}, {218, 220}}));
    EXPECT_EQ(app.clips.CurrentIndex(), 2);
    EXPECT_EQ(waves.out.Count("OpenOutput"), 1U) << "without a gap";
    EXPECT_EQ(Hear(1, 1), Joined({{105, 115}}));
    EXPECT_EQ(PlayList(app, 0, 99).Channels(), 2);
    EXPECT_EQ(PlayList(app, 0, 2).Channels(), 1);

    // Times count along what is heard.
    EXPECT_EQ(Hear(0, 99, 8, 12), Joined({{8, 10}, {20, 22}}));
    EXPECT_EQ(Hear(0, 99, 18, 31), Joined({{28, 30}, {105, 115}, {218, 219}}));
    EXPECT_EQ(Hear(0, 99, 32), Joined({}));

    ASSERT_EQ(files.storage.Delete(files.folder.Path(u"b.wav")), 0U);
    EXPECT_EQ(Hear(0, 99), Joined({{0, 10}, {20, 30}, {218, 220}}))
        << "what is missing is left out";
    EXPECT_EQ(files.boxes.Texts(), std::vector<Text>{});
}

TEST_F(PlayListTest, TheVolumeThatIsSetIsAppliedAtTheStart) {
    InputProcessingSettings settings;
    settings.outputStep = 0;
    app.input.Load(settings, 44100);
    (void)Hear(2, 1);
    EXPECT_EQ(waves.volumeLeft, 6553);  // -20 dB
    EXPECT_EQ(waves.volumeRight, 6553);
}

}  // namespace
}  // namespace orma::test
