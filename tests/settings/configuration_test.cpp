#include <algorithm>
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

struct Field {
    int since;  // the file's version exceeds this
    char kind;  // B byte, S short, L long, T text
    std::string name;
};

/// The fields of each of these entries of a table, one entry after the other.
std::string Each(const char* table, int first, int end, const std::string& fields) {
    std::string all;
    for (int i = first; i < end; ++i) {
        std::istringstream words(fields);
        for (std::string word; words >> word;)
            all += word.substr(0, 2) + Format("%s[%d].", table, i) + word.substr(2) + " ";
    }
    return all;
}

// The layout of a version-50 file.
std::vector<Field> MakeFields() {
    const std::string band = "S.Frequency S.Gain S.Q L.Enabled";
    const std::string access = "T.Server T.User T.Password T.Folder B.Passive ";
    std::istringstream layout(
        "-1 B.FtpPublishing B.LiveFtpAllowed T.FtpServer T.FtpUser T.FtpPassword T.FtpFolder "
        "B.FtpPassive 1 B.BwfHeader 2 T.PublishExtension 3 B.Mp2BitrateIndex B.Stereo B.RecordMp2 "
        "B.SampleRateCode 4 B.AppendPerBlock 5 T.Text5 6 B.SpdifInput 7 T.ProjectsFolder "
        "8 T.CurrentProjectName 9 L.PublishMethod T.Recipient T.Subject 10 T.SmtpServer L.SmtpAuth "
        "T.SmtpUser T.SmtpPassword 11 T.Text11a T.Text11b 12 L.RecorderConfig1 L.RecorderConfig2 "
        "14 L.ImagePublishing 15 " +
        Each("InputEq", 0, 3, band) +
        "L.RecordingFormat 16 B.RecorderConfig3 B.ShowMaxTime B.ShowBattery 17 T.Text17 "
        "18 B.SpdifInputSelect 19 T.Smtp1Server T.Smtp1User T.Smtp1Password L.Smtp1Auth "
        "B.PublishText 20 T.CurrentSmtpName 21 T.PostCreateCommand 22 T.ProjectTextFile "
        "23 L.UseProjectTextFile 24 L.OriginatorCountry L.OriginatorOrganisation L.OriginatorUser "
        "25 " +
        Each("Ftp", 0, 5, access) + Each("Ftp", 0, 5, "T.Name") + "T.CurrentFtpName 26 " +
        Each("Preset", 0, 5, Each("Band", 0, 3, band) + "L.EqOn T.Name") +
        "T.CurrentPresetName 27 B.InputOptions 28 B.GainControl S.EqGainOffset S.Short28b "
        "29 L.ResolutionShift 30 B.ServerChoice 31 B.AutoResume 32 L.StartMode "
        "33 B.PublishClipButton 34 B.MarkButtons 35 L.LandscapeSkin 36 L.Orientation "
        "B.FullBarRedraw 37 B.OneSecondCut B.DetailedView 38 B.CloseSync 39 L.DescriptionMode "
        "L.PostCreateStep L.ListDisplay 40 B.PublishToFile 41 B.VolumeControl 42 B.MicGainTool "
        "43 L.MicGainToolMode 44 B.AltEarjackKey 45 B.FastPublishing B.FastBitrateIndex "
        "46 B.Unused46 47 L.Long47 48 " +
        Each("Ftp", 5, 25, access + "T.Name") + "49 B.Unused49");
    std::vector<Field> fields;
    int since = 0;
    for (std::string word; layout >> word;) {
        if (word[1] == '.')
            fields.push_back({since, word[0], word.substr(2)});
        else
            since = std::stoi(word);
    }
    return fields;
}
const std::vector<Field>& Fields() {
    static const std::vector<Field> fields = MakeFields();
    return fields;
}

/// The field has its place in the file as its value ("t<number>" in texts).
std::uint32_t NumberOf(const std::string& name) {
    const auto field = std::ranges::find(Fields(), name, &Field::name);
    EXPECT_NE(field, Fields().end()) << name;
    if (name == "ResolutionShift") return 1;  // which is corrected when it is read
    return static_cast<std::uint32_t>(field - Fields().begin() + 1);
}
Text TextOf(const std::string& name) {
    return FormatText("t%u", NumberOf(name));
}

