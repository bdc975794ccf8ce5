#include "stream/jstream_file.h"

#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_boxes.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kGoodOpen = JStream::kGood | JStream::kOpen;

struct JStreamFileTest : testing::Test {
    test::TempFolder folder;
    test::FaultyStorage storage;
    test::FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices services{storage, report};
    Text path = folder.Path(u"data.bin");

    JStreamFileTest() { test::WriteFileBytes(path, Bytes{1, 2, 3, 4, 5}); }

    void Fail(test::FaultyStorage::Operation operation) {
        storage.FailAt(operation, 1, test::FaultyStorage::Extent::kOnce, EIO);
    }
};

TEST_F(JStreamFileTest, ReadsShortAtTheEndWithZerosAndStaysGood) {
    JStreamFile stream(services, path, true);
    EXPECT_EQ(stream.Status(), kGoodOpen | JStream::kReading);
    EXPECT_EQ(stream.GetSize(), 5U);
    Bytes buffer(8, 0xEE);
    stream.Read(buffer.data(), 8);
    EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4, 5, 0, 0, 0}));
    EXPECT_EQ(stream.Status(), kGoodOpen | JStream::kReading | JStream::kAtEnd);
    buffer.assign(3, 0xEE);
    stream.Read(buffer.data(), 2);
    EXPECT_EQ(buffer, (Bytes{0, 0, 0xEE}));
    stream.Open(path, true);
    EXPECT_FALSE(stream.Has(JStream::kAtEnd));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(JStreamFileTest, PositionsFromTheStartAndFromWhereItIsOrBecomesInert) {
    JStreamFile stream(services, path, true);
    stream.SetPosition(3);
    stream.Skip(-2);
    std::uint8_t byte = 0;
    stream.Read(&byte, 1);
    EXPECT_EQ(byte, 2);
    EXPECT_EQ(stream.GetPosition(), 2U);
    stream.Skip(-3);
    EXPECT_FALSE(stream.Has(JStream::kGood));
    stream.Read(&byte, 1);
    EXPECT_EQ(byte, 2) << "it is inert";
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Position 22 Invalid argument"));
}

TEST_F(JStreamFileTest, PositionsBeyondTwoGibibytesAreReachedWhereTheFileHasThem) {
    constexpr std::uint32_t kFar = 0xC0000000;
    JStreamFile stream(services, path, false);
    stream.Truncate(kFar);  // a hole, no bytes on the disk
    stream.SetPosition(static_cast<std::int32_t>(kFar));
    EXPECT_EQ(stream.GetPosition(), kFar);
    stream.SetPosition(-1);
    EXPECT_FALSE(stream.Has(JStream::kGood));
}

TEST_F(JStreamFileTest, AFailureIsReportedOnceAndYieldsZeros) {
    Bytes buffer(4, 0xEE);
    const auto read = [&](JStreamFile& stream) {
        stream.Read(buffer.data(), 4);
        EXPECT_EQ(buffer, Bytes(4, 0));
    };
    const auto write = [](JStreamFile& stream) {
        stream.Write("ab", 2);
        stream.Write("cd", 2);
        stream.Close();
    };
    const std::tuple<test::FaultyStorage::Operation, bool, std::function<void(JStreamFile&)>, Text>
        cases[] = {
            {test::FaultyStorage::kRead, true, read, u"ReadFile"},
            {test::FaultyStorage::kWrite, false, write, u"WriteFile"},
            {test::FaultyStorage::kClose, false, write, u"WriteFile"},  // only the close refuses it
            {test::FaultyStorage::kSeek, true, [](auto& s) { EXPECT_EQ(s.GetPosition(), 0U); },
             u"Position"},
            {test::FaultyStorage::kLook, true, [](auto& s) { EXPECT_EQ(s.GetSize(), 0U); },
             u"GetFileSize"}};
    for (const auto& [fails, reading, use, told] : cases) {
        boxes.shown.clear();
        JStreamFile stream(services, path, reading);
        Fail(fails);
        use(stream);
        EXPECT_FALSE(stream.Has(JStream::kGood));
        EXPECT_THAT(boxes.Texts(), ElementsAre(told + u" 5 Input/output error"));
    }
}

TEST_F(JStreamFileTest, AnOpenThatFailsIsToldWithThePath) {
    const Text missing = folder.Path(u"none/data.bin");
    JStreamFile stream(services);
    stream.Open(u"", true);
    stream.Open(missing, true);
    stream.Open(missing, OpenMode{});
    stream.OpenForCreate(missing);
    EXPECT_EQ(stream.Status(), 0U);
    const Text cannotOpen = u"Cannot open file : " + missing + u" 2 No such file or directory";
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"CreateFile no filename,read2", cannotOpen,
                                           u"CreateFile 2 No such file or directory", cannotOpen));
}

TEST_F(JStreamFileTest, AnExplicitOpenReadsExactlyWhenTheAccessIsRead) {
    JStreamFile stream(services, path, OpenMode{});
    stream.Write("ignored", 7);
    EXPECT_EQ(stream.Status(), kGoodOpen | JStream::kReading);
    stream.Open(path, {Access::kReadWrite, Share::kRead, Disposition::kOpenExisting});
    EXPECT_EQ(stream.Status(), kGoodOpen);
    stream.Skip(1);
    stream.Write("Z", 1);
    stream.Truncate(3);
    stream.Close();
    EXPECT_EQ(test::ReadFileBytes(path), (Bytes{1, 'Z', 3}));
}

TEST_F(JStreamFileTest, AppendsBlocksToAFileThatIsClosedBetweenThem) {
    JStreamFile stream(services);
    stream.AppendBlock(path, "no", 2);  // nothing was opened yet
    stream.OpenForCreate(path);
    EXPECT_EQ(stream.Status(), JStream::kGood);
    EXPECT_EQ(test::ReadFileBytes(path), Bytes{});
    stream.AppendBlock(path, "ab", 2);
    EXPECT_FALSE(stream.Has(JStream::kOpen));
    stream.AppendBlock(path, "c", 1);
    EXPECT_EQ(stream.OpenForAppend(path), 3U);
    EXPECT_EQ(stream.GetPosition(), 3U);

    // Without a file nothing is told, and what follows is not appended elsewhere.
    EXPECT_EQ(stream.OpenForAppend(folder.Path(u"none/data.bin")), 0U);
    EXPECT_EQ(stream.Status(), 0U);
    stream.AppendBlock(path, "ab", 2);
    EXPECT_EQ(test::ReadFileBytes(path), (Bytes{'a', 'b', 'c'}));
    EXPECT_THAT(boxes.shown, IsEmpty());

    stream.OpenForAppend(path);
    Fail(test::FaultyStorage::kOpen);
    stream.AppendBlock(path, "ab", 2);
    EXPECT_FALSE(stream.Has(JStream::kGood));
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"WriteFile 5 Input/output error"));
}

}  // namespace
}  // namespace orma
