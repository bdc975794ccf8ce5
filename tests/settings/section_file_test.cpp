#include "settings/section_file.h"

#include <gmock/gmock.h>

#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

struct SectionFileTest : testing::Test {
    TempFolder folder;
    FaultyStorage storage;
    Text path = folder.Path(u"size.txt");

    void Put(std::string_view text) { WriteFileBytes(path, AsBytes(text)); }
    std::string Content() {
        const Bytes bytes = ReadFileBytes(path);
        return {bytes.begin(), bytes.end()};
    }
    int Read(std::string_view section, std::string_view key) {
        return ReadKey(storage, section, key, -77, path);
    }
    void Write(std::string_view section, std::string_view key, int value) {
        WriteKey(storage, section, key, value, path);
    }
};

TEST_F(SectionFileTest, ReadsTheNumberOfAKeyInItsSection) {
    EXPECT_EQ(Read("Size", "Big"), -77);
    Put("Landscape=9 [Other]\r\nBig=1\n[Size]\tLandscape=2\r\n[Next] Bigger=3 Big=4");
    EXPECT_EQ(Read("Size", "Landscape"), 2);
    for (const char* section : {"Size", "size", "Siz"})
        EXPECT_EQ(Read(section, "Big"), -77);
    EXPECT_EQ(Read("Next", "Big"), 3);  // a key is found by its beginning
    Put("[S] a=-12 b=+7 c=5px d= e=x f=1=2 g h =3 i=99999999999 j=-2147483648 k=+-1");
    // "h =3": blanks around the sign make three tokens.
    const int expected[] = {-12, 7, 5, -77, -77, 1, -77, -77, -77, -2147483647 - 1, -77};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(Read("S", std::string(1, static_cast<char>('a' + i))), expected[i]) << i;
}

TEST_F(SectionFileTest, WritesAMissingFileSectionOrKeyAndReplacesTheFirstThatMatches) {
    Write("Size", "Big", 1);
    EXPECT_EQ(Content(), "\r\n[Size]\r\nBig=1\r\n");
    Put("a note; [Size] Big=1");
    Write("Skin", "X", -3);
    EXPECT_EQ(Content(), "a note; [Size] Big=1\r\n[Skin]\r\nX=-3\r\n") << "the text is untouched";
    Put("[A]\nx=1 \xE9t\xE9=1\n[B]\nyes=2\ny=3\n");
    Write("A", "y", 4);
    EXPECT_EQ(Content(), "\r\n[A]\r\nx=1\r\n\xE9t\xE9=1\r\ny=4\r\n\r\n[B]\r\nyes=2\r\ny=3\r\n");
    Write("B", "y", 7);
    EXPECT_EQ(Content(), "\r\n[A]\r\nx=1\r\n\xE9t\xE9=1\r\ny=4\r\n\r\n[B]\r\ny=7\r\ny=3\r\n");
}

TEST_F(SectionFileTest, AFailedRewriteLeavesTheFileAndNoTemporary) {
    Put("[Size]\nBig=1\n");
    for (const unsigned step : {FaultyStorage::kRead, FaultyStorage::kWrite, FaultyStorage::kFlush,
                                FaultyStorage::kClose, FaultyStorage::kRename}) {
        storage.FailAt(step, 1);
        Write("Size", "Big", 0);
        storage.FailAt(step, 0);
        EXPECT_EQ(Content(), "[Size]\nBig=1\n");
        std::vector<Text> names;
        EXPECT_EQ(storage.ListFiles(folder.Path(), names), 0U);
        EXPECT_THAT(names, testing::ElementsAre(u"size.txt"));
    }
}

}  // namespace
}  // namespace orma::test
