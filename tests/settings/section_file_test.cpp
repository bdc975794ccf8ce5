#include "settings/section_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

struct SectionFileTest : testing::Test {
    test::TempFolder folder;
    test::FaultyStorage storage;
    Text path = folder.Path(u"size.txt");

    void Put(std::string_view text) { test::WriteFileBytes(path, AsBytes(text)); }
    std::string Content() {
        const Bytes bytes = test::ReadFileBytes(path);
        return {bytes.begin(), bytes.end()};
    }
    int Read(std::string_view section, std::string_view key, int otherwise = -77) {
        return ReadKey(storage, section, key, otherwise, path);
    }
    void Write(std::string_view section, std::string_view key, int value) {
        WriteKey(storage, section, key, value, path);
    }
    std::vector<Text> Names() {
        std::vector<Text> names;
        EXPECT_EQ(storage.ListFiles(folder.Path(), names), 0U);
        return names;
    }
};

TEST_F(SectionFileTest, ReadsAKeyOfItsSectionOnly) {
    Put("Landscape=9 [Other]\r\nBig=1\n[Size]\tLandscape=2\r\n[Next] Big=5");
    EXPECT_EQ(Read("Size", "Landscape"), 2);
    EXPECT_EQ(Read("Size", "Big"), -77);
    EXPECT_EQ(Read("Next", "Big"), 5);
    EXPECT_EQ(Read("size", "Landscape"), -77);
    EXPECT_EQ(Read("Siz", "Landscape"), -77);
    Put("[Size] Bigger=3 Big=4");
    EXPECT_EQ(Read("Size", "Big"), 3);  // a key is found by its beginning
}

TEST_F(SectionFileTest, ReadsTheNumberBehindTheFirstEqualsSign) {
    Put("[S] a=-12 b=+7 c=5px d= e=x f=1=2 g h =3 i=99999999999 j=-2147483648 k=+-1");
    // "h =3": blanks around the sign make three tokens.
    const int expected[] = {-12, 7, 5, -77, -77, 1, -77, -77, -77, -2147483647 - 1, -77};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(Read("S", std::string(1, static_cast<char>('a' + i))), expected[i]) << i;
}

TEST_F(SectionFileTest, CreatesAMissingFileAndAppendsAMissingSection) {
    EXPECT_EQ(Read("Size", "Big", 4), 4);
    Write("Size", "Big", 1);
    EXPECT_EQ(Content(), "\r\n[Size]\r\nBig=1\r\n");
    Write("Skin", "X", -3);
    EXPECT_EQ(Content(), "\r\n[Size]\r\nBig=1\r\n\r\n[Skin]\r\nX=-3\r\n");
    EXPECT_EQ(Read("Skin", "X"), -3);
    Put("a note; [Size] Big=1");
    Write("Skin", "X", 2);
    EXPECT_EQ(Content(), "a note; [Size] Big=1\r\n[Skin]\r\nX=2\r\n") << "the text is untouched";
    EXPECT_THAT(Names(), testing::ElementsAre(u"size.txt"));
}

TEST_F(SectionFileTest, RewritesOneTokenALineWhenItSetsAKey) {
    Put("[Size]\nLandscape=2 \xE9t\xE9=1\n");
    Write("Size", "Big", 0);
    EXPECT_EQ(Content(), "\r\n[Size]\r\nLandscape=2\r\n\xE9t\xE9=1\r\nBig=0\r\n");
    Write("Size", "Landscape", 1);
    EXPECT_EQ(Content(), "\r\n[Size]\r\nLandscape=1\r\n\xE9t\xE9=1\r\nBig=0\r\n");
}

TEST_F(SectionFileTest, InsertsAMissingKeyBeforeTheNextHeaderAndReplacesTheFirstThatMatches) {
    Put("[A]\nx=1\n[B]\ny=2\n");
    Write("A", "z", 3);
    EXPECT_EQ(Content(), "\r\n[A]\r\nx=1\r\nz=3\r\n\r\n[B]\r\ny=2\r\n");
    Write("A", "y", 4);
    EXPECT_EQ(Content(), "\r\n[A]\r\nx=1\r\nz=3\r\ny=4\r\n\r\n[B]\r\ny=2\r\n");
    Put("[A]\nBigger=3\nBig=1\n");
    Write("A", "Big", 7);
    EXPECT_EQ(Content(), "\r\n[A]\r\nBig=7\r\nBig=1\r\n");
}

TEST_F(SectionFileTest, AWriteProtectedFileIsReadAndStaysAsItIs) {
    Put("[Size]\nBig=1\n");
    std::unique_ptr<StorageFile> writer;  // its lock keeps other writers out
    ASSERT_EQ(
        storage.Open(path, {Access::kWrite, Share::kRead, Disposition::kOpenExisting}, writer), 0U);
    EXPECT_EQ(Read("Size", "Big"), 1);
    Write("Size", "Big", 0);
    EXPECT_EQ(Content(), "[Size]\nBig=1\n");
}

TEST_F(SectionFileTest, AFailedRewriteLeavesTheFileAndNoTemporary) {
    Put("[Size]\nBig=1\n");
    for (const unsigned step :
         {test::FaultyStorage::kRead, test::FaultyStorage::kWrite, test::FaultyStorage::kFlush,
          test::FaultyStorage::kClose, test::FaultyStorage::kRename}) {
        storage.FailAt(step, 1);
        Write("Size", "Big", 0);
        storage.FailAt(step, 0);
        EXPECT_EQ(Content(), "[Size]\nBig=1\n");
        EXPECT_THAT(Names(), testing::ElementsAre(u"size.txt"));
    }
}

}  // namespace
}  // namespace orma
