#pragma once

#include <array>
#include <cstdint>

#include "base/equalizer_set.h"
#include "base/text.h"
#include "settings/account_fields.h"

namespace orma {

// Every option is declared by one row of a field list: its name in the record, its default (texts:
// empty where none is given), its largest sensible value (signed numbers: smallest and largest) and
// its meaning. The lists make the members here, and in settings_table.cpp the table that reading,
// writing and listing follow. SINCE, EACH and ALSO rows declare no member.
#define FIELD_BYTE(name, initial, largest, meaning) std::uint8_t name = initial;
#define FIELD_SHORT(name, initial, largest, meaning) std::uint16_t name = initial;
#define FIELD_LONG(name, initial, largest, meaning) std::uint32_t name = initial;
#define FIELD_SIGNED_SHORT(name, initial, smallest, largest, meaning) std::int16_t name = initial;
#define FIELD_SIGNED_LONG(name, initial, smallest, largest, meaning) std::int32_t name = initial;
#define FIELD_TEXT(name, initial, meaning) Text name = u"" initial;
#define FIELD_SECRET(name, meaning) Text name;
#define SINCE(version)
#define EACH(array, first, end, part)
#define ALSO(name, meaning)

/// An FTP destination, chosen by its name in the publish dialog.
struct FtpDestination {
    ORMA_FTP_ACCESS
    ORMA_FTP_NAME
    ORMA_FTP_SECURITY

    /// What a list calls it.
    [[nodiscard]] const Text& ShownName() const { return Name.empty() ? Server : Name; }
};

/// A mail account, chosen by its name in the publish dialog.
struct SmtpDestination {
    ORMA_SMTP_ACCESS
    ORMA_SMTP_CONNECTION

    /// What a list calls it, and the setting that names the account in use.
    [[nodiscard]] const Text& ShownName() const { return Name.empty() ? Server : Name; }
};

/// Every option of the program: plain data, one instance, owned by the application. Loaded and
/// saved by SettingsStore, reached by name through SettingsTable. UI thread.
struct SettingsRecord {
#include "settings/configuration_fields.inc"
#include "settings/user_state_fields.inc"

    // Named as the options of the field lists are.
    // NOLINTBEGIN(readability-identifier-naming)
    std::array<EqualizerBand, 3> InputEq;  // in use until a set is chosen
    std::array<EqualizerSet, 5> Preset;
    std::array<FtpDestination, 25> Ftp;
    std::array<SmtpDestination, 5> Smtp;
    // NOLINTEND(readability-identifier-naming)
};

#undef FIELD_BYTE
#undef FIELD_SHORT
#undef FIELD_LONG
#undef FIELD_SIGNED_SHORT
#undef FIELD_SIGNED_LONG
#undef FIELD_TEXT
#undef FIELD_SECRET
#undef SINCE
#undef EACH
#undef ALSO

}  // namespace orma
