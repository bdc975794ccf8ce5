#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace orma {

/// Names of the two options that stand in no settings file but in "size.txt"; see WindowShape.
inline constexpr std::string_view kWindowShape = "size.txt/Landscape";
inline constexpr std::string_view kWindowBig = "size.txt/Big";

/// What the set-up program shows about one setting. The form of a page is built from these rows
/// alone: another setting is another row.
struct SetupField {
    enum class Kind {
        kCheck,   // 0 or 1
        kNumber,  // whole
        kTenths,  // a number in tenths, shown with one decimal
        kChoice,  // one of `choices`
        kText,
        kPassword,
        kFolder,
        kFile,
        kCode,  // four bytes, typed as letters
        kInputDevice,
        kOutputDevice,
        kSetName,  // of an equaliser set
    };
    struct Choice {
        std::uint32_t value;
        const char* label;
    };

    std::string_view setting;  // its name; in the rows of an entry: behind the entry's prefix
    Kind kind;
    const char* label;
    const char* explanation = "";
    std::span<const Choice> choices = {};
    const char* unit = "";        // behind a number
    const char* heading = "";     // over the field; begins a part of the page
    std::string_view needs = "";  // a check above it without which it has no effect
};

/// The rows of a page, or of one entry of a table.
enum class SetupFields {
    kRecording,
    kInput,
    kPublishing,
    kInterface,
    kFtpAccount,    // of Ftp[n]
    kMailAccount,   // of Smtp[n]
    kEqualizerSet,  // of Preset[n]
    kBand,          // of Preset[n].Band[m]
};

[[nodiscard]] std::span<const SetupField> FieldsOf(SetupFields rows);

}  // namespace orma
