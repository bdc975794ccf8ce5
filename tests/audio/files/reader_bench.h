#pragma once

#include <gtest/gtest.h>

#include "audio/files/audio_read.h"
#include "audio/files/mp2_pipeline.h"
#include "support/signals.h"
#include "support/test_files.h"

namespace orma::test {

/// Layer II frames of 48000 Hz sound at the bit rate of `audio`.
[[nodiscard]] inline Bytes EncodeMp2(const AudioState& audio, ErrorReporter& report,
                                     const Samples& pcm, bool stereo = false) {
    Bytes frames;
    Mp2Pipeline encoder(audio, report);
    const auto output = [&](ByteSpan block) {
        frames.insert(frames.end(), block.begin(), block.end());
    };
    EXPECT_TRUE(encoder.Mp2EncoderInit(output, stereo, 48000));
    encoder.Mp2EncodeSamples(AsPcm(pcm));
    encoder.Mp2EncodeFlush();
    return frames;
}

/// All that a reader needs, and one take, of the kind that `audio` says.
struct ReaderBench {
    TestFiles files;
    AudioState audio;
    Mp2Decoder decoder{audio, files.storage, files.folder.Path(u"mp2dec.txt")};
    ReaderServices services{files.services, audio, decoder};
    Text path = files.folder.Path(u"take00");
    Text refusal;

    [[nodiscard]] std::unique_ptr<JStreamAudioReadFile> Reader(const Bytes& file) {
        WriteFileBytes(path, file);
        return MakeReader(services, path, audio.mp2);
    }

    /// The length that a reader finds; the box that it shows is the refusal (none: empty).
    std::uint32_t Measure(const Bytes& file) {
        files.boxes.shown.clear();
        const std::uint32_t periods = Reader(file)->Measure();
        refusal = files.boxes.shown.empty() ? Text() : files.boxes.shown.front().text;
        return periods;
    }

    /// `periods` buffers, one after another.
    Samples Get(JStreamAudioReadFile& reader, const PlaybackFormat& output, std::size_t periods) {
        const std::size_t bytes = output.BufferBytes(audio.resolutionShift);
        Samples samples(periods * bytes / 2);
        for (std::size_t i = 0; i < periods; ++i)
            reader.Get({reinterpret_cast<std::uint8_t*>(samples.data()) + i * bytes, bytes});
        return samples;
    }
};

}  // namespace orma::test
