#pragma once

#include <optional>
#include <string>

#include "platform/alsa/alsa_cards.h"
#include "platform/external_recorder.h"

namespace orma {

/// An external recorder that is a sound card of this machine: gain and volume codes move its mixer.
/// Output 0 is the system's default, so that every card has a number of its own. The configuration
/// record and the value have no counterpart in a mixer: the record is traced, the value unanswered;
/// the version is the first.
class AlsaRecorder : public ExternalRecorder {
  public:
    /// `folder` (with its separator) holds the kernel's listings.
    explicit AlsaRecorder(std::string folder = kAlsaFolder) : folder_(std::move(folder)) {}

    /// Reads one small file; without sound cards nothing else is done.
    [[nodiscard]] std::vector<Text> OutputNames() override;

    /// Also makes the card the one that Send reaches.
    [[nodiscard]] WaveResult Query(std::uint32_t output, const WaveFormat& format,
                                   std::uint32_t message, RecorderMessage subCode,
                                   std::span<std::uint8_t> parameter) override;
    [[nodiscard]] WaveResult Send(RecorderLine line, std::uint32_t message, RecorderMessage subCode,
                                  std::span<std::uint8_t> parameter) override;

  private:
    std::string folder_;
    std::optional<int> card_;
};

}  // namespace orma