/// A file of `version` with a different value in every field.
Bytes NumberedFile(std::uint32_t version) {
    FieldBytes file;
    file.Tag("OSUP").L(version);
    for (const Field& field : Fields()) {
        if (std::int64_t{version} <= field.since) break;
        if (field.kind == 'T')
            file.T(TextOf(field.name));
        else
            file.Number(NumberOf(field.name), field.kind == 'B' ? 1 : field.kind == 'S' ? 2 : 4);
    }
    return file.bytes;
}

struct ConfigurationTest : testing::Test {
    test::TestFiles files;
    SettingsRecord record;
    SettingsStore store{files.services, files.folder.Path(), record};
    Text path = files.folder.Path(u"OrmaIni.sup");

    bool Load(ByteSpan bytes) {
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
    ASSERT_FALSE(Load(NumberedFile(50)));
    const SettingsTable table(record);
    for (const Field& field : Fields()) {
        const Setting* setting = table.Find(field.name);
        ASSERT_NE(setting, nullptr) << field.name;
        const std::uint32_t number = NumberOf(field.name);
        EXPECT_EQ(setting->Get(), field.kind == 'T'   ? Format("t%u", number)
                                  : field.kind == 'B' ? std::to_string(number % 256)
                                                      : std::to_string(number))
            << field.name;
    }
    EXPECT_EQ(record.Preset[4].bands[2].enabled, NumberOf("Preset[4].Band[2].Enabled"));
    EXPECT_EQ(record.Ftp[24].Password, TextOf("Ftp[24].Password"));
}

TEST_F(ConfigurationTest, OldServerFieldsFillTheAccountTables) {
    ASSERT_FALSE(Load(NumberedFile(25)));
    const FtpDestination& ftp = record.Ftp[0];
    EXPECT_EQ(ftp.Server + ftp.User + ftp.Password + ftp.Folder + ftp.Name,
              TextOf("FtpServer") + TextOf("FtpUser") + TextOf("FtpPassword") +
                  TextOf("FtpFolder") + TextOf("FtpServer"));
    EXPECT_EQ(ftp.Passive, NumberOf("FtpPassive"));
    for (std::size_t i = 0; i < 2; ++i) {
        const SmtpDestination& smtp = record.Smtp[i];
        const std::string prefix = i == 0 ? "Smtp" : "Smtp1";
        const Text server = TextOf(prefix + "Server");
        EXPECT_EQ(smtp.Server + smtp.User + smtp.Password + smtp.Name,
                  server + TextOf(prefix + "User") + TextOf(prefix + "Password") + server);
        EXPECT_EQ(smtp.Auth, NumberOf(prefix + "Auth"));
        EXPECT_EQ(smtp.Port, 25U);
    }
    EXPECT_EQ(record.Smtp[2].Name, u"");
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
    const auto offset = static_cast<std::uint16_t>(NumberOf("EqGainOffset"));
    group.S(offset).S(offset).S(offset).S(offset).S(0xFFFD);
    group.T(u"in").T(u"out").B(1);
    Bytes saved = test::ReadFileBytes(path);
    ASSERT_GT(saved.size(), before);
    saved.erase(saved.begin(), saved.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(saved, group.bytes);
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
    record.SmtpServer = u"d";
    record.SmtpPassword = u"pd";
    record.Smtp1Server = u"e";
    EXPECT_EQ(saved(), "d pd e");
    EXPECT_EQ(saved(), "d pd e");
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
    const Bytes foreign = {'O', 'S', 'U', 'S', 8, 0, 0, 0, 1};
    EXPECT_TRUE(Load(foreign));
    ASSERT_TRUE(store.SaveConfiguration());
    EXPECT_EQ(test::ReadFileBytes(path + u".old2"), foreign);
}

TEST_F(ConfigurationTest, AFileCutShortAnywhereLoadsWithZerosForTheRest) {
    const Bytes whole = NumberedFile(50);
    for (std::size_t size = 8; size < whole.size(); size += 7) {
        ASSERT_FALSE(Load(ByteSpan(whole).first(size)));
        EXPECT_EQ(record.Unused49, 0);
        EXPECT_EQ(record.Ftp[24].Name, u"");
    }
    EXPECT_EQ(record.FtpServer, TextOf("FtpServer"));
}

TEST_F(ConfigurationTest, AHostileTextCountActsLikeAShortFile) {
    FieldBytes file;
    file.Tag("OSUP").L(50).B(1).B(1).L(0xFFFFFFF0).S('x').S(0).B(1);
    ASSERT_FALSE(Load(file.bytes));
    EXPECT_EQ(record.FtpServer, u"");
    EXPECT_EQ(record.FtpPassive, 0);
}

}  // namespace
}  // namespace orma
