// The rows of the set-up program against the settings themselves.

#include "setup/setup_field.h"

#include <set>

#include <gtest/gtest.h>

#include "setup/setup_document.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

/// What no row shows: it has no behaviour, is not the operator's, or is kept true by the pages of
/// accounts and sets.
bool IsShownByNoRow(const std::string& name) {
    static const std::set<std::string> kNames = {
        // without effect, carried unchanged
        "Text5", "Text11a", "Text11b", "Text17", "Short28b", "Unused46", "Long47", "Unused49",
        // the account in use and the places of mail accounts 0 and 1
        "FtpServer", "FtpUser", "FtpPassword", "FtpFolder", "FtpPassive", "CurrentFtpName",
        "SmtpServer", "SmtpUser", "SmtpPassword", "SmtpAuth", "CurrentSmtpName", "Smtp1Server",
        "Smtp1User", "Smtp1Password", "Smtp1Auth",
        // of files before version 51
        "EqGainOffset"};
    // The initial bands belong to an equaliser that is off.
    return kNames.contains(name) || name.starts_with("InputEq[");
}

void AddRows(std::set<std::string>& names, SetupFields rows, const std::string& prefix) {
    for (const SetupField& field : FieldsOf(rows))
        EXPECT_TRUE(names.insert(prefix + std::string(field.setting)).second) << field.setting;
}

std::set<std::string> AllRows(const SettingsRecord& record) {
    std::set<std::string> names;
    for (const SetupFields page : {SetupFields::kRecording, SetupFields::kInput,
                                   SetupFields::kPublishing, SetupFields::kInterface})
        AddRows(names, page, "");
    const auto entry = [](const char* table, std::size_t i) {
        return table + ("[" + std::to_string(i)) + "].";
    };
    for (std::size_t i = 0; i < record.Ftp.size(); ++i)
        AddRows(names, SetupFields::kFtpAccount, entry("Ftp", i));
    for (std::size_t i = 0; i < record.Smtp.size(); ++i)
        AddRows(names, SetupFields::kMailAccount, entry("Smtp", i));
    for (std::size_t i = 0; i < record.Preset.size(); ++i) {
        AddRows(names, SetupFields::kEqualizerSet, entry("Preset", i));
        for (std::size_t band = 0; band < 3; ++band)
            AddRows(names, SetupFields::kBand, entry("Preset", i) + entry("Band", band));
    }
    return names;
}

TEST(SetupFields, ShowEveryOptionOfTheConfigurationOrStateWhyNot) {
    TestFiles files;
    SetupDocument document(files.services, files.folder.Path());
    const std::set<std::string> rows = AllRows(document.Record());
    SettingsRecord record;
    const SettingsTable table(record);
    for (const Setting& setting : table.In(SettingsFile::kConfiguration))
        EXPECT_NE(rows.contains(setting.name), IsShownByNoRow(setting.name)) << setting.name;
    for (const std::string& name : rows)
        EXPECT_NE(document.Find(name), nullptr) << name;
    for (const SetupFields group : {SetupFields::kRecording, SetupFields::kPublishing})
        for (const SetupField& field : FieldsOf(group))
            EXPECT_TRUE(field.needs.empty() || rows.contains(std::string(field.needs)));
}

TEST(SetupFields, OfferEachNumberOnceAndNoneThatTheSettingRefuses) {
    TestFiles files;
    SetupDocument document(files.services, files.folder.Path());
    for (const SetupFields page :
         {SetupFields::kRecording, SetupFields::kPublishing, SetupFields::kInterface}) {
        for (const SetupField& field : FieldsOf(page)) {
            EXPECT_EQ(field.choices.empty(), field.kind != SetupField::Kind::kChoice);
            std::set<std::uint32_t> values;
            const Setting& setting = *document.Find(field.setting);
            for (const SetupField::Choice& choice : field.choices) {
                EXPECT_TRUE(values.insert(choice.value).second) << field.setting;
                EXPECT_EQ(setting.Set(std::to_string(choice.value)), "") << field.setting;
            }
        }
    }
}

}  // namespace
}  // namespace orma::test
