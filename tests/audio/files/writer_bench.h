#pragma once

#include <algorithm>

#include "audio/files/writer_slot.h"
#include "support/faulty_storage.h"
#include "support/test_files.h"

namespace orma::test {

/// All that a writer needs, on real files that can be made to fail.
struct WriterBench {
    TestFiles files;
    FaultyStorage storage{files.storage};
    FileServices services{storage, files.report};
    AudioState audio;
    Mp2Pipeline encoder{audio, files.report};
    WriterContext context{.files = services,
                          .audio = audio,
                          .encoder = encoder,
                          .recordingFolder = files.folder.Path()};
    WriterSlot slot{context};

    JStreamAudioWrite& Select(WriterKind kind) {
        slot.SelectWriter(kind);
        return *slot.Current();
    }
    /// Does away with the journal of the take "take00" as its project does.
    void RemoveJournal() const { std::filesystem::remove(files.folder.Native(u"take00.rec")); }

    [[nodiscard]] Bytes File(TextView name) const { return ReadFileBytes(files.folder.Path(name)); }
    [[nodiscard]] bool Exists(TextView name) {
        return files.storage.Exists(files.folder.Path(name));
    }
};

/// Writes `pcm` in buffers of `buffer` bytes.
inline void WriteAll(JStreamAudioWrite& writer, ByteSpan pcm, std::size_t buffer = 4410) {
    for (; !pcm.empty(); pcm = pcm.subspan(std::min(buffer, pcm.size())))
        writer.WriteSamples(pcm.data(), static_cast<std::uint32_t>(std::min(buffer, pcm.size())));
}

/// Bytes that repeat so seldom that a block written twice or in the wrong place shows.
[[nodiscard]] inline Bytes Pattern(std::size_t count) {
    Bytes bytes(count);
    std::uint32_t value = 1;
    for (std::uint8_t& byte : bytes) {
        value = value * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>(value >> 24);
    }
    return bytes;
}

}  // namespace orma::test
