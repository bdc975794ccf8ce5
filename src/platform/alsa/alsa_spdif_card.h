#pragma once

#include <memory>
#include <string>

#include "platform/alsa/alsa_cards.h"
#include "platform/spdif_card.h"

namespace orma {

/// Which ALSA device is the card.
struct AlsaSpdifOptions {
    std::string pcm = {};    // an ALSA name; empty: the first digital input that the kernel lists
    std::uint32_t rate = 0;  // Hz; 0: as the channel status tells, or the only one of the device
    std::string folder = kAlsaFolder;  // of the kernel's listings, with its separator
};

/// A digital (IEC 958) capture device of ALSA in the role of the S/PDIF card. A thread of its own
/// copies what comes in into a backlog of ten seconds; looking at the write position moves it on
/// into the ring. The control register and the choice of an input have no counterpart: the one is
/// kept, the other answered. Capture begins with the first look at the rate that finds one: a rate
/// that nobody tells is none, for a guess would record at the wrong speed. A device that ends
/// delivers nothing more. UI thread.
class AlsaSpdifCard : public SpdifCard {
  public:
    explicit AlsaSpdifCard(AlsaSpdifOptions options = {});
    ~AlsaSpdifCard() override;

    [[nodiscard]] Text Name() override;
    [[nodiscard]] bool Open() override;
    [[nodiscard]] bool Control(SpdifControl code, ByteSpan input, Answer& answer) override;
    [[nodiscard]] ByteSpan Ring() const override { return ring_; }
    [[nodiscard]] std::uint32_t WritePosition() override;
    void SetReadPosition(std::uint32_t position) override { readPosition_ = position; }
    [[nodiscard]] std::uint64_t LostFrames() const override;
    void Wait(std::uint32_t ms) override;
    void Close() override;

  private:
    struct Capture;

    [[nodiscard]] std::uint32_t LockedRate();

    AlsaSpdifOptions options_;
    std::unique_ptr<Capture> capture_;
    Bytes ring_;  // taken when the card is first opened
    std::uint16_t register_ = 0;
    std::uint32_t writePosition_ = 0;
    std::uint32_t readPosition_ = 0;
};

}  // namespace orma
