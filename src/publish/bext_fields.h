#pragma once

#include <cstdint>
#include <string>

#include "audio/files/bwf_chunks.h"
#include "publish/umid.h"

namespace orma {

/// "yyyy-mm-dd", month and day padded with spaces. Ten characters.
[[nodiscard]] std::string OriginationDate(const DateTime& recorded);

/// "hh:mm:ss", padded with spaces. Eight characters.
[[nodiscard]] std::string OriginationTime(const DateTime& recorded);

/// The `bext` fields of a publication (EBU Tech 3285) in the template's head; the two sizes are not
/// set. `description` is 8-bit text, of which at most 255 characters and a zero are kept. `ticks`
/// in milliseconds.
[[nodiscard]] BwfHead BextFields(const std::string& description, const DateTime& recorded,
                                 std::uint16_t channels, std::uint32_t ticks,
                                 const OriginatorCodes& codes);

}  // namespace orma
