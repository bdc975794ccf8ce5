#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/bytes.h"
#include "project/clip_entry.h"
#include "stream/jstream_file.h"

namespace orma {

/// Everything that a project file (".opr", magic "JOPR") holds, in its order.
struct ProjectRecord {
    static constexpr std::uint32_t kVersion = 10;
    static constexpr std::size_t kMetadataUnits = 263;  // longest metadata text

    std::uint32_t version = kVersion;  // low 12 bits
    std::uint32_t audioFormatWord = 0;
    std::uint32_t flags = 0;  // bit 0 MP2, bit 1 recording straight to FTP
    std::int32_t recordingIndex = -1;
    std::vector<ClipEntry> clips;  // only the stored fields
    Text text;
    std::uint32_t publishingValue = 0;
    Text metadata1;
    Text metadata2;
    std::uint32_t audioLayout = 0;  // the resolution shift
    std::uint32_t stream1 = 0;
    std::array<double, 3> stream2to4{};
    std::uint32_t stream5 = 0;
    std::int32_t currentClip = -1;  // counted in `clips`
};

enum class ProjectReadResult {
    kOk,
    kNotOpened,     // reported by the stream
    kWrongMagic,    // "LoadProject Project Id"
    kWrongVersion,  // "LoadProject Project Version"
};

/// The record as a project file, little-endian; texts as a 32-bit count and, when it is not 0, that
/// many UTF-16 units and a terminating 0. Always version 10. Metadata texts are cut to their limit.
[[nodiscard]] Bytes EncodeProjectFile(const ProjectRecord& record);

/// Takes a project file apart. What a short file lacks is zeros and empty texts, except clips:
/// those that are not there are left out. Fields that the file's version lacks hold their defaults
/// (the audio layout is 0 before version 6). Never kNotOpened; on failure `record` is untouched.
[[nodiscard]] ProjectReadResult DecodeProjectFile(ByteSpan file, ProjectRecord& record);

/// Reads a project file whole, once its head shows that it is one; on failure `record` is
/// untouched.
[[nodiscard]] ProjectReadResult ReadProjectFile(FileServices services, const Text& path,
                                                ProjectRecord& record);

/// Replaces the project file whole or not at all; false on failure (reported).
[[nodiscard]] bool WriteProjectFile(FileServices services, const Text& path,
                                    const ProjectRecord& record);

}  // namespace orma
