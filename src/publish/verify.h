#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "stream/jstream_file.h"

namespace orma {

/// One thing that is wrong with a published file.
struct Finding {
    std::uint32_t offset = 0;  // bytes from the file's start
    std::string text;          // one line, plain ASCII
};

/// What a check of a published file found out.
struct VerifyReport {
    std::vector<std::string> facts;  // what was checked and holds, a line each
    std::vector<Finding> findings;   // empty: the file is sound
};

/// Checks a published file against the layout and against itself: sizes, chunk order, `fact`, every
/// MP2 frame header, both checksums, `levl` against the audio, cue lines in order, UMID, dates.
/// Works on any bytes; memory stays within the file's own size.
[[nodiscard]] VerifyReport VerifyPublishedFile(FileServices services, const Text& path);

}  // namespace orma
