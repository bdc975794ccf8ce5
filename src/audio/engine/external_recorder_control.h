#pragma once

#include <cstdint>
#include <optional>

#include "platform/external_recorder.h"
#include "report/error_reporter.h"

namespace orma {

/// What the control takes from the settings, as plain values.
struct ExternalRecorderSettings {
    std::uint8_t gainCode = 192;
    std::uint8_t volumeCode = 121;
    RecorderConfiguration configuration = {};
};

/// Drives an external recorder: finds it, keeps its gain and volume codes, and sends it what it
/// must know. Gain codes are half decibels, 126..254 for -33..+31 dB; volume codes are decibels,
/// 111..127 for -10..+6 dB. A message that fails is reported and leaves the changed code standing,
/// so that the display shows what was asked for. UI thread.
class ExternalRecorderControl {
  public:
    static constexpr std::int32_t kLowestGain = 126;
    static constexpr std::int32_t kHighestGain = 254;
    static constexpr std::int32_t kLowestVolume = 111;
    static constexpr std::int32_t kHighestVolume = 127;

    /// `recorder` may be null: then none is ever found. Both outlive the control.
    ExternalRecorderControl(ExternalRecorder* recorder, ErrorReporter& report);

    /// Codes out of range are brought into it.
    void Load(const ExternalRecorderSettings& settings);

    /// Looks for the last wave output whose name begins with "MAYCOM", asks it who it is, and
    /// returns (device number << 8) | version, or -1 without a recorder that answers.
    std::int32_t FindExternalRecorder();

    /// Whether one was found. Number 0 means none, also when a recorder has it: deliberate.
    [[nodiscard]] bool IsPresent() const { return deviceNumber_ != 0; }
    [[nodiscard]] std::uint32_t DeviceNumber() const { return deviceNumber_; }
    [[nodiscard]] std::uint8_t Version() const { return version_; }

    /// Whether a name is that of a recorder's wave device.
    [[nodiscard]] static bool IsRecorderName(TextView name);

    /// An engine opened the line: a recorder that is present gets its configuration record.
    void LineOpened(RecorderLine line);
    void LineClosed(RecorderLine line);

    /// Sends the configuration record through an open line.
    void SendRecorderConfig(RecorderLine line);

    /// Changes the gain by `step` codes; the recorder learns of it while its input is open.
    void SetRecorderGain(std::int32_t step);

    /// Changes the volume by `step` codes; the recorder learns of it through its input while that
    /// is open, else through its output.
    void SetRecorderVolume(std::int32_t step);

    /// A number of the recorder's own, through an open line; nothing when it does not answer.
    [[nodiscard]] std::optional<std::uint32_t> QueryValue();

    [[nodiscard]] std::uint8_t GainCode() const { return gain_; }
    [[nodiscard]] std::uint8_t VolumeCode() const { return volume_; }

    /// How the record screen shows them: "+0dB", bars up to 65536.
    [[nodiscard]] Text GainText() const;
    [[nodiscard]] Text VolumeText() const;
    [[nodiscard]] std::uint32_t GainBar() const;
    [[nodiscard]] std::uint32_t VolumeBar() const;

  private:
    [[nodiscard]] std::optional<RecorderLine> OpenLine() const;
    void Send(RecorderLine line, RecorderMessage subCode, std::span<std::uint8_t> parameter);
    void SendCode(RecorderLine line, RecorderMessage subCode, std::uint32_t code);

    ExternalRecorder* recorder_;
    ErrorReporter& report_;
    RecorderConfiguration configuration_;
    std::uint8_t gain_ = 192;
    std::uint8_t volume_ = 121;
    std::uint32_t deviceNumber_ = 0;
    std::uint8_t version_ = 0;
    bool inputOpen_ = false;
    bool outputOpen_ = false;
};

}  // namespace orma
