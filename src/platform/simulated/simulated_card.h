#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/simulated/digital_sound.h"
#include "platform/simulated/simulated_options.h"
#include "platform/spdif_card.h"

namespace orma {

/// An S/PDIF card into which a sound file is played. It answers the controls as the card does: it
/// captures once bit 3 of the control register is clear, the ring is set and an input is selected,
/// and needs two looks to lock on the rate. The sound begins with the first look at the write
/// position, and where the program does not read, the file waits: nothing is ever lost.
class SimulatedCard : public SpdifCard {
  public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    explicit SimulatedCard(SimulatedCardOptions options, Now now = std::chrono::steady_clock::now);

    [[nodiscard]] Text Name() override { return u"PSI1: " + options_.file; }
    [[nodiscard]] bool Open() override;
    [[nodiscard]] bool Control(SpdifControl code, ByteSpan input, Answer& answer) override;
    [[nodiscard]] ByteSpan Ring() const override { return ring_; }
    [[nodiscard]] std::uint32_t WritePosition() override;
    void SetReadPosition(std::uint32_t position) override { readPosition_ = position; }
    [[nodiscard]] std::uint64_t LostFrames() const override { return 0; }
    void Wait(std::uint32_t ms) override;
    void Close() override;

    [[nodiscard]] bool IsOpen() const { return sound_ != nullptr; }
    [[nodiscard]] std::uint8_t SelectedInput() const { return selectedInput_; }

  private:
    [[nodiscard]] bool SetRing(ByteSpan block);
    [[nodiscard]] std::uint8_t RateCode();
    [[nodiscard]] bool IsCapturing() const;
    [[nodiscard]] std::uint64_t DueFrames();

    SimulatedCardOptions options_;
    Now now_;
    std::unique_ptr<DigitalSound> sound_;
    Bytes ring_;
    std::uint16_t register_ = 0;
    std::uint8_t selectedInput_ = 0;
    std::uint32_t writePosition_ = 0;
    std::uint32_t readPosition_ = 0;
    int rateReads_ = 0;
    bool ringSet_ = false;
    bool selected_ = false;
    bool begun_ = false;
    std::chrono::steady_clock::time_point begin_;
    std::uint64_t dueFrames_ = 0;
    std::uint64_t framesMade_ = 0;
};

}  // namespace orma
