// Take journals, beside a take that they may belong to. An input is the number of bytes of the take
// (u16), the take, and the journal.

#include <algorithm>

#include "audio/files/take_repair.h"
#include "fuzz/fuzz.h"

namespace orma::test {

// Marks at their most; the files, the journal once more as it is read, and its sound twice.
const MemoryBudget kMemoryBudget{.fixedBytes = 16 * 1024, .bytesPerInputByte = 12};

namespace {

bool IsSizeField(std::size_t at) {
    return (at >= 4 && at < 8) || (at >= 40 && at < 44);
}

}  // namespace

void TryInput(ByteSpan input) {
    if (input.size() < 2) return;
    const std::size_t bytes =
        std::min<std::size_t>(LoadLe<std::uint16_t>(input.data()), input.size() - 2);
    const ByteSpan before = input.subspan(2, bytes);
    for (const Text& path : {Text(u"take00.wav"), Text(u"take00.mp2")}) {
        FuzzFiles files(input.size());
        files.storage.Put(path, before);
        files.storage.Put(u"take00.rec", input.subspan(2 + bytes));
        RepairTake(files.services, path);
        const Bytes after = *files.storage.Find(path);
        Require(after.size() >= before.size(), "a repair takes nothing away");
        for (std::size_t i = 0; i < before.size(); ++i)
            Require(after[i] == before[i] || before[i] == 0 || IsSizeField(i),
                    "a repair changes no sound");
        Require(!RepairTake(files.services, path), "a second repair finds nothing");
        DropTakeJournal(files.services, path);
    }
}

}  // namespace orma::test
