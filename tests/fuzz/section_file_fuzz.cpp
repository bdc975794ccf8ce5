// Section files, which users edit by hand.

#include "fuzz/fuzz.h"
#include "settings/section_file.h"

namespace orma::test {

// The old text and the new one: each token may be of one character and gets a line end.
const MemoryBudget kMemoryBudget{.fixedBytes = 4 * 1024, .bytesPerInputByte = 16};

void TryInput(ByteSpan bytes) {
    const Text path = u"skin/layout.ini";
    FuzzFiles files(bytes.size());
    files.storage.Put(path, bytes);
    const auto read = [&](const char* section, const char* key) {
        return ReadKey(files.storage, section, key, -1, path);
    };
    const int sameSection = read("Size", "Landscape");
    const int otherSection = read("Skin", "Big");
    WriteKey(files.storage, "Size", "Big", 7, path);
    Require(read("Size", "Big") == 7, "a key that was written is read");
    Require(read("Size", "Landscape") == sameSection, "other keys keep their values");
    Require(read("Skin", "Big") == otherSection, "other sections keep their values");
}

}  // namespace orma::test
