#pragma once

#include "app/application.h"

namespace orma {

/// Reads the settings (user state, then configuration) and brings the audio side into its state at
/// start. No project is opened. Settings that are missing leave their defaults.
void LoadSettings(Application& app);

/// Whether a command line names a file: it is not empty and does not begin with a blank.
[[nodiscard]] bool NamesFile(const Text& commandLine);

/// Whether a file of that name is a recording: ".wav" or ".mp2", in letters of either case.
[[nodiscard]] bool IsRecordingName(const Text& path);

/// Opens the project at start: the one that the command line names, else the one of the start mode
/// (1 the current, 2 a new numbered one, 3 the last), and in it the recording (.wav, .mp2) that the
/// command line names. A file that does not exist is not opened, and the path stays that of the
/// settings. False when a named file is missing, or a file was refused (reported).
bool OpenProjectAtStart(Application& app, const Text& commandLine);

/// The project is another one, or has another path: takes and publications lie beside it.
void FollowProject(Application& app);

/// Names the takes that the project recovered last in a box, if there were any.
void TellRecovered(Application& app);

/// Whichever way a project becomes current, takes of it that were interrupted are recovered first,
/// and a box names them.

/// Makes the project at `path` current: loads it when its file exists, else sets it up as new. The
/// writers then record into its folder, and the command of the settings is started, if they ask for
/// one, with the project's path. False when the file was refused (reported).
[[nodiscard]] bool OpenOrCreateProject(Application& app, const Text& path);

/// The same for a project that is to be brought back: as it was made before, no command is started.
[[nodiscard]] bool RestoreProject(Application& app, const Text& path);

/// Loads the project at `path`; false when it is missing or refused (reported).
[[nodiscard]] bool OpenProject(Application& app, const Text& path);

/// Stores what the user left: the project for start mode 3, gain, volume, the equaliser set. False
/// when it could not be saved (reported).
[[nodiscard]] bool SaveUserState(Application& app);

/// Ends the application in its order: project, devices, user state. False when something could not
/// be saved (reported).
/// Uploads that accompanied recordings go on behind it: whoever wants them whole waits for
/// Application::liveUploads before the application is destroyed, which gives them up.
bool ShutDown(Application& app);

}  // namespace orma
