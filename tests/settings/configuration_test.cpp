#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"
#include "settings/field_bytes.h"
#include "settings/settings_store.h"
#include "support/test_files.h"

namespace orma {
namespace {

using test::FieldBytes;

struct Group {
    int threshold;
    std::string kinds;  // B byte, S short, L long, T text
};

std::string Times(int count, const std::string& kinds) {
    std::string out;
    for (int i = 0; i < count; ++i)
        out += kinds;
    return out;
}

// The layout of a version-50 file.
std::vector<Group> MakeGroups() {
    const std::string bands = Times(3, "SSSL");
    std::istringstream layout(
        "-1 BBTTTTB 1 B 2 T 3 BBBB 4 B 5 T 6 B 7 T 8 T 9 LTT 10 TLTT 11 TT 12 LL 14 L 15 " + bands +
        "L 16 BBB 17 T 18 B 19 TTTLB 20 T 21 T 22 T 23 L 24 LLL 25 " + Times(5, "TTTTB") +
        "TTTTTT 26 " + Times(5, bands + "LT") +
        "T 27 B 28 BSS 29 L 30 B 31 B 32 L 33 B 34 B 35 L 36 LB 37 BB 38 B 39 LLL 40 B 41 B 42 B "
        "43 L 44 B 45 BB 46 B 47 L 48 " +
        Times(20, "TTTTBT") + " 49 B");
    std::vector<Group> groups;
    for (Group group; layout >> group.threshold >> group.kinds;)
        groups.push_back(group);
    return groups;
}
const std::vector<Group>& Groups() {
    static const std::vector<Group> groups = MakeGroups();
    return groups;
}

/// The field of that place in a group has this number as its value ("t<number>" in texts).
std::uint32_t NumberOf(int threshold, std::size_t place) {
    std::size_t number = 1;
    for (const Group& group : Groups()) {
        if (group.threshold == threshold) return static_cast<std::uint32_t>(number + place);
        number += group.kinds.size();
    }
    ADD_FAILURE() << "no group " << threshold;
    return 0;
}
Text T(int threshold, std::size_t place) {
    return FormatText("t%u", NumberOf(threshold, place));
}
std::uint8_t B(int threshold, std::size_t place) {
    return static_cast<std::uint8_t>(NumberOf(threshold, place));
}

/// A file of `version` with a different value in every field.
Bytes NumberedFile(std::uint32_t version) {
    FieldBytes file;
    file.Tag("OSUP").L(version);
    for (const Group& group : Groups()) {
        if (std::int64_t{version} <= group.threshold) break;
        for (std::size_t i = 0; i < group.kinds.size(); ++i) {
            // The one field that is corrected when it is read.
            const std::uint32_t number = group.threshold == 29 ? 1 : NumberOf(group.threshold, i);
            if (const char kind = group.kinds[i]; kind == 'T')
                file.T(FormatText("t%u", number));
            else
                file.Number(number, kind == 'B' ? 1 : kind == 'S' ? 2 : 4);
        }
    }
    return file.bytes;
}

struct ConfigurationTest : testing::Test {
    test::TestFiles files;
    SettingsRecord record;
    SettingsStore store{files.services, files.folder.Path(), record};
    Text path = files.folder.Path(u"OrmaIni.sup");

