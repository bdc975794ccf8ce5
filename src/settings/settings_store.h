#pragma once

#include <array>
#include <optional>
#include <set>

#include "settings/settings_record.h"
#include "settings/settings_table.h"
#include "stream/jstream_file.h"

namespace orma {

/// Reads one settings file of a kind, wherever it lies, into `record` and returns its version;
/// nothing, and an untouched record, when it is missing, foreign or unreadable.
[[nodiscard]] std::optional<std::uint32_t> ReadSettingsFile(FileServices services, const Text& path,
                                                            SettingsFile file,
                                                            SettingsRecord& record);

/// Reads and writes a settings record's two files in the program's folder: "OrmaIni.sup", the
/// configuration, and "OrmaSet.sup", the user state that the program itself writes at exit. Each is
/// a 4-byte magic, a 32-bit version and fields in the order of the field lists; a file of version V
/// holds the fields of a threshold below V. The user state is loaded first. Loading says true when
/// nothing was loaded (missing, unreadable or foreign file): the record is then as it was. A file
/// cut short loads, with zeros and empty texts for what it lacks. UI thread.
class SettingsStore {
  public:
    static constexpr std::uint32_t kConfigurationVersion = 51;
    static constexpr std::uint32_t kUserStateVersion = 8;

    /// `record` outlives the store; an empty ProjectsFolder in it becomes `programFolder`.
    SettingsStore(FileServices services, const Text& programFolder, SettingsRecord& record);

    /// Loads "OrmaSet.sup". Its FTP destination name counts only in files of version 2 and 3, its
    /// equaliser-set name only while InputOptions is on. As the configuration, loaded afterwards,
    /// decides about the latter and holds both names too, they are remembered until then.
    [[nodiscard]] bool LoadUserState();

    /// Writes "OrmaSet.sup". LastFolder and LastName are the current project's by then. False when
    /// it could not be written (reported): the old file then stands. A standing file that is not
    /// ours, of a newer version with fields unknown here, or that could not be loaded, so that the
    /// record lacks its fields, is kept beside it as "<name>.old<n>".
    [[nodiscard]] bool SaveUserState();

    /// Loads "OrmaIni.sup" and fills what follows from its fields: FTP destination 0 (files up to
    /// version 25), mail accounts 0 and 1, the names of accounts without one, the sets' gain
    /// offsets (files up to version 50); then the remembered user state applies.
    [[nodiscard]] bool LoadConfiguration();

    /// Writes "OrmaIni.sup", all fields; as SaveUserState otherwise. Mail accounts 0 and 1 are
    /// stored as the table has them: what was edited in their places instead (the mail server in
    /// use, Smtp1...) goes to the table first, but an account that a dialog brought into use is no
    /// edit of account 0.
    [[nodiscard]] bool SaveConfiguration();

    /// Brings entries 0 and 1 of the mail table up to date with what was edited in their places, as
    /// saving does: for whoever shows the table after an import.
    void TakeOverPlaces();

    /// Where a file is.
    [[nodiscard]] Text PathOf(SettingsFile file) const;

  private:
    [[nodiscard]] bool Save(SettingsFile file, SettingsRecord& record);
    [[nodiscard]] std::optional<std::uint32_t> Load(SettingsFile file);
    [[nodiscard]] bool KeepForeignFile(SettingsFile file);
    void DeriveFields(std::uint32_t version);
    void ApplyUserState();
    void RememberAccounts();

    FileServices services_;
    SettingsRecord& record_;
    Text folder_;
    std::set<SettingsFile> unread_;           // files that stand but whose fields the record lacks
    std::optional<Text> storedFtpName_;       // what the user state holds and the
    std::optional<Text> storedPresetName_;    // configuration must not override
    std::array<Text, 5> filledAccountNames_;  // given at load, not stored
    std::array<SmtpDestination, 2> knownAccounts_;  // as last loaded or saved: accounts 0 and 1
    std::array<SmtpDestination, 2> knownPlaces_;    // and their places
};

}  // namespace orma
