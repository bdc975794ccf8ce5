#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/wave.h"

namespace orma {

/// One of the sixteen buffers that circulate between device and engine.
struct CaptureBuffer {
    std::uint32_t index = 0;
    bool queued = false;  // prepared and added; the device alone touches it
    std::uint8_t level = 0;
    WaveHeader header;
    std::uint8_t* data = nullptr;
};

/// The sixteen buffer records of recording (playback uses the first four), allocated once.
class CaptureBuffers {
  public:
    static constexpr std::size_t kCount = 16;
    static constexpr std::uint32_t kBytes = 115200;  // of each

    CaptureBuffers();

    [[nodiscard]] CaptureBuffer& operator[](std::size_t index) { return records_[index]; }
    [[nodiscard]] bool AnyQueued() const;

    auto begin() { return records_.begin(); }
    auto end() { return records_.end(); }

  private:
    std::unique_ptr<std::uint8_t[]> memory_;
    std::array<CaptureBuffer, kCount> records_;
};

}  // namespace orma
