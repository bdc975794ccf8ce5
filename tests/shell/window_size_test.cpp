#include "shell/window_size.h"

#include <gtest/gtest.h>

#include "settings/section_file.h"
#include "support/memory_storage.h"

namespace orma::test {
namespace {

TEST(WindowSize, ComesFromTheFileAndIsWrittenBackAsItWasUnderstood) {
    struct Case {
        const char* file;
        Size size;
        int landscape, big;
    };
    const Case cases[] = {
        {"", {480, 540}, 0, 1},
        {"[Size]\nLandscape=2\nBig=1\n", {480, 380}, 2, 1},
        {"[Size]\nLandscape=1\nBig=0\n", {320, 190}, 1, 0},
        {"[Size]\nLandscape=7\nBig=0\n", {240, 270}, 0, 0},
        {"[Size]\nLandscape=-1\nBig=5\n", {240, 270}, 0, 0},
    };
    for (const Case& one : cases) {
        MemoryStorage storage;
        if (*one.file != 0) storage.Put(u"size.txt", AsBytes(one.file));
        EXPECT_EQ(ReadWindowSize(storage, u"size.txt"), one.size) << one.file;
        EXPECT_EQ(ReadKey(storage, "Size", "Landscape", -9, u"size.txt"), one.landscape);
        EXPECT_EQ(ReadKey(storage, "Size", "Big", -9, u"size.txt"), one.big);
    }
}

}  // namespace
}  // namespace orma::test
