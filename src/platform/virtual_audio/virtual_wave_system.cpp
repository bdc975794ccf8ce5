#include "platform/virtual_audio/virtual_wave_system.h"

#include "base/trace.h"
#include "platform/virtual_audio/file_loudspeaker.h"
#include "platform/virtual_audio/file_microphone.h"
#include "platform/virtual_audio/virtual_wave_in.h"

namespace orma {
namespace {

/// The name of the output that plays into nothing.
constexpr TextView kSilentOutput = u"Virtual output";

}  // namespace

VirtualWaveSystem::VirtualWaveSystem(EventLoop& loop, VirtualAudioOptions options, SteadyNow now)
    : loop_(loop), options_(std::move(options)), now_(std::move(now)) {}

std::vector<WaveDeviceInfo> VirtualWaveSystem::Inputs() {
    const std::uint16_t channels = FileMicrophone::ChannelsOf(options_.inputFile);
    if (channels == 0) return {};
    return {{options_.inputFile, channels, true}};
}

std::vector<WaveDeviceInfo> VirtualWaveSystem::Outputs() {
    const TextView name = options_.outputFile.empty() ? kSilentOutput : options_.outputFile;
    return {{Text(name), 2, true}};
}

WaveResult VirtualWaveSystem::OpenInput(const Text& name, const WaveFormat& format,
                                        WaveInEvents& events,
                                        std::unique_ptr<WaveInDevice>& device) {
    if (!IsSupported(format)) return WaveResult::kBadFormat;
    if (!name.empty() && name != options_.inputFile) {
        Trace("virtual audio: no input \"%s\"", ToUtf8(name).c_str());
        return WaveResult::kNoDevice;
    }
    std::string problem;
    auto microphone =
        FileMicrophone::Open(options_.inputFile, format.channels, format.samplesPerSecond, problem);
    if (!microphone) {
        Trace("virtual audio: input \"%s\": %s", ToUtf8(options_.inputFile).c_str(),
              problem.c_str());
        return WaveResult::kNoDevice;
    }
    device = std::make_unique<VirtualWaveIn>(loop_, std::move(microphone), format, options_, now_,
                                             events);
    return WaveResult::kOk;
}

WaveResult VirtualWaveSystem::OpenOutput(const Text& name, const WaveFormat& format,
                                         WaveOutEvents& events,
                                         std::unique_ptr<WaveOutDevice>& device) {
    if (!IsSupported(format)) return WaveResult::kBadFormat;
    if (!name.empty() && name != Outputs().front().name) {
        Trace("virtual audio: no output \"%s\"", ToUtf8(name).c_str());
        return WaveResult::kNoDevice;
    }
    std::unique_ptr<FileLoudspeaker> loudspeaker;
    if (!options_.outputFile.empty()) {
        std::string problem;
        loudspeaker = FileLoudspeaker::Open(options_.outputFile, format.channels,
                                            format.samplesPerSecond, problem);
        if (!loudspeaker) {
            Trace("virtual audio: output \"%s\": %s", ToUtf8(options_.outputFile).c_str(),
                  problem.c_str());
            return WaveResult::kNoDevice;
        }
    }
    device = std::make_unique<VirtualWaveOut>(loop_, std::move(loudspeaker), format, options_.pace,
                                              now_, volume_, events);
    return WaveResult::kOk;
}

WaveResult VirtualWaveSystem::SetOutputVolume(std::uint16_t left, std::uint16_t right) {
    volume_->Set(left, right);
    return WaveResult::kOk;
}

}  // namespace orma
