#include "project/take_layout.h"

#include "audio/files/wav_header.h"

namespace orma {

std::uint64_t TakeLayout::SoundBefore(std::uint32_t period) const {
    if (mp2) return std::uint64_t{Mp2FrameOfPeriod(period, shift)} * frameBytes;
    return std::uint64_t{period} * format.bytesPerPeriod;
}

std::uint64_t TakeLayout::CutSize(std::uint32_t end) const {
    return SoundBefore(end);
}

bool TakeLayout::CanBeCutInPlace() const {
    const std::uint32_t header = mp2 ? 0 : WavHeader::kBytes;
    return format.dataOffset == header &&
           std::uint64_t{format.dataOffset} + format.dataLength == fileBytes;
}

bool TakeLayout::IsReadable(std::uint64_t soundBytes) const {
    return soundBytes / format.bytesPerPeriod >= (mp2 ? 2U : 1U);
}

std::optional<TakeLayout> ReadTakeLayout(ReaderServices services, const Text& audioPath) {
    AudioState scratch = services.audio;
    const FileServices files = services.files;
    if (scratch.mp2 && !AdoptMp2Bitrate(files, audioPath, scratch, files.report))
        return std::nullopt;
    const auto reader = MakeReader({files, scratch, services.decoder}, audioPath, scratch.mp2);
    if (reader->Measure() == 0) return std::nullopt;
    TakeLayout layout;
    layout.format = reader->FileFormat();
    layout.mp2 = scratch.mp2;
    layout.shift = scratch.resolutionShift;
    layout.frameBytes = scratch.bitrate.FrameBytes();
    layout.fileBytes = reader->GetSize();
    return layout;
}

}  // namespace orma
