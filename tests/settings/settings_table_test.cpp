#include "settings/settings_table.h"

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

namespace orma {
namespace {

struct SettingsTableTest : testing::Test {
    SettingsRecord record;
    SettingsTable table{record};

    const Setting& At(std::string_view name) {
        const Setting* setting = table.Find(name);
        if (!setting) throw std::runtime_error("no setting " + std::string(name));
        return *setting;
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

TEST_F(SettingsTableTest, FindsMembersAndEntriesByName) {
    record.StartMode = 3;
    record.Ftp[3].Server = u"h\u00F6st";
    record.Preset[2].bands[1].gain = -60;
    EXPECT_EQ(At("StartMode").Get(), "3");
    EXPECT_EQ(At("Ftp[3].Server").Get(), "h\xC3\xB6st");
    EXPECT_EQ(At("Preset[2].Band[1].Gain").Get(), "-60");
    EXPECT_EQ(At("Preset[0].EqOn").Kind(), "long");
    EXPECT_EQ(At("InputEq[0].Q").Kind(), "short");
    EXPECT_EQ(At("FtpPassive").Kind(), "byte");
    EXPECT_EQ(At("CurrentFtpName").Kind(), "text");
    EXPECT_EQ(At("CurrentFtpName").file, SettingsFile::kConfiguration);
    EXPECT_EQ(At("MaycomGain").file, SettingsFile::kUserState);
    EXPECT_EQ(table.Find("Ftp[25].Server"), nullptr);
    EXPECT_EQ(table.Find("startmode"), nullptr);
}

TEST_F(SettingsTableTest, SetsValuesFromTextAndRefusesWhatIsNoNumberOfTheRange) {
    EXPECT_EQ(At("Recipient").Set("desk@h\xC3\xB6rfunk"), "");
    EXPECT_EQ(At("EqGainOffset").Set("-12"), "");
    EXPECT_EQ(At("OriginatorUser").Set("4294967295"), "");
    EXPECT_EQ(At("StartMode").Set("4"), "StartMode takes a whole number from 0 to 3, not \"4\"");
    for (const char* wrong : {"", "-1", "256", "12x", " 1", "1.5", "99999999999999999999"})
        EXPECT_NE(At("MaycomGain").Set(wrong), "") << wrong;
    EXPECT_NE(At("EqGainOffset").Set("32768"), "");
    EXPECT_NE(At("OriginatorUser").Set("4294967296"), "");
    EXPECT_EQ(record.Recipient, u"desk@h\u00F6rfunk");
    EXPECT_EQ(record.EqGainOffset, -12);
    EXPECT_EQ(record.OriginatorUser, 0xFFFFFFFFU);
    EXPECT_EQ(record.StartMode, 1U);
    EXPECT_EQ(record.MaycomGain, 192);
}

}  // namespace
}  // namespace orma
