#include "edit_rig.h"

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

#include "audio/files/vu_file.h"
#include "support/byte_builder.h"

namespace orma::test {

EditRun::EditRun(const TempFolder& folder, const TakeFormat& format) {
    audio.mp2 = format.mp2;
    audio.stereo = format.stereo;
    audio.resolutionShift = format.shift;
    const auto& rates = Mp2Bitrate::kBitsPerSecond;
    const auto rate = std::find(rates.begin(), rates.end(), format.kilobits * 1000);
    audio.bitrate.SetMp2Bitrate(static_cast<std::uint32_t>(rate - rates.begin()), report);
    project.SetPath(folder.Path(), u"talk");
}

FoldersInMemory::FoldersInMemory() {
    constexpr const char* kMemory = "/dev/shm";
    std::error_code error;
    const bool usable = std::getenv("TMPDIR") == nullptr &&
                        std::filesystem::space(kMemory, error).available > (1U << 24) && !error;
    set_ = usable && ::setenv("TMPDIR", kMemory, 0) == 0;
}

FoldersInMemory::~FoldersInMemory() {
    if (set_) ::unsetenv("TMPDIR");
}

Bytes TakeFile(const TakeFormat& format, ByteSpan sound) {
    if (format.mp2) return {sound.begin(), sound.end()};
    const unsigned channels = format.stereo ? 2 : 1;
    const auto bytes = static_cast<std::uint32_t>(sound.size());
    return ByteBuilder{}
        .Put("RIFF")
        .U32(bytes + 36)
        .Put("WAVEfmt ")
        .U32(16)
        .U16(1)
        .U16(channels)
        .U32(format.rate)
        .U32(format.rate * channels * format.bits / 8)
        .U16(format.bits / 8U)
        .U16(format.bits)
        .Put("data")
        .U32(bytes)
        .Put(sound)
        .bytes;
}

Bytes SelectionLevels(const LevelSheet& sheet, std::uint32_t begin, std::uint32_t end) {
    ByteBuilder marks;
    ByteBuilder cuts;
    std::uint32_t markCount = 0;
    std::uint32_t cutCount = 0;
    for (const std::uint32_t mark : sheet.marks) {
        if (mark <= begin || mark >= end) continue;
        marks.U32(mark - begin);
        ++markCount;
    }
    for (const RemovedRange& cut : sheet.cuts) {
        if (cut.begin <= begin || cut.end >= end) continue;
        cuts.U32(cut.begin - begin).U32(cut.end - begin).U32(cut.third);
        ++cutCount;
    }
    return ByteBuilder{}
        .Put("UVOJ")
        .U32(3)
        .U32(0)
        .U32(end - begin)
        .U32(end - begin)
        .U32(markCount)
        .U32(cutCount)
        .Put(marks.bytes)
        .Put(cuts.bytes)
        .Put(ByteSpan(sheet.levels).subspan(begin, end - begin))
        .U32(sheet.resolutionShift)
        .bytes;
}

RandomTake::RandomTake(const TempFolder& folder, const Text& name, const TakeFormat& format,
                       std::uint32_t periods, std::mt19937& random)
    : path(folder.Path(name + format.Extension())) {
    const auto any = [&random](std::uint32_t below) {
        return static_cast<std::uint32_t>(random() % below);
    };
    sound.resize(format.Before(periods));
    std::ranges::generate(sound, [&] { return static_cast<std::uint8_t>(any(256)); });
    if (format.mp2) {
        const EditRun run(folder, format);
        const auto index = static_cast<std::uint8_t>(run.audio.bitrate.Index() + 1);
        const Bytes header = {0xFF, 0xFD, static_cast<std::uint8_t>(index << 4 | 4),
                              static_cast<std::uint8_t>(format.stereo ? 0x00 : 0xC0)};
        for (std::size_t at = 0; at + 4 <= sound.size(); at += format.kilobits * 3)
            std::ranges::copy(header, sound.begin() + static_cast<std::ptrdiff_t>(at));
    }
    sheet.rangeEnd = periods;
    sheet.resolutionShift = format.shift;
    for (std::uint32_t i = 0; i < periods; ++i)
        sheet.levels.push_back(static_cast<std::uint8_t>(any(80)));
    for (std::uint32_t i = any(12); i > 0; --i)
        InsertSorted(sheet.marks, any(periods));
    for (std::uint32_t at = any(9) + 1; at + 5 < periods; at += any(9) + 1)
        sheet.cuts.push_back({at, at + any(5), any(1000)});
    WriteFileBytes(path, TakeFile(format, sound));
    WriteFileBytes(WithExtension(path, u".jvu"), EncodeVuFile(sheet));
}

}  // namespace orma::test
