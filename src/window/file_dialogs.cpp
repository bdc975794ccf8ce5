#include "window/file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>

#include "base/path.h"
#include "window/dialogs/input_options_dialog.h"
#include "window/dialogs/name_dialog.h"
#include "window/dialogs/qt_text.h"
#include "window/dialogs/shortcuts_dialog.h"

namespace orma {
namespace {

constexpr const char* kProjects = "OrmA Project (*.opr)";
constexpr const char* kClips = "Recordings (*.wav *.mp2)";
constexpr const char* kAll = "Recordings and projects (*.wav *.mp2 *.opr)";

std::optional<Text> PathOf(const QString& chosen) {
    if (chosen.isEmpty()) return std::nullopt;
    return PathFromQt(chosen);
}

std::optional<Text> AskOpen(const char* title, const Text& proposed, const char* filter) {
    return PathOf(QFileDialog::getOpenFileName(QApplication::activeWindow(), title,
                                               PathToQt(proposed), filter));
}

/// The extension is set in the dialog, so that it asks about the file that will be replaced.
std::optional<Text> AskSave(const char* title, const Text& proposed, const char* filter,
                            const QString& extension) {
    QFileDialog dialog(QApplication::activeWindow(), title, PathToQt(proposed), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(extension);
    dialog.selectFile(PathToQt(proposed));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return PathOf(dialog.selectedFiles().front());
}

}  // namespace

std::optional<Text> FileDialogs::OpenProject(const Text& proposed) {
    return AskOpen("Open project", proposed, kProjects);
}

std::optional<Text> FileDialogs::NewProject(const Text& proposed) {
    return AskSave("New project", proposed, kProjects, QStringLiteral("opr"));
}

std::optional<Text> FileDialogs::OpenClip(const Text& proposed) {
    return AskOpen("Open clip", proposed, kClips);
}

std::optional<Text> FileDialogs::Delete(const Text& proposed) {
    return AskOpen("Delete", proposed, kAll);
}

std::optional<Text> FileDialogs::SaveSelection(const Text& proposed) {
    const bool mp2 = proposed.ends_with(u"2");
    return AskSave("Save selection", proposed, mp2 ? "MPEG Layer II (*.mp2)" : "Wave (*.wav)",
                   mp2 ? QStringLiteral("mp2") : QStringLiteral("wav"));
}

Text FileDialogs::Documents() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const bool exists = !folder.isEmpty() && QDir(folder).exists();
    return AsFolder(PathFromQt(exists ? folder : QDir::homePath()));
}

std::optional<Text> FileDialogs::ClipName(const Text& proposed) {
    return AskName(proposed);
}

void FileDialogs::InputOptions() {
    AskInputOptions(app_);
}

void FileDialogs::ShowShortcuts(const std::vector<ShortcutGroup>& groups) {
    ShortcutsDialog::ShowOver(QApplication::activeWindow(), groups);
}

}  // namespace orma
