#include "settings/settings_table.h"

#include <set>

#include <gtest/gtest.h>

namespace orma {
namespace {

struct SettingsTableTest : testing::Test {
    SettingsRecord record;
    SettingsTable table{record};

    std::string Set(std::string_view name, std::string_view value) {
        return table.Find(name)->Set(value);
    }
};

TEST_F(SettingsTableTest, NamesEveryFieldOnceInEachFile) {
    for (const SettingsFile file : {SettingsFile::kConfiguration, SettingsFile::kUserState}) {
        std::set<std::string> names;
        std::set<const void*> members;
        std::int32_t threshold = -1;
        for (const Setting& setting : table.In(file)) {
            EXPECT_TRUE(names.insert(setting.name).second) << setting.name;
            std::visit([&](const auto* member) { EXPECT_TRUE(members.insert(member).second); },
                       setting.value);
            EXPECT_GE(setting.threshold, threshold) << setting.name;
            EXPECT_EQ(setting.secret, setting.name.ends_with("Password")) << setting.name;
            threshold = setting.threshold;
        }
    }
    EXPECT_EQ(table.In(SettingsFile::kUserState).size(), 10U);
    EXPECT_EQ(table.In(SettingsFile::kConfiguration).size() + 10, table.All().size());
}

TEST_F(SettingsTableTest, SetsValuesFromTextAndRefusesWhatIsNoNumberOfTheRange) {
    EXPECT_EQ(Set("Ftp[3].Server", "h\xC3\xB6st"), "");
    EXPECT_EQ(Set("EqGainOffset", "-12"), "");
    EXPECT_EQ(Set("OriginatorUser", "4294967295"), "");
    EXPECT_EQ(Set("StartMode", "4"), "StartMode takes a whole number from 0 to 3, not \"4\"");
    for (const char* wrong : {"", "-1", "256", "12x", " 1", "1.5", "99999999999999999999"})
        EXPECT_NE(Set("MaycomGain", wrong), "") << wrong;
    EXPECT_NE(Set("EqGainOffset", "32768"), "");
    EXPECT_NE(Set("OriginatorUser", "4294967296"), "");
    EXPECT_EQ(record.Ftp[3].Server, u"h\u00F6st");
    EXPECT_EQ(table.Find("Ftp[3].Server")->Get(), "h\xC3\xB6st");
    EXPECT_EQ(table.Find("EqGainOffset")->Get(), "-12");
    EXPECT_EQ(record.OriginatorUser, 0xFFFFFFFFU);
    EXPECT_EQ(record.StartMode, 1U);
    EXPECT_EQ(record.MaycomGain, 192);
    EXPECT_EQ(table.Find("Ftp[25].Server"), nullptr);
    EXPECT_EQ(table.Find("startmode"), nullptr);
}

}  // namespace
}  // namespace orma
