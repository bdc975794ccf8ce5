#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "base/text.h"

namespace orma {

/// A 16-bit WAV file that receives samples; its header is right after every write. One thread.
class FileLoudspeaker {
  public:
    /// Creates `path` or replaces it. Null when that fails; `problem` then says why.
    [[nodiscard]] static std::unique_ptr<FileLoudspeaker> Open(const Text& path,
                                                               std::uint16_t channels,
                                                               std::uint32_t hz,
                                                               std::string& problem);
    virtual ~FileLoudspeaker() = default;

    /// Appends interleaved samples, whole frames; false when the medium took less.
    [[nodiscard]] virtual bool Write(std::span<const std::int16_t> samples) = 0;

    /// Completes the file; false when that fails. Nothing may be written afterwards.
    [[nodiscard]] virtual bool Close() = 0;
};

}  // namespace orma
