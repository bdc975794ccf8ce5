#pragma once

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/window_shape.h"
#include "settings/settings_store.h"
#include "setup/account_list.h"

namespace orma {

/// What the set-up program edits: the configuration, the parts of the user state that belong to it,
/// and the window's shape from "size.txt". Nothing is written but by Save. UI thread.
class SetupDocument {
  public:
    /// `programFolder` (with its separator) is where the files lie; the services outlive the
    /// document.
    SetupDocument(FileServices services, const Text& programFolder);
    SetupDocument(const SetupDocument&) = delete;
    SetupDocument& operator=(const SetupDocument&) = delete;

    /// Reads all files; what was edited is forgotten. Accounts and equaliser sets keep their
    /// places, but gaps between accounts are closed.
    void Load();

    [[nodiscard]] const SettingsRecord& Record() const { return record_; }

    /// The option of that name, also of the window's shape and of mail accounts 0 and 1, which the
    /// settings' table knows by other names; null when there is none.
    [[nodiscard]] const Setting* Find(std::string_view name) const;

    [[nodiscard]] AccountList& Ftp() { return ftp_; }
    [[nodiscard]] AccountList& Mail() { return mail_; }

    /// True when something was edited since it was loaded or saved.
    [[nodiscard]] bool IsChanged();

    /// True when somebody else has written the configuration since it was loaded or saved.
    [[nodiscard]] bool IsChangedOnDisk() const;

    /// Writes what was edited, over what another program wrote meanwhile, and makes the projects
    /// folder when it is missing. Of the user state, which the editor writes as well, only what was
    /// edited here is changed. False when something could not be written (reported).
    [[nodiscard]] bool Save();

    /// Takes settings from a JSON object, see ImportSettings. Returns an empty text, or why it was
    /// refused: everything is then as it was.
    [[nodiscard]] std::string Import(std::istream& json);

    /// All settings as a JSON object, passwords only when asked for.
    [[nodiscard]] std::string Export(bool secrets);

  private:
    using Values = std::vector<std::string>;

    void FindAccounts();
    void StoreAccounts();
    [[nodiscard]] Values ValuesOf(SettingsFile file) const;
    [[nodiscard]] std::optional<Bytes> ReadConfiguration() const;
    [[nodiscard]] Text ShapePath() const { return folder_ + u"size.txt"; }
    [[nodiscard]] bool SaveUserState();
    void Remember();

    FileServices services_;
    Text folder_;
    SettingsRecord record_;
    SettingsTable table_{record_};
    WindowShape shape_;
    std::vector<Setting> moreSettings_;  // that the table lacks
    std::optional<SettingsStore> store_;
    FtpAccountList ftp_{record_};
    MailAccountList mail_{record_};

    Values knownConfiguration_;
    Values knownUserState_;
    WindowShape knownShape_;
    std::optional<Bytes> onDisk_;  // the configuration file; none: there is none
};

}  // namespace orma
