#pragma once

#include <optional>

#include "audio/files/take_journal.h"
#include "stream/jstream_file.h"

namespace orma {

/// Makes a take of ours whole again that a crash, a full medium or a cut in place left unfinished:
/// brings in the sound that its journal still holds, then makes the sizes in a WAV header fit the
/// file, so that every reader accepts it. Keeps the file's modification time, on which origination
/// dates rest.
///
/// A WAV take of ours begins with the 44 bytes of WavHeader; other files are left alone, and so are
/// those that hold more chunks behind their data. A take that is just being recorded is left alone
/// too. Nothing is reported: what cannot be mended, the reader refuses with its reason. True when
/// something was mended.
bool RepairTake(FileServices files, const Text& audioPath);

/// The journal of a take; nothing when there is none, or the take is just being recorded.
[[nodiscard]] std::optional<TakeJournalContent> ReadTakeJournal(FileServices files,
                                                                const Text& audioPath);

/// True when the take is being recorded, here or in another process.
[[nodiscard]] bool IsBeingRecorded(Storage& storage, const Text& audioPath);

/// Removes the journal of a take, unless it is in use or holds sound that the take lacks.
void DropTakeJournal(FileServices files, const Text& audioPath);

}  // namespace orma
