#include "publish/verify.h"

#include <limits>
#include <optional>

#include "publish/verify_audio.h"
#include "publish/verify_envelope.h"
#include "publish/verify_head.h"
#include "publish/verify_notes.h"
#include "publish/verify_peaks.h"
#include "publish/verify_quality.h"

namespace orma {
namespace {

void CheckFile(VerifySource& source, Storage& storage, VerifyNotes& notes) {
    const std::vector<FileChunk> chunks = MapChunks(source, notes);
    PublishedHead head;
    CheckFormat(source, chunks, head, notes);
    CheckChunkOrder(chunks, head.format.mp2, notes);
    if (const FileChunk* bext = FindChunk(chunks, "bext")) CheckBext(source, *bext, head, notes);

    const FileChunk* data = FindChunk(chunks, "data");
    SoundFacts sound;
    const bool hasSound = head.formatKnown && data != nullptr;
    if (hasSound) sound = CheckAudio(source, storage, *data, head.format, notes);

    const FileChunk* levlChunk = FindChunk(chunks, "levl");
    std::optional<LevlChunk> levl;
    if (levlChunk != nullptr) levl = CheckEnvelope(source, *levlChunk, head, notes);

    QualityFacts quality;
    if (const FileChunk* qlty = FindChunk(chunks, "qlty"))
        quality = CheckQuality(source, *qlty, sound.byteSum, levl ? &*levl : nullptr, notes);
    if (levl && hasSound) CheckPeaks(*levl, *levlChunk, sound, head.format, quality.joins, notes);
}

}  // namespace

VerifyReport VerifyPublishedFile(FileServices services, const Text& path) {
    VerifyReport report;
    VerifyNotes notes(report);
    VerifySource source(services.storage, path);
    if (!source.Error().empty())
        notes.Find(0, "cannot be opened: " + source.Error());
    else if (source.Size() > std::numeric_limits<std::uint32_t>::max())
        notes.Find(0, "longer than a RIFF file can be (4 GiB)");
    else
        CheckFile(source, services.storage, notes);
    return report;
}

}  // namespace orma
