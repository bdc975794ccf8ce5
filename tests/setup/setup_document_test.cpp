#include "setup/setup_document.h"

#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "setup/originator_code.h"
#include "setup/settings_check.h"
#include "setup/setup_field.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

struct SetupDocumentTest : testing::Test {
    TestFiles files;

    [[nodiscard]] Text Home() const { return files.folder.Path(); }

    void Set(SetupDocument& document, const std::string& name, std::string_view value) {
        const Setting* setting = document.Find(name);
        ASSERT_NE(setting, nullptr) << name;
        EXPECT_EQ(setting->Set(value), "") << name;
    }

    /// What the editor finds at its start.
    SettingsRecord Loaded() {
        SettingsRecord record;
        SettingsStore store(files.services, Home(), record);
        (void)store.LoadUserState();
        (void)store.LoadConfiguration();
        return record;
    }

    void Store(const SettingsRecord& record) {
        SettingsRecord copy = record;
        SettingsStore store(files.services, Home(), copy);
        ASSERT_TRUE(store.SaveUserState());
        ASSERT_TRUE(store.SaveConfiguration());
    }
};

TEST_F(SetupDocumentTest, SavesWhatWasEditedAndNothingElse) {
    SettingsRecord stored;
    stored.Text17 = u"kept";
    stored.Ftp[0].Name = stored.CurrentFtpName = u"News";
    stored.Ftp[0].Server = stored.FtpServer = u"ftp.example";
    Store(stored);

    SetupDocument document(files.services, Home());
    EXPECT_FALSE(document.IsChanged());
    Set(document, "Ftp[0].Server", "other.example:2121");
    Set(document, std::string(kWindowShape), "2");
    EXPECT_TRUE(document.IsChanged());
    EXPECT_EQ(Loaded().FtpServer, u"ftp.example");
    ASSERT_TRUE(document.Save());
    EXPECT_FALSE(document.IsChanged());
    EXPECT_EQ(Loaded().Text17, u"kept");
    EXPECT_EQ(Loaded().FtpServer, u"other.example:2121") << "the account in use follows its entry";
    SetupDocument again(files.services, Home());
    EXPECT_EQ(again.Find(kWindowShape)->Get(), "2");
    EXPECT_EQ(again.Find(kWindowBig)->Get(), "1");
}

TEST_F(SetupDocumentTest, LeavesTheUserStateToTheEditorButForWhatWasEdited) {
    SetupDocument document(files.services, Home());
    Set(document, "InputOptions", "1");
    Set(document, "Preset[0].Name", "voice");
    Set(document, "CurrentPresetName", "voice");
    SettingsRecord editor;
    editor.LastName = u"talk";
    editor.InputGain = 12;
    Store(editor);
    ASSERT_TRUE(document.Save());
    EXPECT_EQ(Loaded().LastName, u"talk");
    EXPECT_EQ(Loaded().InputGain, 12);
    EXPECT_EQ(Loaded().CurrentPresetName, u"voice");
}

