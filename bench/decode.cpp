// bench_decode MP2 mono|stereo: an MP2 take through the program's reader against a bare loop on
// the decoding library. Both make 16-bit samples at 48000 Hz, rounded and clipped alike.

#include <algorithm>

#include <mad.h>

#include "measure.h"

namespace orma::bench {
namespace {

constexpr PlaybackFormat kMono{48000, 1};
constexpr PlaybackFormat kStereo{48000, 2};

void DecodeOurs(Desk& desk, const Text& path) {
    const auto reader = MakeReader(desk.Readers(), path, true);
    const std::uint32_t periods = reader->Measure();
    const PlaybackFormat& format = desk.audio.stereo ? kStereo : kMono;
    reader->OpenAt(0, format);
    Bytes buffer(format.BufferBytes(desk.audio.resolutionShift));
    for (std::uint32_t period = 0; period < periods; ++period)
        reader->Get(buffer);
    Require(reader->IsOpen(), "the reader failed");
}

/// The whole file lies in memory; a buffer takes one frame after the other.
std::size_t DecodeLibrary(const Bytes& file) {
    constexpr std::int32_t kLimit = 1 << MAD_F_FRACBITS;
    std::vector<std::int16_t> out(2304);
    std::size_t frames = 0;
    mad_stream stream;
    mad_frame frame;
    mad_synth synth;
    mad_stream_init(&stream);
    mad_frame_init(&frame);
    mad_synth_init(&synth);
    mad_stream_buffer(&stream, file.data(), file.size());
    while (mad_frame_decode(&frame, &stream) == 0) {
        mad_synth_frame(&synth, &frame);
        auto to = out.begin();
        for (unsigned i = 0; i < synth.pcm.length; ++i) {
            for (unsigned channel = 0; channel < synth.pcm.channels; ++channel) {
                const std::int32_t value = synth.pcm.samples[channel][i] + 4096;
                *to++ = static_cast<std::int16_t>(std::clamp(value, -kLimit, kLimit - 1) >> 13);
            }
        }
        ++frames;
    }
    mad_synth_finish(&synth);
    mad_frame_finish(&frame);
    mad_stream_finish(&stream);
    return frames;
}

void Run(const std::string& mp2, bool stereo) {
    Desk desk(stereo);
    const Text path = FromUtf8(mp2);
    Require(AdoptMp2Bitrate(desk.Files(), path, desk.audio, desk.Report()), "no MP2 file");
    Bytes file = ReadAll(mp2);
    const std::size_t frames = file.size() / desk.audio.bitrate.FrameBytes();
    file.resize(file.size() + MAD_BUFFER_GUARD);
    Compare(stereo ? "decode.stereo" : "decode.mono",
            {{"ours", [&] { DecodeOurs(desk, path); }},
             {"library", [&] {
                  Require(DecodeLibrary(file) + 1 >= frames, "libmad left the stream early");
              }}});
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    orma::bench::Require(count == 3, "usage: bench_decode MP2 mono|stereo");
    orma::bench::Run(words[1], std::string(words[2]) == "stereo");
}
