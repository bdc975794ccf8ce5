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

/// A file of a given version word with one clip and every field that the version has.
Bytes FileOfVersion(std::uint32_t versionWord) {
    const std::uint32_t version = versionWord & 0xFFF;
    FieldBytes file = Head({versionWord, 0x10001, 3, 7, 1}).T(u"talk07").T(u"C:\\talks\\");
    if (version >= 5) file.L(20).L(60).L(0xCAFE).T(u"Intro");
    file.T(u"Notes");
    if (version >= 4) file.L(11).T(u"m1").T(u"");
    if (version >= 6) file.L(2);
    if (version >= 9) {
        file.L(12);
        for (const std::uint32_t upper : {kOnePointFive, kMinusTwo, kHalf})
            file.L(0).L(upper);
        file.L(13);
    }
    if (version >= 10) file.L(0);
    return file.bytes;
}

/// What that file holds; what the version lacks is at its default.
ProjectRecord RecordOfVersion(std::uint32_t version) {
    ProjectRecord record;
    record.version = version;
    record.audioFormatWord = 0x10001;
    record.flags = 3;
    record.recordingIndex = 7;
    ClipEntry& clip = record.clips.emplace_back();
    clip.name = u"talk07";
    clip.folder = u"C:\\talks\\";
    if (version >= 5) {
        clip.begin = 20;
        clip.end = 60;
        clip.reserved = 0xCAFE;
        clip.title = u"Intro";
    }
    record.text = u"Notes";
    if (version >= 4) {
        record.publishingValue = 11;
        record.metadata1 = u"m1";
    }
    if (version >= 6) record.audioLayout = 2;
    if (version >= 9) {
        record.stream1 = 12;
        record.stream2to4 = {1.5, -2.0, 0.5};
        record.stream5 = 13;
    }
    if (version >= 10) record.currentClip = 0;
    return record;
}

TEST(ProjectFile, ReadsTheFieldsThatEachVersionHasAndWritesThoseOfVersion10) {
    EXPECT_EQ(EncodeProjectFile(RecordOfVersion(10)), FileOfVersion(10));
    for (const std::uint32_t word : {1U, 3U, 4U, 5U, 6U, 8U, 9U, 10U, 0xABCDE004U}) {
        SCOPED_TRACE(word);
        ProjectRecord record;
        ASSERT_EQ(DecodeProjectFile(FileOfVersion(word), record), ProjectReadResult::kOk);
        EXPECT_EQ(record.version, word & 0xFFF);
        EXPECT_EQ(EncodeProjectFile(record), EncodeProjectFile(RecordOfVersion(record.version)));
    }
}

TEST(ProjectFile, RefusesForeignAndNewerFilesAndLeavesTheRecordAlone) {
    test::TestFiles files;
    ProjectRecord record;
    record.text = u"before";
    const Text path = files.folder.Path(u"x.opr");
    const auto read = [&] { return ReadProjectFile(files.services, path, record); };
    EXPECT_EQ(read(), ProjectReadResult::kNotOpened);
    EXPECT_EQ(files.boxes.shown.size(), 1U);
    Bytes foreign = FileOfVersion(10);
    foreign[0] = 'X';
    for (const Bytes& bytes : {foreign, Bytes{}, Bytes{'J', 'O', 'P'}}) {
        test::WriteFileBytes(path, bytes);
        EXPECT_EQ(read(), ProjectReadResult::kWrongMagic);
    }
    test::WriteFileBytes(path, FileOfVersion(11));
    EXPECT_EQ(read(), ProjectReadResult::kWrongVersion);
    EXPECT_EQ(record.text, u"before");
    EXPECT_EQ(files.boxes.shown.size(), 1U);
}

TEST(ProjectFile, ReadsWhatAShortFileLacksAsZeros) {
    const Bytes whole = FileOfVersion(10);
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

TEST(ProjectFile, LimitsTheMetadataTextsBothWays) {
    const FieldBytes file = Head({4, 0, 0, 0, 0}).T(u"").L(0).T(Text(300, u'a')).T(u"b");
    ProjectRecord record;
    ASSERT_EQ(DecodeProjectFile(file.bytes, record), ProjectReadResult::kOk);
    EXPECT_EQ(record.metadata1, Text(263, u'a'));
    EXPECT_EQ(record.metadata2, u"b");

    ProjectRecord limited = record;
    record.metadata1 = Text(300, u'a');
    EXPECT_EQ(EncodeProjectFile(record), EncodeProjectFile(limited));
}

}  // namespace
}  // namespace orma
