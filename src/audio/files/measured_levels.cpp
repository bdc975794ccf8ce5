#include "audio/files/measured_levels.h"

#include "audio/files/level_tables.h"
#include "audio/files/peak_level.h"

namespace orma {
std::vector<std::uint8_t> MeasuredLevels(JStreamAudioReadFile& reader, std::uint32_t periods,
                                         unsigned shift) {
    const AudioFileFormat& format = reader.FileFormat();
    const PlaybackFormat output{format.sampleRate, format.channels};
    std::vector<std::int16_t> samples(output.BufferBytes(shift) / sizeof(std::int16_t));
    std::vector<std::uint8_t> levels;
    levels.reserve(periods);
    reader.OpenAt(0, output);
    const std::span bytes{reinterpret_cast<std::uint8_t*>(samples.data()),
                          samples.size() * sizeof(std::int16_t)};
    for (std::uint32_t period = 0; period < periods && reader.IsOpen(); ++period) {
        reader.Get(bytes);
        levels.push_back(LevelOfPeak(format.bitsPerSample == 24
                                         ? PeakOf24Bit(bytes, sizeof(std::int16_t))
                                         : PeakOf16Bit(samples)));
    }
    return levels;
}

}  // namespace orma
