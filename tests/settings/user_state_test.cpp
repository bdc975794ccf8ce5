#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/field_bytes.h"
#include "settings/settings_store.h"
#include "support/fake_boxes.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

using test::FieldBytes;

/// A file of every field, cut behind those that `version` knows.
Bytes StateFile(std::uint32_t version) {
    FieldBytes file;
    file.Tag("OSUS").L(version);
    if (version > 0) file.B(10).B(11);
    if (version > 1) file.T(u"state-ftp");
    if (version > 2) file.T(u"state-preset");
    if (version > 3) file.L(7);
    if (version > 4) file.T(u"images");
    if (version > 5) file.T(u"/last/").T(u"name");
    if (version > 6) file.B(1);
    if (version > 7) file.L(15);
    return file.bytes;
}

struct UserStateTest : testing::Test {
    test::TempFolder folder;
    test::FaultyStorage storage;
    test::FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices services{storage, report};
    SettingsRecord record;
    SettingsStore store{services, folder.Path(), record};
    Text path = folder.Path(u"OrmaSet.sup");

    bool Load(const Bytes& bytes) {
        test::WriteFileBytes(path, bytes);
        return store.LoadUserState();
    }
};

TEST_F(UserStateTest, IsWrittenWholeAsVersionEightAndReadToWhatAFileHolds) {
    ASSERT_FALSE(Load(StateFile(5)));
    EXPECT_EQ(record.InputGain, 7);
    EXPECT_EQ(record.ImageFolder, u"images");
    EXPECT_EQ(record.LastFolder, u"");
    EXPECT_EQ(record.OutputVolumeStep, 20);
    ASSERT_FALSE(Load(StateFile(8)));
    record.CurrentFtpName = u"state-ftp";
    record.CurrentPresetName = u"state-preset";
    ASSERT_TRUE(store.SaveUserState());
    EXPECT_EQ(test::ReadFileBytes(path), StateFile(8));
    record.InputGain = record.OutputVolumeStep = -1;  // 0xFFFFFFFF in the file
    ASSERT_TRUE(store.SaveUserState());
    ASSERT_FALSE(store.LoadUserState());
    EXPECT_EQ(record.InputGain, 0);
    EXPECT_EQ(record.OutputVolumeStep, 0);
}

TEST_F(UserStateTest, ItsNamesCountInFewVersionsOrWithInputOptionsAlsoAfterTheConfiguration) {
    for (const bool inputOptions : {false, true}) {
        SettingsRecord other;
        other.CurrentFtpName = u"ini-ftp";
        other.CurrentPresetName = u"ini-preset";
        other.InputOptions = inputOptions;
        ASSERT_TRUE(SettingsStore(services, folder.Path(), other).SaveConfiguration());
        for (const std::uint32_t version : {1U, 2U, 3U, 4U, 8U}) {
            SCOPED_TRACE(version);
            record = {};
            const bool ftpCounts = version == 2 || version == 3;
            const bool presetCounts = inputOptions && version > 2;
            ASSERT_FALSE(Load(StateFile(version)));
            EXPECT_EQ(record.CurrentFtpName, ftpCounts ? u"state-ftp" : u"");
            EXPECT_EQ(record.CurrentPresetName, u"");
            ASSERT_FALSE(store.LoadConfiguration());
            EXPECT_EQ(record.CurrentFtpName, ftpCounts ? u"state-ftp" : u"ini-ftp");
            EXPECT_EQ(record.CurrentPresetName, presetCounts ? u"state-preset" : u"ini-preset");
        }
    }
}

TEST_F(UserStateTest, AReadErrorLeavesTheRecordAndAFailedSaveTheOldFile) {
    const Bytes old = StateFile(8);
    record.MaycomGain = 55;
    storage.FailAt(test::FaultyStorage::kRead, 2);
    EXPECT_TRUE(Load(old));
    EXPECT_EQ(record.MaycomGain, 55);
    EXPECT_EQ(record.LastFolder, u"");
    for (const unsigned step :
         {test::FaultyStorage::kWrite, test::FaultyStorage::kFlush, test::FaultyStorage::kRename}) {
        storage.FailAt(step, 1);
        EXPECT_FALSE(store.SaveUserState());
        EXPECT_EQ(test::ReadFileBytes(path), old);
    }
    EXPECT_EQ(boxes.shown.size(), 4U);
    storage.FailAt(0, 0);
    // The record lacks what the file holds: it must not take the file's place for good.
    ASSERT_TRUE(store.SaveUserState());
    EXPECT_EQ(test::ReadFileBytes(path + u".old1"), old);
    ASSERT_TRUE(store.SaveUserState());
    EXPECT_FALSE(storage.Exists(path + u".old2"));
}

TEST_F(UserStateTest, AForeignFileInItsPlaceIsKeptUnderAFreeName) {
    const Bytes foreign = {'d', 'i', 'a', 'r', 'y'};
    test::WriteFileBytes(path + u".old1", Bytes{1});
    EXPECT_TRUE(Load(foreign));
    ASSERT_TRUE(store.SaveUserState());
    EXPECT_EQ(test::ReadFileBytes(path + u".old2"), foreign);
    EXPECT_EQ(test::ReadFileBytes(path + u".old1"), Bytes{1});
    ASSERT_TRUE(store.SaveUserState());
    EXPECT_FALSE(storage.Exists(path + u".old3"));
    EXPECT_FALSE(store.LoadUserState());
}

}  // namespace
}  // namespace orma
