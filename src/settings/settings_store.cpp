#include "settings/settings_store.h"

#include <algorithm>
#include <string_view>
#include <variant>

#include "base/bytes.h"
#include "base/path.h"
#include "settings/mail_places.h"
#include "stream/binary_fields.h"
#include "stream/file_replacement.h"

namespace orma {
namespace {

constexpr std::uint32_t kHeaderBytes = 8;  // magic and version

struct FileFormat {
    TextView name;
    std::string_view magic;
    std::uint32_t version;
};

FileFormat FormatOf(SettingsFile file) {
    if (file == SettingsFile::kConfiguration)
        return {u"OrmaIni.sup", "OSUP", SettingsStore::kConfigurationVersion};
    return {u"OrmaSet.sup", "OSUS", SettingsStore::kUserStateVersion};
}

/// True when a dialog brought another account than 0 into use.
bool HasChosenAccount(const SettingsRecord& r) {
    return std::any_of(r.Smtp.begin() + 1, r.Smtp.end(), [&](const SmtpDestination& entry) {
        return entry.ShownName() == r.CurrentSmtpName && SameMailAccess(entry, MailPlaces(r)[0]);
    });
}

}  // namespace

SettingsStore::SettingsStore(FileServices services, const Text& programFolder,
                             SettingsRecord& record)
    : services_(services), record_(record), folder_(AsFolder(programFolder)) {
    if (record_.ProjectsFolder.empty()) record_.ProjectsFolder = folder_;
}

Text SettingsStore::PathOf(SettingsFile file) const {
    return folder_ + Text(FormatOf(file).name);
}

std::optional<std::uint32_t> ReadSettingsFile(FileServices services, const Text& path,
                                              SettingsFile file, SettingsRecord& record) {
    if (!services.storage.Exists(path)) return std::nullopt;
    JStreamFile stream(services, path, true);
    const std::uint32_t size = stream.GetSize();
    Bytes bytes(kHeaderBytes);
    stream.ReadHeld(bytes.data(), std::min(size, kHeaderBytes));
    if (!IsTag(bytes.data(), FormatOf(file).magic)) return std::nullopt;
    if (size > kHeaderBytes) {
        bytes.resize(size);
        stream.ReadHeld(&bytes[kHeaderBytes], size - kHeaderBytes);
    }
    if (!stream.IsOpen()) return std::nullopt;

    const auto version = LoadLe<std::uint32_t>(&bytes[4]);
    FieldReader fields(ByteSpan(bytes).subspan(kHeaderBytes));
    const SettingsTable table(record);
    for (const Setting& setting : table.In(file)) {
        if (std::int64_t{version} <= setting.threshold) continue;
        std::visit([&](auto* member) { fields.Get(*member); }, setting.value);
    }
    return version;
}

std::optional<std::uint32_t> SettingsStore::Load(SettingsFile file) {
    const auto version = ReadSettingsFile(services_, PathOf(file), file, record_);
    if (version)
        unread_.erase(file);
    else if (services_.storage.Exists(PathOf(file)))
        unread_.insert(file);
    return version;
}

bool SettingsStore::LoadUserState() {
    const Text ftpName = record_.CurrentFtpName;
    const Text presetName = record_.CurrentPresetName;
    const std::optional<std::uint32_t> version = Load(SettingsFile::kUserState);
    if (!version) return true;
    record_.InputGain = std::clamp(record_.InputGain, 0, 40);
    record_.OutputVolumeStep = std::clamp(record_.OutputVolumeStep, 0, 20);
    storedFtpName_.reset();
    storedPresetName_.reset();
    if (*version == 2 || *version == 3) storedFtpName_ = record_.CurrentFtpName;
    if (*version > 2) storedPresetName_ = record_.CurrentPresetName;
    record_.CurrentFtpName = ftpName;
    record_.CurrentPresetName = presetName;
    ApplyUserState();
    return false;
}

void SettingsStore::ApplyUserState() {
    if (storedFtpName_) record_.CurrentFtpName = *storedFtpName_;
    if (storedPresetName_ && record_.InputOptions != 0)
        record_.CurrentPresetName = *storedPresetName_;
}

bool SettingsStore::LoadConfiguration() {
    const std::optional<std::uint32_t> version = Load(SettingsFile::kConfiguration);
    if (!version) return true;
    DeriveFields(*version);
    ApplyUserState();
    return false;
}

void SettingsStore::DeriveFields(std::uint32_t version) {
    SettingsRecord& r = record_;
    if (version == 2) r.PublishExtension = r.BwfHeader != 0 ? u"wav" : u"mp2";
    if (r.ResolutionShift > 2) r.ResolutionShift = 2;
    if (version <= 25) {
        // Later files store destination 0 among the others.
        r.Ftp[0] = {r.FtpServer,  r.FtpUser,   r.FtpPassword,    r.FtpFolder,
                    r.FtpPassive, r.FtpServer, r.Ftp[0].Security};
    }
    if (version <= 50) {
        for (EqualizerSet& set : r.Preset)
            set.gainOffset = r.EqGainOffset;
    }
    const std::array<SmtpDestination, 2> places = MailPlaces(r);
    for (std::size_t i = 0; i < places.size(); ++i)
        CopyMailAccess(places[i], r.Smtp[i]);
    RememberAccounts();
    for (std::size_t i = 0; i < r.Smtp.size(); ++i) {
        SmtpDestination& account = r.Smtp[i];
        filledAccountNames_[i].clear();
        if (account.Name.empty()) filledAccountNames_[i] = account.Name = account.Server;
    }
}

bool SettingsStore::SaveUserState() {
    return Save(SettingsFile::kUserState, record_);
}

void SettingsStore::RememberAccounts() {
    knownAccounts_ = {record_.Smtp[0], record_.Smtp[1]};
    knownPlaces_ = MailPlaces(record_);
}

void SettingsStore::TakeOverPlaces() {
    const std::array<SmtpDestination, 2> places = MailPlaces(record_);
    const std::array<bool, 2> chosen = {HasChosenAccount(record_), false};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool placeEdited = !SameMailAccess(places[i], knownPlaces_[i]) && !chosen[i];
        const bool entryEdited = !SameMailAccess(record_.Smtp[i], knownAccounts_[i]);
        if (placeEdited && !entryEdited) CopyMailAccess(places[i], record_.Smtp[i]);
    }
    RememberAccounts();
}

