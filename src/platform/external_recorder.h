#pragma once

#include <cstdint>
#include <optional>

#include "base/text.h"
#include "platform/wave.h"

namespace orma {

/// The configuration record of an external recorder, passed through from the settings.
struct RecorderConfiguration {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint8_t third = 0;
};

/// What was found of an external recorder at start-up.
struct ExternalRecorderInfo {
    std::uint32_t outputDevice = 0;  // index among the wave outputs
    std::uint32_t inputDevice = 0;   // index among the wave inputs
    std::uint8_t version = 0;
    Text inputName;  // as WaveSystem lists it
};

/// Driver messages of a recorder that is attached as a wave device. Absent hardware is the normal
/// case: Find then answers nothing and no other operation is called. UI thread.
class ExternalRecorder {
  public:
    virtual ~ExternalRecorder() = default;

    [[nodiscard]] virtual std::optional<ExternalRecorderInfo> Find() = 0;
    [[nodiscard]] virtual WaveResult SendConfiguration(const RecorderConfiguration& record) = 0;
};

}  // namespace orma
