#include "audio/files/take_repair.h"

#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "audio/files/wav_bytes.h"
#include "support/faulty_storage.h"

namespace orma::test {
namespace {

class TakeRepairTest : public ::testing::Test {
  protected:
    bool Mend(const Bytes& file) {
        WriteFileBytes(bench_.path, file);
        EXPECT_EQ(bench_.files.storage.SetLastWriteTime(bench_.path, kRecorded), 0U);
        const bool mended = RepairTake(bench_.files.services, bench_.path);
        FileTime time;
        EXPECT_EQ(bench_.files.storage.LastWriteTime(bench_.path, time), 0U);
        EXPECT_EQ(time, kRecorded);
        return mended;
    }

    static constexpr FileTime kRecorded{std::chrono::seconds(1231150830)};
    ReaderBench bench_;
};

TEST_F(TakeRepairTest, AnUnfinishedOrTruncatedTakeBecomesReadable) {
    const Samples sound = ExtremeNoise(1, 4410);
    const ByteSpan data = AsPcm(sound);
    const Bytes whole = WavBytes({}, data);
    const WavFields cases[] = {
        {.riffSize = 36, .dataSize = 0},       // never closed
        {.riffSize = 8856, .dataSize = 0},     // half patched
        {.riffSize = 36, .dataSize = 8820},    // the other half
        {.riffSize = 8900, .dataSize = 8864},  // cut in place: 44 bytes too many
        {.riffSize = 4036, .dataSize = 4000},  // grown since
    };
    for (const WavFields& fields : cases) {
        EXPECT_TRUE(Mend(WavBytes(fields, data)));
        EXPECT_EQ(ReadFileBytes(bench_.path), whole);
    }
    EXPECT_FALSE(Mend(whole));
    Text refusal;
    EXPECT_EQ(bench_.Measure(false, WavBytes({.riffSize = 8900, .dataSize = 8864}, data), refusal),
              0U);
    EXPECT_EQ(refusal, u"WavOpenFile No Data");
}

TEST_F(TakeRepairTest, OtherFilesAreLeftAlone) {
    const Bytes moreChunks = ByteBuilder()
                                 .Put(WavBytes({.riffSize = 36 + 100 + 12}, Bytes(100)))
                                 .Put("LIST")
                                 .U32(4)
                                 .Fill(4)
                                 .bytes;
    ByteBuilder longFormat;
    longFormat.Put("RIFF").U32(0).Put("WAVE").Put("fmt ").U32(18).Fill(18).Put("data").U32(0).Fill(
        9);
    for (const Bytes& file : {moreChunks, longFormat.bytes, Bytes(100, 'x'), Bytes(), Bytes(43)}) {
        EXPECT_FALSE(Mend(file));
        EXPECT_EQ(ReadFileBytes(bench_.path), file);
    }
    EXPECT_FALSE(RepairTake(bench_.files.services, bench_.files.folder.Path(u"none")));
    EXPECT_TRUE(bench_.files.boxes.shown.empty());
}

TEST_F(TakeRepairTest, AFaultHarmsNoSound) {
    FaultyStorage storage(bench_.files.storage);
    const Bytes unfinished = WavBytes({.riffSize = 36, .dataSize = 0}, Bytes(5000, 'a'));
    for (std::size_t n = 1;; ++n) {
        WriteFileBytes(bench_.path, unfinished);
        storage.FailAt(FaultyStorage::kAll, n);
        const bool mended = RepairTake({storage, bench_.files.report}, bench_.path);
        const Bytes file = ReadFileBytes(bench_.path);
        ASSERT_EQ(Bytes(file.begin() + 44, file.end()), Bytes(5000, 'a'));
        if (!storage.HasFailed()) {
            EXPECT_GT(n, 5U);
            EXPECT_TRUE(mended);
            break;
        }
        if (mended) {
            EXPECT_EQ(file, WavBytes({}, Bytes(5000, 'a'))) << n;
        }
    }
}

}  // namespace
}  // namespace orma::test
