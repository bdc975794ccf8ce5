#include <algorithm>
#include <array>
#include <stdexcept>

#include "audio/files/mp2_header.h"
#include "audio/files/vu_file.h"
#include "base/path.h"
#include "cli/describe.h"

namespace orma::cli {

void AddLevels(Application& app, const Text& audioPath, Json& fields) {
    const Text path = WithExtension(audioPath, u".jvu");
    if (!app.ports.storage.Exists(path)) return;
    if (const auto sheet = ReadVuFile(app.files, path)) fields["level file"] = SheetFields(*sheet);
}

Json DescribeMp2(Application& app, const Text& path) {
    JStreamFile file(app.files, path, true);
    if (!file.IsOpen()) throw std::runtime_error("cannot read " + ToUtf8(path));
    Mp2Header header;
    file.Read(header.bytes.data(), 4);
    constexpr std::array<const char*, 4> kModes = {"stereo", "joint stereo", "dual channel",
                                                   "single channel"};
    constexpr std::array<std::uint32_t, 4> kRates = {44100, 48000, 32000, 0};
    // The table of Layer II begins with the free format and goes on to 320 and 384 kbit/s.
    constexpr std::array<std::uint32_t, 16> kKilobits = {0,   32,  48,  56,  64,  80,  96,  112,
                                                         128, 160, 192, 224, 256, 320, 384, 0};
    const std::uint32_t frameBytes = header.FrameBytes(0);
    const std::uint32_t frames = frameBytes == 0 ? 0 : file.GetSize() / frameBytes;
    const std::uint32_t rate = kRates[header.SamplingBits()];
    const unsigned shift = app.audio.resolutionShift;
    Json fields = {
        {"kind", "MP2 take"},
        {"layer", 2},
        {"kbit/s", kKilobits[header.BitrateIndex()]},
        {"sample rate", rate},
        {"mode", kModes[header.Mode()]},
        {"padding", header.HasPadding()},
        {"CRC", header.HasCrc()},
        {"frame bytes", frameBytes},
        {"frames", frames},
        {"bytes behind the last frame", frameBytes == 0 ? 0 : file.GetSize() % frameBytes},
        {"seconds", rate == 0 ? 0.0 : double{kMp2FrameSamples} * frames / rate},
        {"length in periods",
         static_cast<std::uint32_t>(std::uint64_t{frames} * 3 * PeriodsPerSecond(shift) / 125)}};
    AddLevels(app, path, fields);
    return fields;
}

}  // namespace orma::cli
