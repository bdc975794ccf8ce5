#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "base/bytes.h"
#include "base/text.h"
#include "platform/wave.h"

namespace orma {

/// The wave message that carries everything for the recorder; a sub-code says what.
inline constexpr std::uint32_t kRecorderDriverMessage = 53164;

/// What a driver message is about. Its parameter is a 32-bit little-endian number unless stated
/// otherwise.
enum class RecorderMessage : std::uint32_t {
    kConfiguration = 0,  // RecorderConfiguration, to the recorder
    kGain = 40,          // gain code, to the recorder
    kVolume = 50,        // volume code, to the recorder
    kInformation = 130,  // RecorderInformation, from the recorder
    kValue = 140,        // from the recorder
};

/// Which of the recorder's two wave devices a message goes through.
enum class RecorderLine { kInput, kOutput };

/// The configuration record: two 32-bit values and a byte without padding, little-endian. What they
/// mean is the recorder's own; they are passed on as the settings hold them.
struct RecorderConfiguration {
    static constexpr std::size_t kBytes = 9;

    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint8_t third = 0;

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static RecorderConfiguration Decode(std::span<const std::uint8_t, kBytes> bytes);

    friend bool operator==(const RecorderConfiguration&, const RecorderConfiguration&) = default;
};

/// The information block: eight 16-bit fields, little-endian, of which the fourth is known.
struct RecorderInformation {
    static constexpr std::size_t kBytes = 16;

    std::uint16_t version = 0;  // counted from 0; shown as one more

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static RecorderInformation Decode(std::span<const std::uint8_t, kBytes> bytes);
};

/// The way to a recorder that is attached as a wave device. Absent hardware is the normal case and
/// costs next to nothing: then the list of outputs holds no recorder and no message is sent. UI
/// thread.
class ExternalRecorder {
  public:
    virtual ~ExternalRecorder() = default;

    /// Product names of the wave outputs; the place in the list is the device's number.
    [[nodiscard]] virtual std::vector<Text> OutputNames() = 0;

    /// Opens an output in `format` and sends it one message; kNoDevice or kBadFormat when it does
    /// not open. An answer overwrites `parameter`.
    [[nodiscard]] virtual WaveResult Query(std::uint32_t output, const WaveFormat& format,
                                           std::uint32_t message, RecorderMessage subCode,
                                           std::span<std::uint8_t> parameter) = 0;

    /// Sends a message through a line of the recorder that the engine has open.
    [[nodiscard]] virtual WaveResult Send(RecorderLine line, std::uint32_t message,
                                          RecorderMessage subCode,
                                          std::span<std::uint8_t> parameter) = 0;
};

}  // namespace orma
