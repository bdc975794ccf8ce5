#pragma once

#include "stream/jstream_file.h"

namespace orma {

/// Mends the header of a WAV take of ours whose sizes do not fit the file (unfinished after a
/// crash, or cut in place), so that every reader accepts it; keeps the file's modification time,
/// on which origination dates rest. A take of ours begins with the 44 bytes of WavHeader; other
/// files are left alone, and so are those that hold more chunks behind their data. Nothing is
/// reported: what cannot be mended, the reader refuses with its reason. True when something was
/// mended.
bool MendTakeHeader(FileServices files, const Text& path);

}  // namespace orma
