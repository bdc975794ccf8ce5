#include "stream/binary_fields.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace orma {
namespace {

struct BinaryFieldsTest : testing::Test {
    JStreamFile Reader(const Bytes& bytes) {
        const Text path = files.folder.Path(u"fields.bin");
        test::WriteFileBytes(path, bytes);
        return JStreamFile(files.services, path, true);
    }

    test::TestFiles files;
};

TEST_F(BinaryFieldsTest, WhatAFileLacksReadsAsZero) {
    JStreamFile reader = Reader({0x11, 0x22, 0x33});
    EXPECT_EQ(ReadU32(reader), 0x00332211U);
    EXPECT_TRUE(reader.Has(JStream::kGood | JStream::kAtEnd));
    EXPECT_EQ(ReadU16(reader), 0);
    EXPECT_EQ(ReadF64(reader), 0.0);
    EXPECT_EQ(ReadText(reader), u"");
}

TEST_F(BinaryFieldsTest, ACountBeyondTheFileGivesAnEmptyTextAndEndsTheFile) {
    for (const Bytes& bytes : {Bytes{0xFF, 0xFF, 0xFF, 0xFF, 'a', 0, 0, 0, 7},
                               Bytes{0xFE, 0xFF, 0xFF, 0x7F, 'a', 0, 0, 0, 7},
                               Bytes{2, 0, 0, 0, 'a', 0, 'b', 0, 0}}) {  // half a terminator
        JStreamFile reader = Reader(bytes);
        EXPECT_EQ(ReadText(reader), u"");
        EXPECT_TRUE(reader.Has(JStream::kGood | JStream::kAtEnd));
        EXPECT_EQ(ReadU8(reader), 0);
    }
}

TEST_F(BinaryFieldsTest, ATextEndsAtItsFirstZeroAndAtTheLimitWhileTheNextFieldStaysInPlace) {
    const Bytes bytes = {3, 0, 0, 0, 'a', 0, 0,   0, 'c', 0, 0, 0,  // a NUL inside
                         3, 0, 0, 0, 'x', 0, 'y', 0, 'z', 0, 0, 0,  // cut at two
                         1, 0, 0, 0, 'q', 0, 'r', 0,                // no terminator
                         42};
    JStreamFile reader = Reader(bytes);
    EXPECT_EQ(ReadText(reader), u"a");
    EXPECT_EQ(ReadText(reader, 2), u"xy");
    EXPECT_EQ(ReadText(reader), u"q");
    EXPECT_EQ(ReadU8(reader), 42);
    EXPECT_FALSE(reader.Has(JStream::kAtEnd));
}

}  // namespace
}  // namespace orma
