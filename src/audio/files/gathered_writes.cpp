#include "audio/files/gathered_writes.h"

#include <algorithm>

namespace orma {

void GatheredWrites::Start(std::uint32_t position) {
    held_.clear();
    held_.reserve(kPieceBytes);
    room_ = kPieceBytes - position % kPieceBytes;
}

void GatheredWrites::Put(JStream& out, ByteSpan block) {
    while (!block.empty()) {
        const ByteSpan part = block.first(std::min(block.size(), room_));
        held_.insert(held_.end(), part.begin(), part.end());
        room_ -= part.size();
        block = block.subspan(part.size());
        if (room_ > 0) continue;
        Flush(out);
        room_ = kPieceBytes;
    }
}

void GatheredWrites::Flush(JStream& out) {
    if (!held_.empty()) out.Write(held_.data(), static_cast<std::uint32_t>(held_.size()));
    held_.clear();
}

}  // namespace orma
