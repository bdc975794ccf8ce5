#include "publish/measured_levels.h"

#include <algorithm>
#include <cstdlib>

#include "audio/files/level_tables.h"
#include "base/bytes.h"

namespace orma {
namespace {

std::uint32_t PeakOf(ByteSpan pcm) {
    std::uint32_t peak = 0;
    for (std::size_t i = 0; i + 1 < pcm.size(); i += 2) {
        const int sample = LoadLe<std::int16_t>(&pcm[i]);
        peak = std::max(peak, static_cast<std::uint32_t>(std::abs(sample)));
    }
    return peak;
}

}  // namespace

std::vector<std::uint8_t> MeasuredLevels(JStreamAudioReadFile& reader, std::uint32_t periods,
                                         unsigned shift) {
    const AudioFileFormat& format = reader.FileFormat();
    const PlaybackFormat output{format.sampleRate, format.channels};
    Bytes buffer(output.BufferBytes(shift));
    std::vector<std::uint8_t> levels;
    levels.reserve(periods);
    reader.OpenAt(0, output);
    for (std::uint32_t period = 0; period < periods && reader.IsOpen(); ++period) {
        reader.Get(buffer);
        levels.push_back(LevelOfPeak(PeakOf(buffer)));
    }
    return levels;
}

}  // namespace orma
