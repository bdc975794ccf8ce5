#include "audio/engine/external_recorder_control.h"

#include <algorithm>
#include <array>

#include "base/trace.h"

namespace orma {
namespace {

constexpr TextView kNamePrefix = u"MAYCOM";

/// What a recorder must take to count as one.
constexpr WaveFormat kTestFormat{.channels = 1,
                                 .samplesPerSecond = 48000,
                                 .averageBytesPerSecond = 96000,
                                 .blockAlign = 2,
                                 .bitsPerSample = 16};

std::uint8_t Moved(std::uint8_t code, std::int32_t step, std::int32_t low, std::int32_t high) {
    const std::int64_t moved = std::int64_t{code} + step;
    return static_cast<std::uint8_t>(std::clamp<std::int64_t>(moved, low, high));
}

}  // namespace

ExternalRecorderControl::ExternalRecorderControl(ExternalRecorder* recorder, ErrorReporter& report)
    : recorder_(recorder), report_(report) {}

void ExternalRecorderControl::Load(const ExternalRecorderSettings& settings) {
    configuration_ = settings.configuration;
    gain_ = Moved(settings.gainCode, 0, kLowestGain, kHighestGain);
    volume_ = Moved(settings.volumeCode, 0, kLowestVolume, kHighestVolume);
}

std::int32_t ExternalRecorderControl::FindExternalRecorder() {
    deviceNumber_ = 0;
    version_ = 0;
    if (recorder_ == nullptr) return -1;
    const std::vector<Text> names = recorder_->OutputNames();
    const auto last = std::find_if(names.rbegin(), names.rend(),
                                   [](const Text& name) { return IsRecorderName(name); });
    if (last == names.rend()) return -1;
    const auto number = static_cast<std::uint32_t>(names.rend() - last - 1);
    std::array<std::uint8_t, RecorderInformation::kBytes> block{};
    if (recorder_->Query(number, kTestFormat, kRecorderDriverMessage, RecorderMessage::kInformation,
                         block) != WaveResult::kOk) {
        Trace("recorder %u does not answer", number);
        return -1;
    }
    deviceNumber_ = number;
    version_ = static_cast<std::uint8_t>(RecorderInformation::Decode(block).version + 1);
    return static_cast<std::int32_t>(deviceNumber_ << 8 | version_);
}

bool ExternalRecorderControl::IsRecorderName(TextView name) {
    return name.starts_with(kNamePrefix);
}

void ExternalRecorderControl::LineOpened(RecorderLine line) {
    if (!IsPresent()) return;
    (line == RecorderLine::kInput ? inputOpen_ : outputOpen_) = true;
    SendRecorderConfig(line);
}

void ExternalRecorderControl::LineClosed(RecorderLine line) {
    (line == RecorderLine::kInput ? inputOpen_ : outputOpen_) = false;
}

void ExternalRecorderControl::SendRecorderConfig(RecorderLine line) {
    auto block = configuration_.Encode();
    Send(line, RecorderMessage::kConfiguration, block);
}

void ExternalRecorderControl::SetRecorderGain(std::int32_t step) {
    gain_ = Moved(gain_, step, kLowestGain, kHighestGain);
    Trace("Gaind=%d", step);
    if (inputOpen_) SendCode(RecorderLine::kInput, RecorderMessage::kGain, gain_);
}

void ExternalRecorderControl::SetRecorderVolume(std::int32_t step) {
    volume_ = Moved(volume_, step, kLowestVolume, kHighestVolume);
    if (const auto line = OpenLine()) SendCode(*line, RecorderMessage::kVolume, volume_);
}

std::optional<std::uint32_t> ExternalRecorderControl::QueryValue() {
    const auto line = OpenLine();
    std::array<std::uint8_t, 4> value{};
    if (!line || recorder_->Send(*line, kRecorderDriverMessage, RecorderMessage::kValue, value) !=
                     WaveResult::kOk)
        return std::nullopt;
    return LoadLe<std::uint32_t>(value.data());
}

std::optional<RecorderLine> ExternalRecorderControl::OpenLine() const {
    if (inputOpen_) return RecorderLine::kInput;
    if (outputOpen_) return RecorderLine::kOutput;
    return std::nullopt;
}

void ExternalRecorderControl::SendCode(RecorderLine line, RecorderMessage subCode,
                                       std::uint32_t code) {
    std::array<std::uint8_t, 4> parameter{};
    StoreLe(parameter.data(), code);
    Send(line, subCode, parameter);
}

void ExternalRecorderControl::Send(RecorderLine line, RecorderMessage subCode,
                                   std::span<std::uint8_t> parameter) {
    if (recorder_ == nullptr ||
        recorder_->Send(line, kRecorderDriverMessage, subCode, parameter) != WaveResult::kOk)
        report_.ShowError(line == RecorderLine::kInput ? u"waveinmessage" : u"waveoutmessage");
}

Text ExternalRecorderControl::GainText() const {
    return FormatText("%+2.0fdB", gain_ * 0.5 - 96);
}

Text ExternalRecorderControl::VolumeText() const {
    return FormatText("  %+2.0fdB", volume_ - 121.0);
}

std::uint32_t ExternalRecorderControl::GainBar() const {
    return static_cast<std::uint32_t>(gain_ - kLowestGain) << 9;
}

std::uint32_t ExternalRecorderControl::VolumeBar() const {
    return static_cast<std::uint32_t>(volume_ - kLowestVolume) << 12;
}

}  // namespace orma
