#pragma once

#include "project/project.h"

namespace orma {

/// The path that a save dialog proposes for the selection: the recording's with "_S" behind its
/// name.
[[nodiscard]] Text ProposedSelectionPath(const Project& project);

/// Saves the selection of the current recording as the recording `path`, with levels, marks and
/// cuts of its own. The date of the recording goes with it.
///
/// Another file than the recording's own gets a copy. The recording's own file is rewritten: where
/// the selection begins at 0 it is cut in place, else made anew, while the original waits under the
/// extension ".wa2"; a selection of everything changes nothing. The clips of a rewritten recording
/// keep what is left of their range, those of which nothing is left go, the project is saved, and
/// the recording is opened anew. In each case the cursor is at 0 then.
///
/// A file that was there stays as it was when anything fails. A copy under a new name is kept when
/// the source cannot be read to its end: zero bytes stand for what is missing.
///
/// False when refused ("MenuSaveSelAs" while `busy` recording or playing, "Nothing selected") or
/// when anything failed; all reported. UI thread; blocks while it copies.
[[nodiscard]] bool MenuSaveSelAs(Project& project, const Text& path, bool busy);

}  // namespace orma
