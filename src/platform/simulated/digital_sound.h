#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "base/text.h"

namespace orma {

/// A sound file as what comes in through a digital input: stereo frames of two 24-bit samples at
/// the file's own rate, silence behind its end. Up to 24 bits pass unchanged; mono goes to both
/// channels, of more channels the first two are taken. One thread.
class DigitalSound {
  public:
    /// Null when the file cannot be read; the trace says why.
    [[nodiscard]] static std::unique_ptr<DigitalSound> Open(const Text& path);
    ~DigitalSound();

    [[nodiscard]] std::uint32_t SampleRate() const;  // Hz

    /// The next frames, six bytes each: little-endian left, then right.
    void Read(std::span<std::uint8_t> frames);

  private:
    struct File;
    explicit DigitalSound(std::unique_ptr<File> file);

    std::unique_ptr<File> file_;
};

}  // namespace orma
