#include "base/path.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(Path, IsCutAtTheLastSeparatorOfEitherKindAndTheLastDot) {
    const TextView paths[][3] = {
        {u"/a/b.c/", u"take00", u".wav"}, {u"D:\\radio\\", u"news.v2", u".opr"},
        {u"mixed/of\\", u"both", u""},    {u"rel.d/", u"name", u""},
        {u"", u"name", u".wav"},          {u"", u"", u""},
    };
    for (const auto& [folder, name, extension] : paths) {
        const Text path = Text(folder) + Text(name) + Text(extension);
        const PathParts parts = SplitPath(path);
        EXPECT_EQ(parts.folder, folder) << ToUtf8(path);
        EXPECT_EQ(parts.name, name) << ToUtf8(path);
        EXPECT_EQ(parts.extension, extension) << ToUtf8(path);
    }
    EXPECT_EQ(WithExtension(u"a.b/take.wav", u".jvu"), u"a.b/take.jvu");
    EXPECT_EQ(WithExtension(u"a.b/take", u".jvu"), u"a.b/take.jvu");
    EXPECT_EQ(AsFolder(u"c:\\x\\"), u"c:\\x\\");
    EXPECT_EQ(SplitPath(AsFolder(u"/a/b") + u"f").folder.size(), 5U);
    EXPECT_EQ(AsFolder(u""), u"");
}

}  // namespace
}  // namespace orma
