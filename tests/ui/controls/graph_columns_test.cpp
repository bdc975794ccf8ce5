#include "ui/controls/graph_columns.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace orma {
namespace {

/// Byte after byte, as the line is defined.
std::vector<int> Plain(const std::vector<std::uint8_t>& levels, int zoom, float scale) {
    std::vector<int> values;
    const std::size_t bytes = std::size_t{1} << zoom;
    for (std::size_t at = 0; at + bytes <= levels.size(); at += bytes) {
        int value = LevelHeight(80, scale);
        for (std::size_t i = at; i < at + bytes; ++i)
            if (levels[i] < value) value = LevelHeight(levels[i], scale);
        values.push_back(value);
    }
    return values;
}

std::vector<int> Columns(const std::vector<std::uint8_t>& levels, int zoom, float scale) {
    std::vector<Point> points(levels.size() * 16, Point{-1, -1});
    const std::size_t count = LevelColumns(levels, zoom, scale, 24, points);
    std::vector<int> values;
    for (std::size_t i = 0; i < count; ++i)
        values.push_back(points[i].y - 24);
    return values;
}

TEST(GraphColumns, EveryZoomAndScaleGivesWhatLookingAtByteAfterByteGives) {
    std::mt19937 random(20060301);
    const auto levels = [&](int lowest, int highest, std::size_t count) {
        std::uniform_int_distribution<int> level(lowest, highest);
        std::vector<std::uint8_t> bytes(count);
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(level(random));
        return bytes;
    };
    std::vector<std::vector<std::uint8_t>> takes = {
        levels(0, 79, 5000),   levels(30, 79, 5000), levels(0, 255, 5000),
        levels(80, 255, 3000), levels(0, 2, 3000),   levels(0, 79, 5000),
    };
    std::ranges::sort(takes.back());  // fading
    takes.emplace_back(takes.back().rbegin(), takes.back().rend());
    for (const auto& take : takes)
        for (const float scale : {0.4F, 0.99F, 1.0F, 1.25F, 1.5F, 2.0F, 3.7F})
            for (int zoom = 0; zoom <= 12; ++zoom)
                ASSERT_EQ(Columns(take, zoom, scale), Plain(take, zoom, scale))
                    << "scale " << scale << ", zoom " << zoom;
}

TEST(GraphColumns, TheByteIsComparedUnscaledWithTheScaledValue) {
    EXPECT_EQ(Columns({10, 15, 40, 79}, 2, 1.0F), std::vector<int>{10});
    EXPECT_EQ(Columns({10, 15, 40, 79}, 2, 2.0F), std::vector<int>{30}) << "15 is below 20";
    EXPECT_EQ(Columns({20, 15, 40, 79}, 2, 0.5F), std::vector<int>{10}) << "15 is not below 10";
}

TEST(GraphColumns, ClosePeriodsTakeSeveralColumnsAndNeverMoreThanThereAre) {
    EXPECT_EQ(Columns({3, 40}, -2, 2.0F), (std::vector<int>{6, 6, 6, 6, 80, 80, 80, 80}));
    std::vector<Point> points(3);
    EXPECT_EQ(LevelColumns(std::vector<std::uint8_t>{3, 40}, -1, 1.0F, 0, points), 3U);
    EXPECT_EQ(LevelColumns({}, 3, 1.0F, 0, points), 0U);
}

}  // namespace
}  // namespace orma
