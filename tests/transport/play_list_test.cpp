#include "transport/play_list.h"

#include <limits>

#include "transport/desktop.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kEnd = std::numeric_limits<std::uint32_t>::max();

/// Three clips: of 0..29 without the cut 10..20, of 100..129 the part 105..115, and 200..219 in
/// stereo with everything cut but the last two.
class PlayListTest : public testing::Test, public Desktop {
  protected:
    PlayListTest() {
        AddTake(u"a", 30, {{10, 20, 0}});
        AddTake(u"b", 30, {}, 100, 1, {5, 15});
        AddTake(u"c", 20, {{0, 9, 0}, {9, 18, 0}}, 200, 2);
    }

    /// The periods that are heard of the list.
    std::vector<std::uint32_t> HearList(std::int32_t first, std::int32_t clips,
                                        std::uint32_t from = 0, std::uint32_t to = kEnd) {
        PlayList list(app.project, first, clips);
        list.Trim(from, to);
        next = [&list] { return list.Next(); };
        waves.out.played.clear();
        if (const auto range = list.Next()) {
            EXPECT_TRUE(transport.PlayRange(*range, 1));
            Hear(1000);
        }
        next = nullptr;
        EXPECT_TRUE(app.player.IsClosed());
        return Heard();
    }
};

std::vector<std::uint32_t> Joined(std::initializer_list<PeriodRange> ranges) {
    std::vector<std::uint32_t> periods;
    for (auto [period, end] : ranges)
        for (; period < end; ++period)
            periods.push_back(period);
    return periods;
}

TEST_F(PlayListTest, ClipsAreHeardInOrderEachInItsRangeAndWithoutItsCuts) {
    EXPECT_EQ(HearList(0, 99), Joined({{0, 10}, {20, 30}, {105, 115}, {218, 220}}));
    EXPECT_EQ(app.clips.CurrentIndex(), 2);
    EXPECT_EQ(waves.out.Count("OpenOutput"), 1U) << "without a gap";
    EXPECT_EQ(HearList(1, 1), Joined({{105, 115}}));
    EXPECT_EQ(PlayList(app.project, 0, 99).Channels(), 2);
    EXPECT_EQ(PlayList(app.project, 0, 2).Channels(), 1);

    // Times count along what is heard.
    EXPECT_EQ(HearList(0, 99, 8, 12), Joined({{8, 10}, {20, 22}}));
    EXPECT_EQ(HearList(0, 99, 18, 31), Joined({{28, 30}, {105, 115}, {218, 219}}));
    EXPECT_EQ(HearList(0, 99, 32), Joined({}));

    ASSERT_EQ(storage.Delete(folder.Path(u"b.wav")), 0U);
    EXPECT_EQ(HearList(0, 99), Joined({{0, 10}, {20, 30}, {218, 220}}))
        << "what is missing is left out";
    EXPECT_EQ(boxes.Texts(), std::vector<Text>{});
}

}  // namespace
}  // namespace orma::test
