#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "settings/settings_record.h"

namespace orma {

enum class SettingsFile {
    kConfiguration,  // "OrmaIni.sup"
    kUserState,      // "OrmaSet.sup"
};

/// One option of a settings record: its place in a file, its meaning and access to its value.
struct Setting {
    /// The member itself; its type is also the field's width in the file.
    using Value = std::variant<std::uint8_t*, std::uint16_t*, std::int16_t*, std::uint32_t*,
                               std::int32_t*, Text*>;

    SettingsFile file;
    std::int32_t threshold;  // stands in files whose version exceeds it
    std::string name;        // the member, as in "StartMode" or "Ftp[3].Server"
    std::string_view meaning;
    Value value;
    std::int64_t smallest = 0;  // of a number that may be set
    std::int64_t largest = 0;
    bool secret = false;  // a password: listings show it only when asked to

    [[nodiscard]] bool IsText() const { return std::holds_alternative<Text*>(value); }

    /// "byte", "short", "long" or "text".
    [[nodiscard]] std::string_view Kind() const;

    /// The value as UTF-8 text; numbers in decimal.
    [[nodiscard]] std::string Get() const;

    /// Sets the value from UTF-8 text. Returns an empty text, or the reason why the value was
    /// refused and stays as it was: a number that is none or lies outside smallest..largest.
    [[nodiscard]] std::string Set(std::string_view text) const;
};

/// Every option of one record by name, in file order: the configuration, then the user state.
/// CurrentFtpName and CurrentPresetName stand in both files and so in the list twice, with one
/// value. Who changes an option through here saves the file or files that hold it.
class SettingsTable {
  public:
    /// `record` outlives the table.
    explicit SettingsTable(SettingsRecord& record);

    [[nodiscard]] std::span<const Setting> All() const { return settings_; }

    /// The options of one file, in its order.
    [[nodiscard]] std::span<const Setting> In(SettingsFile file) const;

    /// The option of that name, its place in the configuration where there are two; null when there
    /// is none.
    [[nodiscard]] const Setting* Find(std::string_view name) const;

  private:
    std::vector<Setting> settings_;
    std::size_t configurationCount_ = 0;
};

}  // namespace orma
