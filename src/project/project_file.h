#pragma once

#include <array>
#include <cstdint>
#include <vector>

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
    std::int32_t currentClip = -1;
};

enum class ProjectReadResult {
    kOk,
    kNotOpened,     // reported by the stream
    kWrongMagic,    // "LoadProject Project Id"
    kWrongVersion,  // "LoadProject Project Version"
};

/// Reads a project file; on failure `record` is untouched. Missing fields at the end of a short
/// file are zeros; counts are bounded by the file's size.
[[nodiscard]] ProjectReadResult ReadProjectFile(FileServices services, const Text& path,
                                                ProjectRecord& record);

/// Replaces the project file whole or not at all; false on failure (reported).
[[nodiscard]] bool WriteProjectFile(FileServices services, const Text& path,
                                    const ProjectRecord& record);

}  // namespace orma
