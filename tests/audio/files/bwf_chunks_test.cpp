#include "audio/files/bwf_chunks.h"

#include <cstring>

#include <gtest/gtest.h>

#include "support/byte_builder.h"

namespace orma::test {
namespace {

/// The chunk's bytes are these, and nothing is lost when they are read.
template <class Chunk>
void ExpectLayout(const Chunk& chunk, const Bytes& layout) {
    const auto encoded = chunk.Encode();
    EXPECT_EQ(Bytes(encoded.begin(), encoded.end()), layout);
    const auto decoded = Chunk::Decode(layout);
    ASSERT_TRUE(decoded);
    const auto again = decoded->Encode();
    EXPECT_EQ(Bytes(again.begin(), again.end()), layout);
}

TEST(MpegFormatBlock, SaysSingleChannelModeForStereoAsWell) {
    const MpegFormatBlock block{.channels = 2,
                                .averageBytesPerSecond = 24000,
                                .blockAlign = 576,
                                .headBitrate = 192000,
                                .factSamples = 2304,
                                .frameSize = 576,
                                .dataSize = 1152};
    ByteBuilder expected;
    expected.Put("fmt ").U32(40).U16(0x50).U16(2).U32(48000).U32(24000).U16(576).U16(0).U16(22);
    expected.U16(2).U32(192000).U16(8).U16(0).U16(0).U16(0x10).U32(0).U32(0);
    expected.Put("fact").U32(4).U32(2304);
    expected.Put("mext").U32(12).U16(3).U16(576).U16(0).U16(0).Fill(4);
    expected.Put("data").U32(1152);
    ASSERT_EQ(expected.bytes.size(), 88U);
    ExpectLayout(block, expected.bytes);
    EXPECT_FALSE(PcmFormatBlock::Decode(expected.bytes));
}

TEST(PcmFormatBlock, IsFormatFactAndDataHead) {
    const PcmFormatBlock block{
        .channels = 2, .blockAlign = 2, .factSamples = 1152, .dataSize = 4608};
    ByteBuilder expected;
    expected.Put("fmt ").U32(16).U16(1).U16(2).U32(48000).U32(192000).U16(2).U16(16);
    expected.Put("fact").U32(4).U32(1152).Put("data").U32(4608);
    ASSERT_EQ(expected.bytes.size(), 44U);
    ExpectLayout(block, expected.bytes);
    EXPECT_FALSE(MpegFormatBlock::Decode(ByteBuilder().Put(expected.bytes).Fill(44).bytes));
}

TEST(LevlChunk, EndsInOneToFourZerosAndRefusesLengthsThatDoNotFit) {
    LevlChunk levl;
    levl.blockSize = 2400;
    levl.positionOfPeak = 8;
    std::memcpy(levl.timestamp.data(), "2009:01:05:10:20:30:400", 23);
    levl.peaks = {1, 2, 3, 4, 5, 6, 7, 8, 255};
    ByteBuilder expected;
    expected.Put("levl").U32(132).U32(0).U32(1).U32(1).U32(2400).U32(1).U32(9).U32(8).U32(128);
    expected.Field("2009:01:05:10:20:30:400", 28).Fill(60).Put(levl.peaks).Fill(3);
    ASSERT_EQ(expected.bytes.size(), 140U);
    const Bytes& whole = expected.bytes;
    ExpectLayout(levl, whole);
    levl.peaks.pop_back();
    EXPECT_EQ(levl.Encode().size(), 140U);

    EXPECT_FALSE(LevlChunk::Decode(ByteSpan(whole).first(whole.size() - 1)));
    using Field = std::pair<std::size_t, std::uint32_t>;
    for (const auto& [offset, value] :
         {Field{4, ~0U}, {4, 119}, {28, 13}, {28, ~0U}, {36, ~15U}, {36, 64}}) {
        Bytes bad = whole;
        StoreLe(&bad[offset], value);
        EXPECT_FALSE(LevlChunk::Decode(bad)) << offset << " " << value;
    }
}

TEST(QltyChunk, HoldsItsReportAndBothSums) {
    const QltyChunk qlty{
        .fileSecurityReport = 7, .fileSecurityWave = 0x80000001, .report = "SM=0\r\n"};
    ByteBuilder expected;
    // (6 + 16) with its two low bits cleared is 20, and 4 more.
    expected.Put("qlty").U32(16).U32(7).U32(0x80000001).Field("SM=0\r\n", 8);
    ExpectLayout(qlty, expected.bytes);
    EXPECT_EQ(QltyChunk::Decode(expected.bytes)->report, "SM=0\r\n");
    StoreLe<std::uint32_t>(&expected.bytes[4], 17);
    EXPECT_FALSE(QltyChunk::Decode(expected.bytes));

    // The sum stops sixteen bytes before the block's end.
    // 18 bytes: a block of (34 & ~3) + 4 = 36, of which 20 are summed: 16 of the head, 4 of text.
    EXPECT_EQ(QltyChunk::ReportSum(std::string(18, '\x01')), 4U);
    // Bytes count unsigned.
    EXPECT_EQ(QltyChunk::ReportSum(std::string(18, '\xFF')), 4U * 255);
    EXPECT_EQ(QltyChunk::ReportSum("short"), 0U);
}

}  // namespace
}  // namespace orma::test
