#include "stream/whole_file.h"

#include "stream/file_replacement.h"

namespace orma {

std::optional<Bytes> ReadWholeFile(FileServices services, const Text& path) {
    JStreamFile file(services, path, true);
    Bytes bytes(file.GetSize());
    file.ReadHeld(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    if (!file.IsOpen()) return std::nullopt;
    return bytes;
}

bool ReplaceWholeFile(FileServices services, const Text& path, ByteSpan bytes) {
    FileReplacement file(services, path);
    file.Stream().Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return file.Commit();
}

}  // namespace orma
