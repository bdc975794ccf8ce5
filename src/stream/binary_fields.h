#pragma once

#include <cstdint>
#include <limits>

#include "base/text.h"
#include "stream/jstream_file.h"

namespace orma {

// The primitive fields of the system's binary files, all little-endian. Reading never fails here:
// what a short file lacks reads as zero or empty (and sets the stream's `atEnd`), what a failed
// stream cannot give likewise. Callers test the stream's status once, after the last field.

[[nodiscard]] std::uint8_t ReadU8(JStream& stream);
[[nodiscard]] std::uint16_t ReadU16(JStream& stream);
[[nodiscard]] std::uint32_t ReadU32(JStream& stream);
[[nodiscard]] double ReadF64(JStream& stream);

/// Reads a text: a 32-bit count N of UTF-16 units and, when N > 0, N units and a terminating 0
/// unit. Units from the first 0 or beyond `maxUnits` are dropped, while the stream still moves
/// behind the whole text. A count that the rest of the file cannot hold takes no memory: the text
/// is empty and the stream stands at its end, so that every later field reads as missing.
[[nodiscard]] Text ReadText(JStreamFile& stream,
                            std::uint32_t maxUnits = std::numeric_limits<std::uint32_t>::max());

void WriteU8(JStream& stream, std::uint8_t value);
void WriteU16(JStream& stream, std::uint16_t value);
void WriteU32(JStream& stream, std::uint32_t value);
void WriteF64(JStream& stream, double value);

/// Writes a text as ReadText reads it; the empty text is its count alone.
void WriteText(JStream& stream, TextView text);

}  // namespace orma
