#pragma once

#include "audio/files/audio_read.h"
#include "fuzz/fuzz.h"

namespace orma::test {

/// Takes `count` buffers from `period` on, as playback does.
inline void Play(JStreamAudioReadFile& reader, const PlaybackFormat& output, unsigned shift,
                 std::uint32_t period, std::uint32_t count) {
    Bytes buffer(output.BufferBytes(shift));
    reader.OpenAt(period, output);
    for (; count > 0; --count)
        reader.Get(buffer);
}

/// Reads a take whole and in parts at every resolution and for every kind of output. Whatever the
/// file claims, its lengths must be within what it holds, and silence follows that.
inline void ReadTake(FuzzFiles& files, const Text& path, const AudioState& settings,
                     std::size_t fileBytes) {
    for (unsigned shift = 0; shift <= 2; ++shift) {
        AudioState audio = settings;
        audio.resolutionShift = shift;
        Mp2Decoder decoder(audio, files.storage, u"mp2dec.txt");
        const auto reader = MakeReader({files.services, audio, decoder}, path, audio.mp2);
        const std::uint32_t periods = reader->Measure();
        if (periods == 0) continue;  // less than one at this resolution
        const AudioFileFormat format = reader->FileFormat();
        Require(format.dataOffset + std::uint64_t{format.dataLength} <= fileBytes,
                "data within the file");
        Require(std::uint64_t{periods} * format.bytesPerPeriod <= format.dataLength,
                "periods within the data");
        // The longer periods cost the most and find the least.
        Play(*reader, {44100, 2}, shift, periods - 1, shift < 2 ? 1 : 2);
        if (shift < 2) continue;
        Play(*reader, {44100, 1}, shift, 0, periods + 1);
        Play(*reader, {48000, 2}, shift, 0, periods + 1);
        Play(*reader, {48000, 1}, shift, 0xFFFFFFFF, 1);
        (void)reader->PositionAt(periods / 2);
        Bytes buffer(PlaybackFormat{48000, 1}.BufferBytes(shift));
        reader->Get(buffer);
        reader->CloseReader();
        reader->Get(buffer);  // of a closed file: what the reader still holds, then silence
    }
}

}  // namespace orma::test
