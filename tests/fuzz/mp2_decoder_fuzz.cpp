// The decoder alone, fed with frames of every header that it lets through: other rates, joint
// stereo, padding, checksums, which no reader of takes hands on.

#include <algorithm>

#include "audio/files/mp2_decoder.h"
#include "fuzz/fuzz.h"

namespace orma::test {

// One decoder: frame, synthesis and space.
const MemoryBudget kMemoryBudget{.fixedBytes = 64 * 1024, .bytesPerInputByte = 4};

void TryInput(ByteSpan bytes) {
    FuzzFiles files(bytes.size());
    AudioState audio;
    Mp2Decoder decoder(audio, files.storage, u"mp2dec.txt");
    std::array<std::int16_t, 2 * 1152> out{};
    if (bytes.size() < 4) return;
    decoder.Mp2DecoderStart({{bytes[0], bytes[1], bytes[2], bytes[3]}});
    for (ByteSpan rest = bytes.subspan(4); !rest.empty();) {
        const std::span<std::uint8_t> space = decoder.FrameSpace();
        Require(space.size() == decoder.FrameBytes() && space.size() >= 96, "room for a frame");
        const std::size_t count = std::min(space.size(), rest.size());
        std::ranges::fill(std::ranges::copy(rest.first(count), space.begin()).out, space.end(), 0);
        rest = rest.subspan(count);
        unsigned channels = 0;
        const std::size_t samples = decoder.Mp2DecodeFrame(out, channels);
        Require(samples == 0 ? channels == 0 : samples == 1152 && channels >= 1 && channels <= 2,
                "a whole frame or nothing");
    }
    const Bytes* log = files.storage.Find(u"mp2dec.txt");
    Require(log == nullptr || std::ranges::count(*log, '\n') <= 100, "diagnostics have an end");
    decoder.Mp2DecoderFinish();
}

}  // namespace orma::test
