#include "platform/simulated/simulated_recorder.h"

#include <algorithm>
#include <cmath>

#include "base/trace.h"

namespace orma {

std::vector<Text> SimulatedRecorder::OutputNames() {
    return {u"Virtual output", Text(kName)};
}

WaveResult SimulatedRecorder::Query(std::uint32_t output, const WaveFormat& format,
                                    std::uint32_t message, RecorderMessage subCode,
                                    std::span<std::uint8_t> parameter) {
    if (output != kOutput) return WaveResult::kNoDevice;
    if (format.samplesPerSecond != 48000 || format.bitsPerSample != 16)
        return WaveResult::kBadFormat;
    return Send(RecorderLine::kOutput, message, subCode, parameter);
}

WaveResult SimulatedRecorder::Send(RecorderLine, std::uint32_t message, RecorderMessage subCode,
                                   std::span<std::uint8_t> parameter) {
    if (message != kRecorderDriverMessage) return WaveResult::kFailed;
    const bool isBlock =
        subCode == RecorderMessage::kConfiguration || subCode == RecorderMessage::kInformation;
    if (!isBlock && parameter.size() != 4) return WaveResult::kFailed;
    switch (subCode) {
        case RecorderMessage::kConfiguration:
            if (parameter.size() != RecorderConfiguration::kBytes) return WaveResult::kFailed;
            configuration_ =
                RecorderConfiguration::Decode(parameter.first<RecorderConfiguration::kBytes>());
            Trace("simulated recorder: configuration %u %u %u", configuration_.first,
                  configuration_.second, configuration_.third);
            return WaveResult::kOk;
        case RecorderMessage::kInformation:
            if (parameter.size() != RecorderInformation::kBytes) return WaveResult::kFailed;
            std::ranges::copy(RecorderInformation{version_}.Encode(), parameter.begin());
            return WaveResult::kOk;
        case RecorderMessage::kGain:
            gainCode_ = LoadLe<std::uint32_t>(parameter.data());
            Trace("simulated recorder: gain %u", gainCode_);
            return WaveResult::kOk;
        case RecorderMessage::kVolume:
            volumeCode_ = LoadLe<std::uint32_t>(parameter.data());
            Trace("simulated recorder: volume %u", volumeCode_);
            return WaveResult::kOk;
        case RecorderMessage::kValue:
            StoreLe(parameter.data(), std::uint32_t{1});
            return WaveResult::kOk;
    }
    return WaveResult::kFailed;
}

double SimulatedRecorder::Gain() const {
    return std::pow(10.0, (gainCode_ * 0.5 - 96) / 20);
}

double SimulatedRecorder::Volume() const {
    return std::pow(10.0, (volumeCode_ - 121.0) / 20);
}

}  // namespace orma
