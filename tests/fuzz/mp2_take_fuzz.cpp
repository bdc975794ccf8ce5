// MP2 takes, bare and in RIFF, through the decoder.

#include "fuzz/takes.h"

namespace orma::test {

// A decoder and the buffers of a reader at the lowest resolution; the file itself. Nothing in the
// reader grows with the file.
const MemoryBudget kMemoryBudget{.fixedBytes = 128 * 1024, .bytesPerInputByte = 4};

void TryInput(ByteSpan bytes) {
    const Text path = u"take00.mp2";
    FuzzFiles files(bytes.size());
    files.storage.Put(path, bytes);
    AudioState audio;
    audio.mp2 = true;
    if (!AdoptMp2Bitrate(files.services, path, audio, files.report)) return;
    for (const bool stereo : {false, true}) {
        audio.stereo = stereo;
        ReadTake(files, path, audio, bytes.size());
    }
}

}  // namespace orma::test
