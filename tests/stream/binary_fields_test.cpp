#include "stream/binary_fields.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

template <class T>
T Next(FieldReader& reader) {
    T value{};
    reader.Get(value);
    return value;
}

TEST(BinaryFieldsTest, WhatAFileLacksReadsAsZero) {
    const Bytes bytes = {0x11, 0x22, 0x33};
    FieldReader reader(bytes);
    EXPECT_EQ(Next<std::uint32_t>(reader), 0x00332211U);
    EXPECT_EQ(Next<double>(reader), 0.0);
    EXPECT_EQ(Next<Text>(reader), u"");
}

TEST(BinaryFieldsTest, ACountBeyondTheFileGivesAnEmptyTextAndEndsTheFile) {
    const Bytes hostile[] = {
        {0xFF, 0xFF, 0xFF, 0xFF, 'a', 0, 0, 0, 7},
        {0xFE, 0xFF, 0xFF, 0x7F, 'a', 0, 0, 0, 7},
        {2, 0, 0, 0, 'a', 0, 'b', 0, 0},  // half the terminator is missing
    };
    for (const Bytes& bytes : hostile) {
        FieldReader reader(bytes);
        EXPECT_EQ(Next<Text>(reader), u"");
        EXPECT_EQ(Next<std::uint8_t>(reader), 0);
    }
}

TEST(BinaryFieldsTest, ATextEndsAtItsFirstZeroAndAtTheLimitWhileTheNextFieldStaysInPlace) {
    const Bytes bytes = {3, 0, 0, 0, 'a', 0, 0,   0, 'c', 0, 0, 0,  // a NUL inside
                         3, 0, 0, 0, 'x', 0, 'y', 0, 'z', 0, 0, 0,  // cut at two
                         1, 0, 0, 0, 'q', 0, 'r', 0,                // no terminator
                         42};
    FieldReader reader(bytes);
    EXPECT_EQ(Next<Text>(reader), u"a");
    Text text;
    reader.Get(text, 2);
    EXPECT_EQ(text, u"xy");
    EXPECT_EQ(Next<Text>(reader), u"q");
    EXPECT_EQ(Next<std::uint8_t>(reader), 42);
}

}  // namespace
}  // namespace orma