TEST_F(SetupDocumentTest, KeepsTheAccountInUseWhileTheListChanges) {
    SettingsRecord stored;
    stored.Ftp[0].Name = u"A";
    stored.Ftp[2].Name = stored.CurrentFtpName = u"C";  // behind a gap
    stored.Ftp[2].Server = stored.FtpServer = u"c.example";
    stored.Smtp[1].Server = u"post.example";
    stored.Smtp[2].Server = u"mail.example";
    stored.CurrentSmtpName = u"mail.example";
    Store(stored);

    SetupDocument document(files.services, Home());
    EXPECT_FALSE(document.IsChanged());
    document.Ftp().Swap(0, 1);
    document.Ftp().Add();
    Set(document, "Ftp[2].Name", "D");
    document.Ftp().Remove(1);
    document.Mail().Swap(0, 1);
    Set(document, "Smtp[0].Password", "secret");
    ASSERT_TRUE(document.Save());

    const SettingsRecord loaded = Loaded();
    EXPECT_EQ(loaded.Ftp[0].Name, u"C");
    EXPECT_EQ(loaded.Ftp[1].Name, u"D");
    EXPECT_EQ(loaded.Ftp[2].Name, u"");
    EXPECT_EQ(loaded.CurrentFtpName, u"C");
    EXPECT_EQ(loaded.FtpServer, u"c.example");
    EXPECT_EQ(loaded.Smtp[0].Server, u"mail.example");
    EXPECT_EQ(loaded.Smtp[0].Password, u"secret");
    EXPECT_EQ(loaded.Smtp[1].Server, u"post.example");
    EXPECT_EQ(loaded.CurrentSmtpName, u"mail.example");

    SetupDocument again(files.services, Home());
    again.Ftp().Remove(0);
    again.Mail().Remove(0);
    ASSERT_TRUE(again.Save());
    EXPECT_EQ(Loaded().CurrentSmtpName, u"post.example");  // there is always one in use
    EXPECT_EQ(Loaded().CurrentFtpName, u"");
    EXPECT_EQ(Loaded().FtpServer, u"");
}

TEST_F(SetupDocumentTest, LeavesAServerInUseAloneThatIsInNoEntry) {
    SettingsRecord stored;
    stored.FtpServer = u"by-hand.example";
    stored.CurrentFtpName = u"News";
    stored.Ftp[0].Name = u"News";
    stored.Ftp[0].Server = u"ftp.example";
    Store(stored);
    SetupDocument document(files.services, Home());
    EXPECT_EQ(document.Ftp().Use(), AccountList::InUse::kOther);
    Set(document, "Stereo", "1");
    ASSERT_TRUE(document.Save());
    EXPECT_EQ(Loaded().FtpServer, u"by-hand.example");
    EXPECT_EQ(Loaded().CurrentFtpName, u"News");
}

TEST_F(SetupDocumentTest, ImportsAllOrNothing) {
    SetupDocument document(files.services, Home());
    std::istringstream half(R"({"Stereo": 1, "StartMode": 77})");
    EXPECT_NE(document.Import(half), "");
    EXPECT_FALSE(document.IsChanged());
    std::istringstream whole(R"({"Stereo": 1, "SmtpServer": "mail.example", "SmtpAuth": 1})");
    EXPECT_EQ(document.Import(whole), "");
    EXPECT_EQ(document.Mail().Count(), 1U);
    EXPECT_EQ(document.Find("Smtp[0].Server")->Get(), "mail.example");
    Set(document, "Smtp[0].Password", "secret");
    EXPECT_NE(document.Export(true).find("\"SmtpPassword\": \"secret\""), std::string::npos);
    EXPECT_EQ(document.Export(false).find("secret"), std::string::npos);
}

TEST_F(SetupDocumentTest, ItsRowsOfferEachNumberOnceAndNoneThatTheSettingRefuses) {
    SetupDocument document(files.services, Home());
    for (const SetupFields page : {SetupFields::kRecording, SetupFields::kInput,
                                   SetupFields::kPublishing, SetupFields::kInterface}) {
        for (const SetupField& field : FieldsOf(page)) {
            EXPECT_EQ(field.choices.empty(), field.kind != SetupField::Kind::kChoice);
            EXPECT_TRUE(field.needs.empty() || document.Find(field.needs)) << field.setting;
            std::set<std::uint32_t> values;
            for (const SetupField::Choice& choice : field.choices) {
                EXPECT_TRUE(values.insert(choice.value).second) << field.setting;
                Set(document, std::string(field.setting), std::to_string(choice.value));
            }
        }
    }
}

struct CheckSettingsTest : testing::Test {
    SettingsRecord record;

    CheckSettingsTest() { record.ProjectsFolder = u"/tmp/"; }

    /// The settings with a fault, in alphabetical order.
    std::string Faults() {
        std::set<std::string> names;
        for (const SettingsFault& fault : CheckSettings(record)) {
            EXPECT_FALSE(fault.text.empty());
            names.insert(fault.setting);
        }
        std::string all;
        for (const std::string& name : names)
            all += (all.empty() ? "" : " ") + name;
        return all;
    }
};

