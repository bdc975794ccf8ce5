#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "audio/engine/spdif_input.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/spdif_card.h"
#include "report/error_reporter.h"

namespace orma {

/// Capture from the S/PDIF card: every 10 ms the samples in the card's ring are copied into the
/// recorder's buffers, as 24 bits or the upper 16 of them, of both channels or the first. A card
/// that delivers nothing for two seconds is reported ("Time-out") and ends the take as a wave input
/// that stalls does. UI thread; nothing allocates while buffers go round.
class PDAudioIn : public SpdifInput {
  public:
    static constexpr std::size_t kPlaces = 16;
    static constexpr std::uint32_t kPollMs = 10;
    static constexpr std::uint32_t kTimeOutMs = 2000;

    /// `card` may be null: then no start succeeds. All outlive the input.
    PDAudioIn(SpdifCard* card, EventLoop& loop, Clock& clock, ErrorReporter& report);
    ~PDAudioIn() override;
    PDAudioIn(const PDAudioIn&) = delete;
    PDAudioIn& operator=(const PDAudioIn&) = delete;

    /// Which of the card's inputs the next start selects.
    void SetInputSelection(std::uint8_t selection) { selection_ = selection; }

    /// Besides the result, an input without a valid signal is told in a box of its own.
    [[nodiscard]] SpdifResult PDAudioStart(bool mp2, std::uint16_t channels, unsigned shift,
                                           WaveInEvents& events, SpdifFormat& format) override;
    [[nodiscard]] bool PDAudioInAddBuffer(WaveHeader& header) override;
    void PDAudioStop() override;
    void PDAudioClose() override;
    [[nodiscard]] bool IsReturning() const override { return doneCount_ > 0; }
    [[nodiscard]] bool HasMore() const override { return IsReturning() || flushing_; }
    [[nodiscard]] std::uint64_t LostFrames() const override { return lostFrames_; }

  private:
    [[nodiscard]] SpdifResult Prepare(bool mp2, std::uint16_t channels, unsigned shift,
                                      SpdifFormat& format);
    [[nodiscard]] bool OpenCard();
    bool Control(SpdifControl code, ByteSpan input);
    bool SetRing();
    [[nodiscard]] std::uint32_t MeasureRate();

    void Poll();
    void TimeOut();
    std::uint32_t Look();
    std::uint32_t Copy(std::uint32_t available);
    void Flush();
    void HandBack();
    void Deliver();

    SpdifCard* card_;
    EventLoop& loop_;
    Clock& clock_;
    ErrorReporter& report_;
    std::unique_ptr<Wakeup> delivery_;
    std::unique_ptr<Timer> timer_;
    WaveInEvents* events_ = nullptr;
    SpdifCard::Answer answer_{};
    std::uint8_t selection_ = 0;
    bool open_ = false;
    bool stereo_ = false;
    std::uint32_t sampleBytes_ = 2;
    std::uint32_t readPosition_ = 0;  // bytes in the card's ring
    std::uint32_t lastData_ = 0;      // ticks
    std::uint64_t lostFrames_ = 0;
    bool flushing_ = false;  // stopped, and the card's ring is not empty yet

    std::array<WaveHeader*, kPlaces> pending_{};
    std::size_t current_ = 0;   // the place being filled
    std::size_t free_ = 0;      // the place for the next buffer
    std::uint32_t filled_ = 0;  // bytes of the current buffer

    std::array<WaveHeader*, kPlaces> done_{};  // on their way back, oldest first
    std::size_t doneCount_ = 0;
};

}  // namespace orma
