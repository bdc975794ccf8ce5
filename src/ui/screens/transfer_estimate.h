#pragma once

#include <cstdint>
#include <optional>

namespace orma {

/// How long a transfer will still take, from how it went in the last seconds. What goes first fills
/// the system's buffers and says nothing about the network, and a number that changes all the time
/// cannot be read: the first second is left out, and an answer stands for a second.
class TransferEstimate {
  public:
    /// The next call is about another transfer.
    void Restart() { *this = {}; }

    /// The seconds that are left, rounded up, when `done` of `total` bytes are sent at that moment
    /// (milliseconds, which may wrap). Nothing while too little is known, when all is sent, and
    /// when nothing moves any more. To be asked often, also when nothing was sent.
    [[nodiscard]] std::optional<std::uint32_t> SecondsLeft(std::uint32_t now, std::uint64_t done,
                                                           std::uint64_t total);

  private:
    static constexpr std::uint32_t kLeftOutMs = 1000;
    static constexpr std::uint32_t kSliceMs = 200;
    static constexpr std::uint32_t kStandsMs = 1000;
    static constexpr double kEnoughMs = 2000;
    static constexpr double kMemoryMs = 6000;  // what is older counts less than 1/e
    static constexpr double kMostSeconds = 24 * 3600;

    void Measure(std::uint32_t now, std::uint64_t done);
    [[nodiscard]] std::optional<std::uint32_t> Estimate(std::uint64_t left) const;

    std::optional<std::uint32_t> started_;  // all moments in ticks
    bool measuring_ = false;
    std::uint32_t measuredAt_ = 0;
    std::uint64_t measuredBytes_ = 0;
    double bytes_ = 0;  // lately, and in what time
    double milliseconds_ = 0;
    std::optional<std::uint32_t> answeredAt_;
    std::optional<std::uint32_t> answer_;
};

}  // namespace orma