TEST_F(CheckSettingsTest, FindsBitRatesThatLayerTwoDoesNotHave) {
    EXPECT_EQ(Faults(), "");
    record.Mp2BitrateIndex = 11;
    EXPECT_EQ(Faults(), "");  // not of WAV
    record.RecordMp2 = 1;
    EXPECT_EQ(Faults(), "Mp2BitrateIndex");
    record.Stereo = 1;
    EXPECT_EQ(Faults(), "");
    record.Mp2BitrateIndex = 4;
    record.FastPublishing = 1;
    record.FastBitrateIndex = 10;
    EXPECT_EQ(Faults(), "FastBitrateIndex Mp2BitrateIndex");
}

TEST_F(CheckSettingsTest, FindsAccountsThatCannotBeReachedOrToldApart) {
    record.Ftp[0].Name = u"News";
    EXPECT_EQ(Faults(), "CurrentFtpName Ftp[0].Server");  // nobody could choose it either
    record.CurrentFtpName = u"News";
    EXPECT_EQ(Faults(), "Ftp[0].Server");
    for (const char16_t* wrong :
         {u"ftp://host", u"my host", u"host/in", u"host:", u"host:0", u"host:65536", u"host:21x"}) {
        record.Ftp[0].Server = wrong;
        EXPECT_EQ(Faults(), "Ftp[0].Server") << ToUtf8(wrong);
    }
    record.Ftp[0].Server = u"host:65535";
    record.Ftp[1] = record.Ftp[0];
    record.Ftp[2].Server = u"third";
    EXPECT_EQ(Faults(), "Ftp[1].Name Ftp[2].Name");
    record.Ftp[1] = record.Ftp[2] = {};
    record.Smtp[0].Server = u"mail.example:587";
    record.Smtp[0].Port = 0;
    record.Smtp[0].Auth = 1;
    EXPECT_EQ(Faults(), "Smtp[0].Port Smtp[0].Server Smtp[0].User");
}

TEST_F(CheckSettingsTest, FindsWhatWouldBeMissedBesideTheMicrophone) {
    TempFolder folder;
    const Text file = folder.Path(u"file");
    WriteFileBytes(file, {});
    record.ProjectsFolder = folder.Path(u"not/yet");
    record.CaFile = file;
    EXPECT_EQ(Faults(), "");
    record.ProjectsFolder = file + u"/below";
    record.CaFile = folder.Path();
    record.CurrentProjectName = u"in/folder";
    record.PublishExtension = u".wav";
    record.PostCreateStep = record.UseProjectTextFile = 1;
    EXPECT_EQ(Faults(),
              "CaFile CurrentProjectName PostCreateCommand ProjectTextFile "
              "ProjectsFolder PublishExtension");
}

TEST_F(CheckSettingsTest, FindsEqualizerSetsThatCannotBeChosenOrComputed) {
    record.Preset[1].name = u"voice";
    record.Preset[2].name = u"voice";
    record.Preset[4].bands[1].enabled = 1;
    EXPECT_EQ(Faults(),
              "Preset[0].Name Preset[2].Name Preset[4].Band[1].Frequency "
              "Preset[4].Band[1].Q");
}

TEST(OriginatorCode, IsTypedAsLettersAndKeepsWhatIsNone) {
    EXPECT_EQ(CodeOf("DE"), 0x20204544U);  // "DE  " in the file
    EXPECT_EQ(CodeText(0x20204544U), "DE");
    for (const std::uint32_t code : {0U, 1U, 0x20202020U, 0x41424344U, 0xFFFFFFFFU, 0x00414243U})
        EXPECT_EQ(CodeOf(CodeText(code)), code) << code;
    for (const char* wrong : {"LONGER", " A", "\xC3\xA4", "#", "#12x", "#4294967296"})
        EXPECT_EQ(CodeOf(wrong), std::nullopt) << wrong;
}

}  // namespace
}  // namespace orma::test
