#include "ui/controls/graph_columns.h"

#include <algorithm>
#include <array>
#include <limits>

namespace orma {
namespace {

constexpr int kSilence = 80;        // one below the quietest level byte, design pixels
constexpr std::size_t kBlock = 64;  // bytes whose smallest decides whether they are looked at

using Levels = std::span<const std::uint8_t>;

/// Written for the vectoriser: a fixed count, no branch.
std::uint8_t SmallestOfBlock(const std::uint8_t* bytes) {
    std::uint8_t smallest = 0xFF;
    for (std::size_t i = 0; i < kBlock; ++i)
        smallest = std::min(smallest, bytes[i]);
    return smallest;
}

std::uint8_t SmallestOf(Levels bytes) {
    if (bytes.size() == kBlock) return SmallestOfBlock(bytes.data());
    return *std::min_element(bytes.begin(), bytes.end());
}

class Heights {
  public:
    explicit Heights(float scale) : start_(LevelHeight(kSilence, scale)), enlarged_(scale >= 1) {
        for (std::size_t level = 0; level < heights_.size(); ++level)
            heights_[level] = LevelHeight(static_cast<int>(level), scale);
    }

    [[nodiscard]] int Of(std::uint8_t level) const { return heights_[level]; }
    [[nodiscard]] int Of(Levels column) const {
        return enlarged_ ? Enlarged(column) : Reduced(column);
    }

  private:
    /// A scale below 1 makes a value smaller than its byte, so only ever smaller bytes count:
    /// blocks without one are passed over.
    [[nodiscard]] int Reduced(Levels column) const {
        int value = start_;
        for (std::size_t at = 0; at < column.size(); at += kBlock) {
            const Levels block = column.subspan(at, std::min(kBlock, column.size() - at));
            if (SmallestOf(block) >= value) continue;
            for (const std::uint8_t level : block)
                if (level < value) value = Of(level);
        }
        return value;
    }

    /// With a scale of 1 or more no value is below its byte, so the last smallest byte of any
    /// stretch becomes the value whatever came before it. What follows it can only be decided by
    /// the last smallest byte of the rest, and so on: the bytes that matter are those below all
    /// that follow them. Met from the end of the column, each one knows the outcome of what follows
    /// it, which it keeps when the next of these bytes is below its own height.
    [[nodiscard]] int Enlarged(Levels column) const {
        int smallest = std::numeric_limits<int>::max();
        std::uint8_t outcome = 0;
        for (std::size_t end = column.size(); end > 0;) {
            const std::size_t size = end % kBlock == 0 ? kBlock : end % kBlock;
            end -= size;
            const Levels block = column.subspan(end, size);
            if (SmallestOf(block) >= smallest) continue;
            for (auto level = block.rbegin(); level != block.rend(); ++level) {
                if (*level >= smallest) continue;
                if (smallest >= Of(*level)) outcome = *level;
                smallest = *level;
            }
        }
        return smallest < start_ ? Of(outcome) : start_;
    }

    std::array<int, 256> heights_{};
    int start_;
    bool enlarged_;
};

}  // namespace

std::size_t LevelColumns(Levels levels, int zoom, float scale, int top, std::span<Point> points) {
    const Heights heights(scale);
    const std::size_t all = zoom >= 0 ? levels.size() >> zoom : levels.size() << -zoom;
    const std::size_t count = std::min(all, points.size());
    for (std::size_t i = 0; i < count; ++i) {
        points[i].y =
            top + (zoom < 0 ? heights.Of(levels[i >> -zoom])
                            : heights.Of(levels.subspan(i << zoom, std::size_t{1} << zoom)));
    }
    return count;
}

}  // namespace orma
