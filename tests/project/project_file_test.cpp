#include "project/project_file.h"

#include <gtest/gtest.h>

#include "settings/field_bytes.h"
#include "support/test_files.h"

namespace orma {
namespace {

using test::FieldBytes;

/// "JOPR" and the words behind it.
FieldBytes Head(std::initializer_list<std::uint32_t> words) {
    FieldBytes file;
    file.Tag("JOPR");
    for (const std::uint32_t word : words)
        file.L(word);
    return file;
}

// The upper halves of IEEE doubles whose lower 32 bits are 0.
constexpr std::uint32_t kOnePointFive = 0x3FF80000;
constexpr std::uint32_t kMinusTwo = 0xC0000000;
constexpr std::uint32_t kHalf = 0x3FE00000;

/// A file of the layout of a version with one clip, and a value in every field that the version
/// `filled` has; the others are at their defaults.
Bytes FileOf(std::uint32_t version, std::uint32_t filled) {
    const auto value = [filled](std::uint32_t since, std::uint32_t number,
                                std::uint32_t other = 0) {
        return filled >= since ? number : other;
    };
    const auto text = [filled](std::uint32_t since, TextView words) {
        return filled >= since ? words : TextView();
    };
    FieldBytes file = Head({version, 0x10001, 3, 7, 1}).T(u"talk07").T(u"C:\\talks\\");
    if (version >= 5) file.L(value(5, 20)).L(value(5, 60)).L(value(5, 0xCAFE)).T(text(5, u"Intro"));
    file.T(u"Notes");
    if (version >= 4) file.L(value(4, 11)).T(text(4, u"m1")).T(u"");
    if (version >= 6) file.L(value(6, 2));
    if (version >= 9) {
        file.L(value(9, 12));
        for (const std::uint32_t upper : {kOnePointFive, kMinusTwo, kHalf})
            file.L(0).L(value(9, upper));
        file.L(value(9, 13));
    }
    if (version >= 10) file.L(value(10, 0, 0xFFFFFFFF));
    return file.bytes;
}

TEST(ProjectFile, ReadsTheFieldsThatEachVersionHasAndWritesThoseOfVersion10) {
    for (const std::uint32_t version : {1U, 3U, 4U, 5U, 6U, 8U, 9U, 10U}) {
        SCOPED_TRACE(version);
        Bytes file = FileOf(version, version);
        file[7] = 0xAB;  // above the 12 bits of the version
        ProjectRecord record;
        ASSERT_EQ(DecodeProjectFile(file, record), ProjectReadResult::kOk);
        EXPECT_EQ(record.version, version);
        EXPECT_EQ(EncodeProjectFile(record), FileOf(10, version));
        EXPECT_EQ(record.recordingIndex, 7);
        EXPECT_EQ(record.clips.at(0).name, u"talk07");
        EXPECT_EQ(record.clips.at(0).end, version >= 5 ? 60U : 0U);
        EXPECT_EQ(record.publishingValue, version >= 4 ? 11U : 0U);
        EXPECT_EQ(record.audioLayout, version >= 6 ? 2U : 0U);
        EXPECT_EQ(record.stream2to4[1], version >= 9 ? -2.0 : 0.0);
        EXPECT_EQ(record.currentClip, version >= 10 ? 0 : -1);
    }
    const FieldBytes longText = Head({4, 0, 0, 0, 0}).T(u"").L(0).T(Text(300, u'a')).T(u"b");
    ProjectRecord record;
    ASSERT_EQ(DecodeProjectFile(longText.bytes, record), ProjectReadResult::kOk);
    EXPECT_EQ(record.metadata1, Text(263, u'a'));
    EXPECT_EQ(record.metadata2, u"b");
    const Bytes limited = EncodeProjectFile(record);
    record.metadata1 += u"a";
    EXPECT_EQ(EncodeProjectFile(record), limited);
}

TEST(ProjectFile, RefusesForeignAndNewerFilesAndLeavesTheRecordAlone) {
    test::TestFiles files;
    ProjectRecord record;
    record.text = u"before";
    const Text path = files.folder.Path(u"x.opr");
    const auto read = [&] { return ReadProjectFile(files.services, path, record); };
    EXPECT_EQ(read(), ProjectReadResult::kNotOpened);
    EXPECT_EQ(files.boxes.shown.size(), 1U);
    Bytes foreign = FileOf(10, 10);
    foreign[0] = 'X';
    for (const Bytes& bytes : {foreign, Bytes{}, Bytes{'J', 'O', 'P'}}) {
        test::WriteFileBytes(path, bytes);
        EXPECT_EQ(read(), ProjectReadResult::kWrongMagic);
    }
    test::WriteFileBytes(path, FileOf(11, 11));
    EXPECT_EQ(read(), ProjectReadResult::kWrongVersion);
    EXPECT_EQ(record.text, u"before");
    EXPECT_EQ(files.boxes.shown.size(), 1U);
}

TEST(ProjectFile, ReadsWhatAShortFileLacksAsZeros) {
    const Bytes whole = FileOf(10, 10);
    for (std::size_t size = 4; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        ProjectRecord record;
        ASSERT_EQ(DecodeProjectFile(ByteSpan(whole).first(size), record), ProjectReadResult::kOk);
        EXPECT_EQ(record.recordingIndex, size > 16 ? 7 : 0);
        EXPECT_LE(record.clips.size(), 1U);
        EXPECT_EQ(record.currentClip, size < 5 ? -1 : 0);
    }
}

TEST(ProjectFile, TakesNoMemoryForCountsThatTheFileCannotHold) {
    for (const std::uint32_t count : {0xFFFFFFFFU, 0x7FFFFFFFU, 1000U}) {
        SCOPED_TRACE(count);
        ProjectRecord record;
        const FieldBytes clips = Head({10, 0, 0, 0, count}).T(u"a").T(u"");
        ASSERT_EQ(DecodeProjectFile(clips.bytes, record), ProjectReadResult::kOk);
        EXPECT_EQ(record.clips.size(), 1U);
        EXPECT_LE(record.clips.capacity(), 2U);

        const FieldBytes text = Head({10, 0, 0, 0, 0, count, 0x00410041, 77, 77});
        ASSERT_EQ(DecodeProjectFile(text.bytes, record), ProjectReadResult::kOk);
        EXPECT_EQ(record.text, u"");
        EXPECT_EQ(record.publishingValue, 0U);  // nothing is read behind the broken text
    }
}

}  // namespace
}  // namespace orma
