#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "base/text.h"

namespace orma {

/// A sound file as an endless source of 16-bit samples: its sound once, then silence. One thread;
/// reading allocates nothing.
class FileMicrophone {
  public:
    /// Opens `path` for reading at `channels` (1 or 2) and `hz`. Null when the file cannot be read
    /// or its rate is more than 256 times off; `problem` then says why.
    ///
    /// 16-bit sound of the same rate passes bit by bit; other resolutions are rounded. Mono goes to
    /// both channels, of more channels the first ones are taken (mono hears the left one). Another
    /// rate is converted by a band-limited (sinc) interpolator.
    [[nodiscard]] static std::unique_ptr<FileMicrophone> Open(const Text& path,
                                                              std::uint16_t channels,
                                                              std::uint32_t hz,
                                                              std::string& problem);
    ~FileMicrophone();

    /// The channels of a sound file; 0 when it cannot be read.
    [[nodiscard]] static std::uint16_t ChannelsOf(const Text& path);

    /// The next samples, interleaved; a whole number of frames.
    void Read(std::span<std::int16_t> samples);

  private:
    struct Libraries;
    explicit FileMicrophone(std::unique_ptr<Libraries> libraries);

    std::unique_ptr<Libraries> libraries_;
};

}  // namespace orma
