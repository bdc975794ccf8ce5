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
/// A journal's sound only follows a take that holds what the journal knows of it: another file of
/// that name, or one that was edited since, stays as it is. A WAV take of ours begins with the 44
/// bytes of WavHeader; other files are left alone, and so are those that hold more chunks behind
/// their data, and a take that is just being recorded. Nothing is reported: what cannot be mended,
/// the reader refuses with its reason. True when something was mended.
bool RepairTake(FileServices files, const Text& audioPath);

/// A take's journal; nothing when there is none of ours, or it is in use.
[[nodiscard]] std::optional<TakeJournalContent> ReadTakeJournal(FileServices files,
                                                                const Text& takePath);

/// True when the take is being recorded, here or in another process, and when its journal cannot be
/// opened for writing for another reason. `takePath`: any of its files.
[[nodiscard]] bool IsBeingRecorded(Storage& storage, const Text& takePath);

/// What became of a journal that was to go.
enum class JournalFate {
    kGone,        // or there was none of ours
    kWaits,       // it is in use, or holds sound that the take lacks and could still get
    kFitsNowhere  // it holds sound that cannot be joined to the take, and that is nowhere else
};

/// Removes the journal of a take unless it holds sound that the take lacks.
JournalFate DropTakeJournal(FileServices files, const Text& audioPath);

}  // namespace orma
