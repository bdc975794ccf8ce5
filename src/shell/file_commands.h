#pragma once

#include "app/application.h"

namespace orma {

class Shell;

// Files that the window opens or makes, once their paths are known. Whatever is refused is refused
// with a box. UI thread.

using FileOperation = bool (*)(Application& app, const Text& path);

/// Closes the text editor, whose text belongs to the project that is left, runs the operation and
/// shows what is current then; true when it was done.
bool RunOnPath(Shell& shell, const Text& path, FileOperation operation);

/// True for the name of a project or of a recording: what OpenFile takes.
[[nodiscard]] bool IsOpenable(const Text& path);

/// Opens a file that the user dropped on the window: a project as "Open project" does, a recording
/// as "Open clip". Nothing for other files, and while a job runs.
void OpenFile(Shell& shell, const Text& path);

/// Opens one of the recent projects by its place. One that is gone leaves the list.
void OpenRecentProject(Shell& shell, std::size_t place);

}  // namespace orma
