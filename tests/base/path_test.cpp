#include "base/path.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

void ExpectParts(TextView path, TextView folder, TextView name, TextView extension) {
    const PathParts parts = SplitPath(path);
    EXPECT_EQ(parts.folder, folder) << ToUtf8(path);
    EXPECT_EQ(parts.name, name) << ToUtf8(path);
    EXPECT_EQ(parts.extension, extension) << ToUtf8(path);
}

TEST(SplitPath, CutsAtTheLastSeparatorOfEitherKindAndTheLastDot) {
    ExpectParts(u"/a/b.c/take00.wav", u"/a/b.c/", u"take00", u".wav");
    ExpectParts(u"D:\\radio\\news.v2.opr", u"D:\\radio\\", u"news.v2", u".opr");
    ExpectParts(u"mixed/of\\both", u"mixed/of\\", u"both", u"");
    ExpectParts(u"rel.d/name", u"rel.d/", u"name", u"");
    ExpectParts(u"name.wav", u"", u"name", u".wav");
    ExpectParts(u"", u"", u"", u"");
}

TEST(Path, GetsAnExtensionOrOneSeparatorAtItsEnd) {
    EXPECT_EQ(WithExtension(u"a.b/take.wav", u".jvu"), u"a.b/take.jvu");
    EXPECT_EQ(WithExtension(u"a.b/take", u".jvu"), u"a.b/take.jvu");
    EXPECT_EQ(AsFolder(u"/a/b/"), u"/a/b/");
    EXPECT_EQ(AsFolder(u"c:\\x\\"), u"c:\\x\\");
    EXPECT_EQ(SplitPath(AsFolder(u"/a/b") + u"f").folder.size(), 5U);
    EXPECT_EQ(AsFolder(u""), u"");
}

}  // namespace
}  // namespace orma