bool SettingsStore::SaveConfiguration() {
    TakeOverPlaces();
    SettingsRecord stored = record_;
    StoreMailPlaces(stored);
    for (std::size_t i = 0; i < stored.Smtp.size(); ++i) {
        // A name that the server text lent stays lent: it follows a change of the server.
        if (stored.Smtp[i].Name == filledAccountNames_[i]) stored.Smtp[i].Name.clear();
    }
    return Save(SettingsFile::kConfiguration, stored);
}

bool SettingsStore::Save(SettingsFile file, SettingsRecord& record) {
    const FileFormat format = FormatOf(file);
    FileReplacement replacement(services_, PathOf(file));
    FieldWriter fields;
    fields.PutTag(format.magic);
    fields.Put(format.version);
    const SettingsTable table(record);
    for (const Setting& setting : table.In(file))
        std::visit([&](const auto* member) { fields.Put(*member); }, setting.value);
    JStreamFile& stream = replacement.Stream();
    stream.Write(fields.Written().data(), static_cast<std::uint32_t>(fields.Written().size()));
    // A foreign file makes room only for one that is whole.
    stream.Flush();
    const bool saved = stream.IsOpen() && KeepForeignFile(file) && replacement.Commit();
    if (saved) unread_.erase(file);
    return saved;
}

bool SettingsStore::KeepForeignFile(SettingsFile file) {
    const Text path = PathOf(file);
    if (!services_.storage.Exists(path)) return true;
    // Read without the reports of a stream: what cannot be read is kept, too.
    std::array<std::uint8_t, kHeaderBytes> header{};
    std::size_t got = 0;
    std::unique_ptr<StorageFile> standing;
    const bool readable =
        services_.storage.Open(path, {}, standing) == 0 && standing->Read(header, got) == 0;
    standing.reset();
    const FileFormat format = FormatOf(file);
    if (readable && !unread_.contains(file) && IsTag(header.data(), format.magic) &&
        LoadLe<std::uint32_t>(header.data() + 4) <= format.version)
        return true;
    int number = 1;
    Text aside;
    do {
        aside = path + FormatText(".old%d", number++);
    } while (services_.storage.Exists(aside));
    const SystemError error = services_.storage.Rename(path, aside);
    if (error != 0) services_.report.ReportSystemFailure(u"MoveFile", error);
    return error == 0;
}

}  // namespace orma
