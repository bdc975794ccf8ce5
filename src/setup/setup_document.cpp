#include "setup/setup_document.h"

#include "base/path.h"
#include "settings/settings_json.h"
#include "setup/setup_field.h"

namespace orma {

SetupDocument::SetupDocument(FileServices services, const Text& programFolder)
    : services_(services), folder_(AsFolder(programFolder)) {
    const auto add = [&](std::string name, Setting::Value value, std::int64_t largest = 0) {
        Setting setting{};
        setting.name = std::move(name);
        setting.value = value;
        setting.largest = largest;
        moreSettings_.push_back(std::move(setting));
    };
    add(std::string(kWindowShape), &shape_.landscape, 2);
    add(std::string(kWindowBig), &shape_.big, 1);
    for (std::size_t i = 0; i < 2; ++i) {
        SmtpDestination& account = record_.Smtp[i];
        const std::string prefix = mail_.Prefix(i);
        add(prefix + "Server", &account.Server);
        add(prefix + "User", &account.User);
        add(prefix + "Password", &account.Password);
        add(prefix + "Auth", &account.Auth, 1);
    }
    Load();
}

void SetupDocument::Load() {
    record_ = SettingsRecord{};
    store_.emplace(services_, folder_, record_);
    onDisk_ = ReadConfiguration();
    // Missing files are no failure: the options then have their defaults.
    (void)store_->LoadUserState();
    (void)store_->LoadConfiguration();
    shape_ = ReadWindowShape(services_.storage, ShapePath());
    FindAccounts();
    Remember();
}

const Setting* SetupDocument::Find(std::string_view name) const {
    for (const Setting& setting : moreSettings_)
        if (setting.name == name) return &setting;
    return table_.Find(name);
}

void SetupDocument::FindAccounts() {
    // A name that the server text lent would not follow a change of the server.
    for (SmtpDestination& account : record_.Smtp)
        if (account.Name == account.Server) account.Name.clear();
    ftp_.Load();
    mail_.Load();
}

void SetupDocument::StoreAccounts() {
    ftp_.Store();
    mail_.Store();
}

SetupDocument::Values SetupDocument::ValuesOf(SettingsFile file) const {
    Values values;
    for (const Setting& setting : table_.In(file))
        values.push_back(setting.Get());
    return values;
}

void SetupDocument::Remember() {
    StoreAccounts();
    knownConfiguration_ = ValuesOf(SettingsFile::kConfiguration);
    knownUserState_ = ValuesOf(SettingsFile::kUserState);
    knownShape_ = shape_;
}

bool SetupDocument::IsChanged() {
    StoreAccounts();
    return shape_ != knownShape_ || ValuesOf(SettingsFile::kConfiguration) != knownConfiguration_ ||
           ValuesOf(SettingsFile::kUserState) != knownUserState_;
}

std::optional<Bytes> SetupDocument::ReadConfiguration() const {
    constexpr std::uint64_t kMost = 1U << 20U;  // far beyond any settings file
    std::unique_ptr<StorageFile> file;
    const Text path = store_->PathOf(SettingsFile::kConfiguration);
    std::uint64_t size = 0;
    if (services_.storage.Open(path, {}, file) != 0 || file->Size(size) != 0 || size > kMost)
        return std::nullopt;
    Bytes bytes(static_cast<std::size_t>(size));
    std::size_t got = 0;
    if (file->Read(bytes, got) != 0) return std::nullopt;
    bytes.resize(got);
    return bytes;
}

bool SetupDocument::IsChangedOnDisk() const {
    return ReadConfiguration() != onDisk_;
}

bool SetupDocument::Save() {
    StoreAccounts();
    const Text& projects = record_.ProjectsFolder;
    if (const SystemError error = services_.storage.CreateFolder(projects); error != 0) {
        services_.report.ReportSystemFailure(u"CreateDirectory", error);
        return false;
    }
    const bool isMissing = !onDisk_;
    if (isMissing || IsChangedOnDisk() ||
        ValuesOf(SettingsFile::kConfiguration) != knownConfiguration_) {
        if (!store_->SaveConfiguration()) return false;
        onDisk_ = ReadConfiguration();
    }
    if (ValuesOf(SettingsFile::kUserState) != knownUserState_ && !SaveUserState()) return false;
    if (shape_ != knownShape_) WriteWindowShape(services_.storage, ShapePath(), shape_);
    Remember();
    return true;
}

bool SetupDocument::SaveUserState() {
    SettingsRecord fresh;
    SettingsStore store(services_, folder_, fresh);
    (void)store.LoadUserState();
    (void)store.LoadConfiguration();
    const SettingsTable table(fresh);
    const auto mine = table_.In(SettingsFile::kUserState);
    const auto theirs = table.In(SettingsFile::kUserState);
    for (std::size_t i = 0; i < mine.size(); ++i)
        if (const std::string value = mine[i].Get(); value != knownUserState_[i])
            (void)theirs[i].Set(value);  // of the same kind
    return store.SaveUserState();
}

std::string SetupDocument::Import(std::istream& json) {
    StoreAccounts();
    const SettingsRecord before = record_;
    const SettingsImport import = ImportSettings(json, table_);
    if (!import.refusal.empty()) {
        record_ = before;
        return import.refusal;
    }
    store_->TakeOverPlaces();
    FindAccounts();
    return {};
}

std::string SetupDocument::Export(bool secrets) {
    StoreAccounts();
    return ExportSettings(table_, secrets);
}

}  // namespace orma