    bool Load(const Bytes& bytes) {
        test::WriteFileBytes(path, bytes);
        return store.LoadConfiguration();
    }
};

TEST_F(ConfigurationTest, EveryOldVersionIsReadToItsLastFieldAndNotBeyond) {
    for (std::uint32_t version = 0; version <= 50; ++version) {
        SCOPED_TRACE(version);
        const Bytes file = NumberedFile(version);
        test::WriteFileBytes(path, file);
        SettingsRecord fresh;
        SettingsStore old(files.services, files.folder.Path(), fresh);
        test::TraceLines trace;
        ASSERT_FALSE(old.LoadConfiguration());
        EXPECT_THAT(trace.lines, testing::IsEmpty());  // a read past the end traces "EOF"
        ASSERT_TRUE(old.SaveConfiguration());
        const Bytes saved = test::ReadFileBytes(path);
        ASSERT_GE(saved.size(), file.size());
        EXPECT_EQ(LoadLe<std::uint32_t>(saved.data() + 4), 51U);
        EXPECT_TRUE(std::equal(file.begin() + 8, file.end(), saved.begin() + 8));
    }
}

TEST_F(ConfigurationTest, FieldsReachTheirMembers) {
    // Name, threshold and place in its group.
    std::istringstream fields(
        "FtpPublishing -1 0 LiveFtpAllowed -1 1 FtpServer -1 2 FtpUser -1 3 "
        "FtpPassword -1 4 FtpFolder -1 5 FtpPassive -1 6 BwfHeader 1 0 PublishExtension 2 0 "
        "Mp2BitrateIndex 3 0 Stereo 3 1 RecordMp2 3 2 SampleRateCode 3 3 AppendPerBlock 4 0 "
        "SpdifInput 6 0 ProjectsFolder 7 0 CurrentProjectName 8 0 PublishMethod 9 0 "
        "Recipient 9 1 Subject 9 2 SmtpServer 10 0 SmtpAuth 10 1 SmtpUser 10 2 "
        "SmtpPassword 10 3 RecorderConfig2 12 1 ImagePublishing 14 0 "
        "InputEq[1].Frequency 15 4 InputEq[1].Gain 15 5 InputEq[2].Q 15 10 "
        "InputEq[2].Enabled 15 11 RecordingFormat 15 12 ShowBattery 16 2 Smtp1Server 19 0 "
        "Smtp1User 19 1 Smtp1Password 19 2 Smtp1Auth 19 3 PublishText 19 4 "
        "CurrentSmtpName 20 0 PostCreateCommand 21 0 ProjectTextFile 22 0 "
        "UseProjectTextFile 23 0 OriginatorUser 24 2 Ftp[0].Server 25 0 Ftp[4].Folder 25 23 "
        "Ftp[4].Passive 25 24 Ftp[0].Name 25 25 Ftp[4].Name 25 29 CurrentFtpName 25 30 "
        "Preset[4].Band[2].Enabled 26 67 Preset[4].EqOn 26 68 Preset[3].Name 26 55 "
        "CurrentPresetName 26 70 InputOptions 27 0 GainControl 28 0 EqGainOffset 28 1 "
        "ServerChoice 30 0 AutoResume 31 0 StartMode 32 0 PublishClipButton 33 0 "
        "MarkButtons 34 0 LandscapeSkin 35 0 Orientation 36 0 FullBarRedraw 36 1 "
        "OneSecondCut 37 0 DetailedView 37 1 CloseSync 38 0 DescriptionMode 39 0 "
        "PostCreateStep 39 1 ListDisplay 39 2 PublishToFile 40 0 VolumeControl 41 0 "
        "MicGainTool 42 0 MicGainToolMode 43 0 AltEarjackKey 44 0 FastPublishing 45 0 "
        "FastBitrateIndex 45 1 Ftp[5].Server 48 0 Ftp[5].Name 48 5 Ftp[24].Password 48 116 "
        "Ftp[24].Name 48 119 Unused49 49 0");
    ASSERT_FALSE(Load(NumberedFile(50)));
    const SettingsTable table(record);
    int threshold = 0;
    std::size_t place = 0;
    for (std::string name; fields >> name >> threshold >> place;) {
        const Setting* setting = table.Find(name);
        ASSERT_NE(setting, nullptr) << name;
        const std::uint32_t number = NumberOf(threshold, place);
        const std::string expected = setting->IsText()           ? Format("t%u", number)
                                     : setting->Kind() == "byte" ? std::to_string(number % 256)
                                                                 : std::to_string(number);
        EXPECT_EQ(setting->Get(), expected) << name;
    }
    EXPECT_TRUE(fields.eof());
    EXPECT_EQ(record.ResolutionShift, 1U);
    EXPECT_EQ(record.Preset[4].bands[2].enabled, NumberOf(26, 67));
    EXPECT_EQ(record.Ftp[24].Password, T(48, 116));
}

TEST_F(ConfigurationTest, OldServerFieldsFillTheAccountTables) {
    ASSERT_FALSE(Load(NumberedFile(25)));
    const FtpDestination& ftp = record.Ftp[0];
    EXPECT_EQ(ftp.Server + ftp.User + ftp.Password + ftp.Folder + ftp.Name,
              T(-1, 2) + T(-1, 3) + T(-1, 4) + T(-1, 5) + T(-1, 2));
    EXPECT_EQ(ftp.Passive, B(-1, 6));
    const SmtpDestination& first = record.Smtp[0];
    EXPECT_EQ(first.Server + first.User + first.Password + first.Name,
              T(10, 0) + T(10, 2) + T(10, 3) + T(10, 0));
    EXPECT_EQ(first.Auth, NumberOf(10, 1));
    EXPECT_EQ(first.Port, 25U);
    const SmtpDestination& second = record.Smtp[1];
    EXPECT_EQ(second.Server + second.User + second.Password + second.Name,
              T(19, 0) + T(19, 1) + T(19, 2) + T(19, 0));
    EXPECT_EQ(second.Auth, NumberOf(19, 3));
    EXPECT_EQ(record.Smtp[2].Name, u"");
}

TEST_F(ConfigurationTest, AnEmptyFileOfVersion50Has966Bytes) {
    ASSERT_TRUE(store.LoadConfiguration());
    record.ProjectsFolder.clear();
    record.CurrentProjectName.clear();
    record.PublishExtension.clear();
    ASSERT_TRUE(store.SaveConfiguration());
    // The appended group: 3 x 16 and 5 x 12 of mail accounts, 25 x 4 of destinations, 4 of the
    // authorities, 5 x 2 of gain offsets, 2 x 4 of devices, 1 of new projects.
    EXPECT_EQ(test::ReadFileBytes(path).size(), 966U + 48 + 60 + 100 + 4 + 10 + 8 + 1);
}

TEST_F(ConfigurationTest, TheAppendedGroupStandsBehindEverythingElse) {
    ASSERT_FALSE(Load(NumberedFile(50)));
    const std::size_t before = test::ReadFileBytes(path).size();
    record.Smtp[2] = {u"s", u"u", u"p", 1, u"n", 587, 1};
    record.Smtp[4].Security = 2;
    record.Ftp[24].Security = 2;
    record.CaFile = u"ca";
    record.Preset[4].gainOffset = -3;
    record.AudioInputDevice = u"in";
    record.AudioOutputDevice = u"out";
    record.LiveFtpNewProjects = 1;
    ASSERT_TRUE(store.SaveConfiguration());
    FieldBytes group;
    group.T(u"s").T(u"u").T(u"p").L(1);
    for (int i = 3; i < 5; ++i)
        group.T(u"").T(u"").T(u"").L(0);
    // The first two names were lent by their servers and are not stored.
    group.T(u"").L(25).L(0).T(u"").L(25).L(0).T(u"n").L(587).L(1);
    group.T(u"").L(25).L(0).T(u"").L(25).L(2);
    for (int i = 0; i < 24; ++i)
        group.L(0);
    group.L(2).T(u"ca");
    // The one offset of older files serves every set.
    const auto offset = static_cast<std::uint16_t>(NumberOf(28, 1));
    group.S(offset).S(offset).S(offset).S(offset).S(0xFFFD);
    group.T(u"in").T(u"out").B(1);
    const Bytes saved = test::ReadFileBytes(path);
    ASSERT_GT(saved.size(), before);
    EXPECT_EQ(Bytes(saved.begin() + static_cast<std::ptrdiff_t>(before), saved.end()), group.bytes);

    SettingsRecord again;
    ASSERT_FALSE(SettingsStore(files.services, files.folder.Path(), again).LoadConfiguration());
    EXPECT_EQ(again.Smtp[2].Port, 587U);
    EXPECT_EQ(again.Preset[4].gainOffset, -3);
    EXPECT_EQ(again.LiveFtpNewProjects, 1);
}

TEST_F(ConfigurationTest, AnAccountWithoutANameFollowsItsServer) {
    record.Smtp1Server = u"old.example";
    ASSERT_TRUE(store.SaveConfiguration());
    ASSERT_FALSE(store.LoadConfiguration());
    EXPECT_EQ(record.Smtp[1].Name, u"old.example");
    record.Smtp1Server = u"new.example";
    ASSERT_TRUE(store.SaveConfiguration());
    ASSERT_FALSE(store.LoadConfiguration());
    EXPECT_EQ(record.Smtp[1].Name, u"new.example");
}

TEST_F(ConfigurationTest, AnAccountBroughtIntoUseDoesNotReplaceAccount0AndNoEditIsLost) {
    const auto saved = [&] {
        EXPECT_TRUE(store.SaveConfiguration());
        SettingsRecord again;
        EXPECT_FALSE(SettingsStore(files.services, files.folder.Path(), again).LoadConfiguration());
        return ToUtf8(again.Smtp[0].Server + u" " + again.Smtp[0].Password + u" " +
                      again.Smtp[1].Server);
    };
    record.SmtpServer = u"a";
    record.SmtpPassword = u"pa";
    record.Smtp1Server = u"b";
    EXPECT_EQ(saved(), "a pa b");
    ASSERT_FALSE(store.LoadConfiguration());
    record.CurrentSmtpName = record.SmtpServer = u"b";  // as a dialog does
    record.SmtpPassword.clear();
    EXPECT_EQ(saved(), "a pa b");
    EXPECT_EQ(record.SmtpServer, u"b") << "it stays in use";
    record.Smtp[0].Password = u"new";
    record.Smtp[1].Server = u"c";
    EXPECT_EQ(saved(), "a new c");
    EXPECT_EQ(saved(), "a new c");
    record.SmtpServer = u"d";
    record.SmtpPassword = u"pd";
    record.Smtp1Server = u"e";
    EXPECT_EQ(saved(), "d pd e");
    EXPECT_EQ(saved(), "d pd e");
}

TEST_F(ConfigurationTest, InVersionTwoTheHeaderOptionDecidesTheExtension) {
    Bytes file = NumberedFile(2);
    file.back() = 1;
    ASSERT_FALSE(Load(file));
    EXPECT_EQ(record.PublishExtension, u"wav");
    file.back() = 0;
    ASSERT_FALSE(Load(file));
    EXPECT_EQ(record.PublishExtension, u"mp2");
    file[4] = 1;
    record.PublishExtension = u"kept";
    ASSERT_FALSE(Load(file));
    EXPECT_EQ(record.PublishExtension, u"kept");
}

TEST_F(ConfigurationTest, ANewerFileIsReadUpToWhatIsKnownAndKeptBesideTheNextOne) {
    record.FtpServer = u"host";
    record.ResolutionShift = 3;  // unknown: reads as two
    ASSERT_TRUE(store.SaveConfiguration());
    Bytes newer = test::ReadFileBytes(path);
    newer[4] = 52;
    newer.push_back(99);
    record.FtpServer.clear();
    ASSERT_FALSE(Load(newer));
    EXPECT_EQ(record.FtpServer, u"host");
    EXPECT_EQ(record.ResolutionShift, 2U);
    ASSERT_TRUE(store.SaveConfiguration());
    EXPECT_EQ(test::ReadFileBytes(path)[4], 51);
    EXPECT_EQ(test::ReadFileBytes(path + u".old1"), newer);
}

TEST_F(ConfigurationTest, MissingAndForeignFilesLeaveTheRecordAsItWas) {
    EXPECT_TRUE(store.LoadConfiguration());
    for (const std::string_view foreign : {"", "OSU", "OSUSxxxxyyyyyyyyyyyyyyyy"}) {
        const ByteSpan bytes = AsBytes(foreign);
        EXPECT_TRUE(Load(Bytes(bytes.begin(), bytes.end())));
    }
    EXPECT_EQ(record.FtpPublishing, 1);
    EXPECT_EQ(record.CurrentProjectName, u"default");
    EXPECT_EQ(record.ProjectsFolder, files.folder.Path());
    EXPECT_THAT(files.boxes.shown, testing::IsEmpty());
}

TEST_F(ConfigurationTest, AFileCutShortAnywhereLoadsWithZerosForTheRest) {
    const Bytes whole = NumberedFile(50);
    for (std::size_t size = 8; size < whole.size(); size += 7) {
        ASSERT_FALSE(Load(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))));
        EXPECT_EQ(record.Unused49, 0);
        EXPECT_EQ(record.Ftp[24].Name, u"");
    }
    EXPECT_EQ(record.FtpServer, T(-1, 2));
}

TEST_F(ConfigurationTest, AHostileTextCountActsLikeAShortFile) {
    FieldBytes file;
    file.Tag("OSUP").L(50).B(1).B(1).L(0xFFFFFFF0).S('x').S(0).B(1);
    ASSERT_FALSE(Load(file.bytes));
    EXPECT_EQ(record.FtpPublishing, 1);
    EXPECT_EQ(record.FtpServer, u"");
    EXPECT_EQ(record.FtpPassive, 0);
    EXPECT_EQ(record.StartMode, 0U);
}

}  // namespace
}  // namespace orma
