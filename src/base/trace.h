#pragma once

#include <functional>
#include <string_view>

namespace orma {

/// Receives one diagnostic line, without its line end.
using TraceSink = std::function<void(std::string_view line)>;

/// Sets where trace lines go; an empty sink (the state at start) drops them. The one mutable static
/// of the program: diagnosis must not need a parameter in every operation. UI thread only.
void SetTraceSink(TraceSink sink);

/// Writes one diagnostic line, printf-style; an empty line is written as "EMPTY!". UI thread only.
void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace orma
