#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "stream/jstream.h"

namespace orma {

/// Gathers the blocks of a long output into large pieces that end at multiples of their size in the
/// file: a file system takes those at half the cost of small ones that lie anywhere. For outputs
/// that are nothing until they are whole; a recording never waits here. UI thread.
class GatheredWrites {
  public:
    static constexpr std::size_t kPieceBytes = 262144;

    /// Begins at byte `position` of the output, dropping what was held. Allocates; nothing else
    /// does.
    void Start(std::uint32_t position);

    /// Takes a block and writes the pieces that it completes. A write that fails is the stream's to
    /// report, as ever.
    void Put(JStream& out, ByteSpan block);

    /// Writes what is held. Whoever writes past this object, or moves in the output, calls it
    /// first.
    void Flush(JStream& out);

  private:
    Bytes held_;
    std::size_t room_ = 0;  // bytes to the end of the piece
};

}  // namespace orma
