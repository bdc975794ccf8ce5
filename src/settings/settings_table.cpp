#include "settings/settings_table.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "base/number.h"

namespace orma {
namespace {

constexpr std::int64_t kAnyByte = std::numeric_limits<std::uint8_t>::max();
constexpr std::int64_t kAnyShort = std::numeric_limits<std::uint16_t>::max();
constexpr std::int64_t kAnyLong = std::numeric_limits<std::uint32_t>::max();

// What one row of a field list appends to the table: a member of `entry`, named behind `prefix`.
#define FIELD_BYTE(name, initial, largest, meaning) \
    Number(prefix + #name, &entry.name, 0, largest, meaning);
#define FIELD_SHORT FIELD_BYTE
#define FIELD_LONG FIELD_BYTE
#define FIELD_SIGNED_SHORT(name, initial, smallest, largest, meaning) \
    Number(prefix + #name, &entry.name, smallest, largest, meaning);
#define FIELD_SIGNED_LONG FIELD_SIGNED_SHORT
#define FIELD_TEXT(name, initial, meaning) String(prefix + #name, &entry.name, meaning);
#define FIELD_SECRET(name, meaning) Secret(prefix + #name, &entry.name, meaning);
#define ALSO(name, meaning) String(prefix + #name, &entry.name, meaning);
#define SINCE(version) threshold_ = version;
#define EACH(array, first, end, part)         \
    for (std::size_t i = first; i < end; ++i) \
        part(Indexed(#array, i), entry.array[i]);

/// Appends the rows of the field lists. One operation for each part of a table's entry.
class TableBuilder {
  public:
    explicit TableBuilder(std::vector<Setting>& settings) : settings_(settings) {}

    void Configuration(SettingsRecord& entry) {
        const std::string prefix;
        file_ = SettingsFile::kConfiguration;
#include "settings/configuration_fields.inc"
    }

    void UserState(SettingsRecord& entry) {
        const std::string prefix;
        file_ = SettingsFile::kUserState;
#include "settings/user_state_fields.inc"
    }

  private:
    void FtpAccess(const std::string& prefix, FtpDestination& entry) {
        ORMA_FTP_ACCESS
    }
    void FtpName(const std::string& prefix, FtpDestination& entry) {
        ORMA_FTP_NAME
    }
    void FtpNamedAccess(const std::string& prefix, FtpDestination& entry) {
        FtpAccess(prefix, entry);
        FtpName(prefix, entry);
    }
    void FtpSecurity(const std::string& prefix, FtpDestination& entry) {
        ORMA_FTP_SECURITY
    }
    void SmtpAccess(const std::string& prefix, SmtpDestination& entry) {
        ORMA_SMTP_ACCESS
    }
    void SmtpConnection(const std::string& prefix, SmtpDestination& entry) {
        ORMA_SMTP_CONNECTION
    }

    // The equaliser's values belong to a lower folder, which knows no rows.
    void Band(const std::string& prefix, EqualizerBand& band) {
        Number(prefix + "Frequency", &band.frequency, 0, kAnyShort, "centre frequency, Hz");
        Number(prefix + "Gain", &band.gain, -32768, 32767, "gain, 0.1 dB");
        Number(prefix + "Q", &band.q, 0, kAnyShort, "Q, in tenths");
        Number(prefix + "Enabled", &band.enabled, 0, 1, "1: the band is in use");
    }
    void PresetBands(const std::string& prefix, EqualizerSet& set) {
        for (std::size_t i = 0; i < set.bands.size(); ++i)
            Band(prefix + Indexed("Band", i), set.bands[i]);
        Number(prefix + "EqOn", &set.on, 0, 1, "1: the equaliser is on with this set");
        String(prefix + "Name", &set.name,
               "name of the set; \"_ext\" and \"_int\" follow a headset");
    }
    void PresetGainOffset(const std::string& prefix, EqualizerSet& set) {
        Number(prefix + "GainOffset", &set.gainOffset, -32768, 32767,
               "dB, added to the input gain while the set is on");
    }

    static std::string Indexed(const char* array, std::size_t index) {
        return array + ("[" + std::to_string(index)) + "].";
    }

    void Number(std::string name, Setting::Value value, std::int64_t smallest, std::int64_t largest,
                std::string_view meaning) {
        settings_.push_back(
            {file_, threshold_, std::move(name), meaning, value, smallest, largest, false});
    }
    void String(std::string name, Text* value, std::string_view meaning) {
        settings_.push_back({file_, threshold_, std::move(name), meaning, value});
    }
    void Secret(std::string name, Text* value, std::string_view meaning) {
        String(std::move(name), value, meaning);
        settings_.back().secret = true;
    }

    std::vector<Setting>& settings_;
    SettingsFile file_ = SettingsFile::kConfiguration;
    std::int32_t threshold_ = 0;
};

}  // namespace

std::string_view Setting::Kind() const {
    return std::visit(
        []<class T>(T*) -> std::string_view {
            if constexpr (std::is_same_v<T, Text>) {
                return "text";
            } else {
                return sizeof(T) == 1 ? "byte" : sizeof(T) == 2 ? "short" : "long";
            }
        },
        value);
}

std::string Setting::Get() const {
    return std::visit(
        []<class T>(const T* member) -> std::string {
            if constexpr (std::is_same_v<T, Text>) {
                return ToUtf8(*member);
            } else {
                return std::to_string(*member);
            }
        },
        value);
}

std::string Setting::Set(std::string_view text) const {
    if (Text* const* member = std::get_if<Text*>(&value)) {
        **member = FromUtf8(text);
        return {};
    }
    const auto number = ParseNumber<std::int64_t>(text);
    if (!number || *number < smallest || *number > largest) {
        return name + " takes a whole number from " + std::to_string(smallest) + " to " +
               std::to_string(largest) + ", not \"" + std::string(text) + "\"";
    }
    std::visit(
        [number]<class T>(T* member) {
            if constexpr (!std::is_same_v<T, Text>) *member = static_cast<T>(*number);
        },
        value);
    return {};
}

SettingsTable::SettingsTable(SettingsRecord& record) {
    TableBuilder builder(settings_);
    builder.Configuration(record);
    configurationCount_ = settings_.size();
    builder.UserState(record);
}

std::span<const Setting> SettingsTable::In(SettingsFile file) const {
    const std::span<const Setting> all(settings_);
    return file == SettingsFile::kConfiguration ? all.first(configurationCount_)
                                                : all.subspan(configurationCount_);
}

const Setting* SettingsTable::Find(std::string_view name) const {
    const auto found = std::find_if(settings_.begin(), settings_.end(),
                                    [&](const Setting& setting) { return setting.name == name; });
    return found == settings_.end() ? nullptr : &*found;
}

}  // namespace orma
