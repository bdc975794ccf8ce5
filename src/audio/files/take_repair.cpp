#include "audio/files/take_repair.h"

#include <array>
#include <memory>

#include "audio/files/wav_header.h"
#include "base/trace.h"

namespace orma {
namespace {

bool WriteAt(StorageFile& file, std::uint32_t offset, std::uint32_t value) {
    std::array<std::uint8_t, 4> bytes{};
    StoreLe(bytes.data(), value);
    std::uint64_t position = 0;
    std::size_t written = 0;
    return file.Seek(offset, SeekFrom::kStart, position) == 0 && file.Write(bytes, written) == 0;
}

/// True when the file begins with a header of ours that does not fit `length`, the file's bytes.
bool NeedsMending(Storage& storage, const Text& path, std::uint32_t& length) {
    std::unique_ptr<StorageFile> file;
    std::array<std::uint8_t, WavHeader::kBytes> bytes{};
    std::size_t got = 0;
    std::uint64_t size = 0;
    WavHeader header;
    if (storage.Open(path, OpenMode{}, file) != 0 || file->Size(size) != 0 || size > 0xFFFFFFFF ||
        file->Read(bytes, got) != 0 || got < bytes.size() || !WavHeader::Decode(bytes, header))
        return false;
    length = static_cast<std::uint32_t>(size);
    const std::uint32_t dataSize = length - WavHeader::kBytes;
    if (header.dataSize == dataSize && header.riffSize == length - 8) return false;
    // A whole file of another program that has chunks behind its data.
    const bool hasMoreChunks =
        header.riffSize == length - 8 && header.dataSize > 0 && header.dataSize < dataSize;
    return !hasMoreChunks;
}

}  // namespace

bool MendTakeHeader(FileServices files, const Text& path) {
    Storage& storage = files.storage;
    std::uint32_t length = 0;
    FileTime lastWrite;
    if (!NeedsMending(storage, path, length) || storage.LastWriteTime(path, lastWrite) != 0)
        return false;
    std::unique_ptr<StorageFile> file;
    const OpenMode patching{.access = Access::kWrite};
    // A take on a medium that is write-protected, or that is just being recorded, stays as it is;
    // the reader then says why it cannot be read.
    if (storage.Open(path, patching, file) != 0) return false;
    const bool mended = WriteAt(*file, WavHeader::kDataSizeOffset, length - WavHeader::kBytes) &&
                        WriteAt(*file, WavHeader::kRiffSizeOffset, length - 8);
    const bool closed = file->Close() == 0;
    (void)storage.SetLastWriteTime(path, lastWrite);
    Trace("take header mended: %s", ToUtf8(path).c_str());
    return mended && closed;
}

}  // namespace orma
