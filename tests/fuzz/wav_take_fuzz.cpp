// WAV takes: the mending of their header, then the reader.

#include <algorithm>

#include "audio/files/take_repair.h"
#include "fuzz/takes.h"

namespace orma::test {

// The converter's tables and the buffers of a reader at the lowest resolution; the file itself.
// Nothing in the reader grows with the file.
const MemoryBudget kMemoryBudget{.fixedBytes = 160 * 1024, .bytesPerInputByte = 4};

void TryInput(ByteSpan bytes) {
    const Text path = u"take00.wav";
    FuzzFiles files(bytes.size());
    files.storage.Put(path, bytes);
    const bool mended = RepairTake(files.services, path);
    Require(files.storage.Find(path)->size() == bytes.size(), "mending keeps every byte of sound");
    Require(!RepairTake(files.services, path), "once mended, a header fits");
    Require(mended || std::ranges::equal(*files.storage.Find(path), bytes), "or it is untouched");
    ReadTake(files, path, AudioState{}, bytes.size());
}

}  // namespace orma::test
