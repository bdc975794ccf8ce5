#include "project/project_file.h"

#include <string_view>

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace orma {
namespace {

/// Puts a project file together field by field, independently of the encoder.
class FileBuilder {
  public:
    FileBuilder& Ascii(std::string_view text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }
    FileBuilder& U32(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        return *this;
    }
    FileBuilder& Text(std::string_view ascii) {
        U32(static_cast<std::uint32_t>(ascii.size()));
        if (ascii.empty()) return *this;
        for (const char c : ascii) {
            bytes.push_back(static_cast<std::uint8_t>(c));
            bytes.push_back(0);
        }
        bytes.insert(bytes.end(), 2, 0);
        return *this;
    }
    /// An IEEE double whose lower 32 bits are 0.
    FileBuilder& F64(std::uint32_t upper) { return U32(0).U32(upper); }

    Bytes bytes;
};

constexpr std::uint32_t kOnePointFive = 0x3FF80000;
constexpr std::uint32_t kMinusTwo = 0xC0000000;
constexpr std::uint32_t kHalf = 0x3FE00000;

/// A file of a given version word with one clip and every field that the version has.
Bytes FileOfVersion(std::uint32_t versionWord) {
    const std::uint32_t version = versionWord & 0xFFF;
    FileBuilder file;
    file.Ascii("JOPR").U32(versionWord).U32(0x10001).U32(3).U32(7).U32(1);
    file.Text("talk07").Text("C:\\talks\\");
    if (version >= 5) file.U32(20).U32(60).U32(0xCAFE).Text("Intro");
    file.Text("Notes");
    if (version >= 4) file.U32(11).Text("m1").Text("");
    if (version >= 6) file.U32(2);
    if (version >= 9) file.U32(12).F64(kOnePointFive).F64(kMinusTwo).F64(kHalf).U32(13);
    if (version >= 10) file.U32(0);
    return file.bytes;
}

TEST(ProjectFile, WritesEveryFieldInTheOrderOfVersion10) {
    ProjectRecord record;
    record.version = 3;  // what a file was loaded from; written is always the present version
    record.audioFormatWord = 0x10001;
    record.flags = 3;
    record.recordingIndex = 7;
    ClipEntry& clip = record.clips.emplace_back();
    clip.name = u"talk07";
    clip.folder = u"C:\\talks\\";
    clip.begin = 20;
    clip.end = 60;
    clip.reserved = 0xCAFE;
    clip.title = u"Intro";
    record.text = u"Notes";
    record.publishingValue = 11;
    record.metadata1 = u"m1";
    record.audioLayout = 2;
    record.stream1 = 12;
    record.stream2to4 = {1.5, -2.0, 0.5};
    record.stream5 = 13;
    record.currentClip = 0;
    EXPECT_EQ(EncodeProjectFile(record), FileOfVersion(10));
}

TEST(ProjectFile, ReadsTheFieldsThatEachVersionHas) {
    for (const std::uint32_t version : {1U, 3U, 4U, 5U, 6U, 8U, 9U, 10U, 0xABCDE004U}) {
        SCOPED_TRACE(version);
        const std::uint32_t v = version & 0xFFF;
        ProjectRecord record;
        ASSERT_EQ(DecodeProjectFile(FileOfVersion(version), record), ProjectReadResult::kOk);
        EXPECT_EQ(record.version, v);
        EXPECT_EQ(record.audioFormatWord, 0x10001U);
        EXPECT_EQ(record.flags, 3U);
        EXPECT_EQ(record.recordingIndex, 7);
        ASSERT_EQ(record.clips.size(), 1U);
        EXPECT_EQ(record.clips[0].name, u"talk07");
        EXPECT_EQ(record.clips[0].end, v >= 5 ? 60U : 0U);
        EXPECT_EQ(record.clips[0].reserved, v >= 5 ? 0xCAFEU : 0U);
        EXPECT_EQ(record.clips[0].title, v >= 5 ? u"Intro" : u"");
        EXPECT_EQ(record.text, u"Notes");
        EXPECT_EQ(record.publishingValue, v >= 4 ? 11U : 0U);
        EXPECT_EQ(record.metadata1, v >= 4 ? u"m1" : u"");
        EXPECT_EQ(record.audioLayout, v >= 6 ? 2U : 0U);
        EXPECT_EQ(record.stream2to4[1], v >= 9 ? -2.0 : 0.0);
        EXPECT_EQ(record.stream5, v >= 9 ? 13U : 0U);
        EXPECT_EQ(record.currentClip, v >= 10 ? 0 : -1);
    }
}

TEST(ProjectFile, RefusesForeignAndNewerFilesAndLeavesTheRecordAlone) {
    test::TestFiles files;
    ProjectRecord record;
    record.text = u"before";
    const Text path = files.folder.Path(u"x.opr");
    Bytes foreign = FileOfVersion(10);
    foreign[0] = 'X';
    for (const Bytes& bytes : {foreign, Bytes{}, Bytes{'J', 'O', 'P'}}) {
        test::WriteFileBytes(path, bytes);
        EXPECT_EQ(ReadProjectFile(files.services, path, record), ProjectReadResult::kWrongMagic);
    }
    test::WriteFileBytes(path, FileOfVersion(11));
    EXPECT_EQ(ReadProjectFile(files.services, path, record), ProjectReadResult::kWrongVersion);
    EXPECT_EQ(ReadProjectFile(files.services, files.folder.Path(u"none.opr"), record),
              ProjectReadResult::kNotOpened);
    EXPECT_EQ(record.text, u"before");
    EXPECT_EQ(files.boxes.shown.size(), 1U);  // the file that is not there
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
        FileBuilder clips;
        clips.Ascii("JOPR").U32(10).U32(0).U32(0).U32(0).U32(count).Text("a").Text("");
        ASSERT_EQ(DecodeProjectFile(clips.bytes, record), ProjectReadResult::kOk);
        EXPECT_EQ(record.clips.size(), 1U);
        EXPECT_LE(record.clips.capacity(), 2U);

        FileBuilder text;
        text.Ascii("JOPR").U32(10).U32(0).U32(0).U32(0).U32(0).U32(count).U32(0x00410041);
        text.U32(77).U32(77);
        ASSERT_EQ(DecodeProjectFile(text.bytes, record), ProjectReadResult::kOk);
        EXPECT_EQ(record.text, u"");
        EXPECT_EQ(record.publishingValue, 0U);  // nothing is read behind the broken text
    }
}

TEST(ProjectFile, LimitsTheMetadataTextsBothWays) {
    FileBuilder file;
    file.Ascii("JOPR").U32(4).U32(0).U32(0).U32(0).U32(0).Text("");
    file.U32(0).Text(std::string(300, 'a')).Text("b");
    ProjectRecord record;
    ASSERT_EQ(DecodeProjectFile(file.bytes, record), ProjectReadResult::kOk);
    EXPECT_EQ(record.metadata1, Text(263, u'a'));
    EXPECT_EQ(record.metadata2, u"b");

    record.metadata1 = Text(300, u'c');
    ProjectRecord again;
    ASSERT_EQ(DecodeProjectFile(EncodeProjectFile(record), again), ProjectReadResult::kOk);
    EXPECT_EQ(again.metadata1, Text(263, u'c'));
    EXPECT_EQ(again.metadata2, u"b");
}

}  // namespace
}  // namespace orma
