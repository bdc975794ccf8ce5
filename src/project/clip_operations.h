#pragma once

#include "project/project.h"

namespace orma {

// The clip editor's operations on the list of the current project. Each that changes the list saves
// the project; a failure to save is reported and makes it false, the change stays for the next
// save. `playing`: nothing is changed while a recording plays. UI thread.

/// Adds the recording `path`, whole, at the current index, else at the end, and selects it. False
/// when it is none of the project's format or cannot be read. A notice warns when it lies outside
/// the project's folder, for the list is loaded from there.
[[nodiscard]] bool AddClip(Project& project, const Text& path, bool playing);

/// Adds the current recording with the current selection as its range.
[[nodiscard]] bool AddCurrentRecording(Project& project, bool playing);

/// Removes the current clip and selects the following or the new last one; false without one.
[[nodiscard]] bool RemoveCurrentClip(Project& project, bool playing);

/// Swap the current clip with its neighbour; at the ends of the list nothing happens, which is a
/// success. False without a current clip.
[[nodiscard]] bool MoveClipUp(Project& project);
[[nodiscard]] bool MoveClipDown(Project& project);

/// Moves the current clip to `index`; those between close up. False without a current clip and
/// outside the list.
[[nodiscard]] bool MoveClipTo(Project& project, std::int32_t index);

/// Gives a clip a title; an empty one lets its name stand again. False outside the list.
[[nodiscard]] bool RenameClip(Project& project, std::int32_t index, const Text& title,
                              bool playing);

/// Reads length, time and texts of every clip anew.
void CheckAllClips(Project& project);

/// What "copy to the clip editor" proposes: the recording's name, or where a clip is edited that
/// clip's name and a number above all that titles of clips of the same recording have, "name-1".
[[nodiscard]] Text ProposedClipTitle(const Project& project);

/// Makes a clip of the selection under the confirmed title: where no clip is edited one of the
/// current recording, at the end, else a copy of the edited clip behind it. The new one becomes
/// current. Refused with "Nothing selected" when the selection is empty and not at 0.
[[nodiscard]] bool CopyToClipEditor(Project& project, const Text& title);

}  // namespace orma
