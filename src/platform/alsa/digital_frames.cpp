#include "platform/alsa/digital_frames.h"

#include <algorithm>

#include "platform/spdif_card.h"

namespace orma {
std::size_t BytesOfSample(DigitalLayout layout) {
    if (layout == DigitalLayout::k24In3Bytes) return 3;
    return layout == DigitalLayout::k16 ? 2 : 4;
}

void PackDigitalSamples(DigitalLayout layout, ByteSpan from, std::span<std::uint8_t> to) {
    const std::size_t bytes = BytesOfSample(layout);
    // Where the 24-bit value begins in a sample; a 16-bit one begins a byte before it.
    const int first = layout == DigitalLayout::k24InUpper32 ? 1 : 0;
    auto out = to.begin();
    for (; from.size() >= bytes; from = from.subspan(bytes)) {
        if (layout == DigitalLayout::k16) *out++ = 0;
        out = std::copy_n(from.begin() + first, std::min<std::size_t>(bytes, 3), out);
    }
}

std::uint32_t DigitalRateOfStatus(ByteSpan channelStatus) {
    // Byte 0 bit 0: professional use, which keeps the rate elsewhere. Byte 3: the code.
    if (channelStatus.size() < 4 || (channelStatus[0] & 1) != 0) return 0;
    return SpdifRateOfCode(channelStatus[3] & 0x0F);
}

}  // namespace orma
