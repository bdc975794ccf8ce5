#include "audio/files/take_repair.h"

#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "audio/files/wav_bytes.h"
#include "support/faulty_storage.h"

namespace orma::test {
namespace {

struct TakeRepairTest : testing::Test, ReaderBench {
    bool Mend(const Bytes& file) {
        constexpr FileTime kRecorded{std::chrono::seconds(1231150830)};
        WriteFileBytes(path, file);
        EXPECT_EQ(files.storage.SetLastWriteTime(path, kRecorded), 0U);
        const bool mended = RepairTake(files.services, path);
        FileTime time;
        EXPECT_EQ(files.storage.LastWriteTime(path, time), 0U);
        EXPECT_EQ(time, kRecorded);
        return mended;
    }
};

TEST_F(TakeRepairTest, AnUnfinishedOrTruncatedTakeBecomesReadable) {
    const Bytes sound(8820, 'a');
    const Bytes whole = WavBytes({}, sound);
    const WavFields cases[] = {
        {.riffSize = 36, .dataSize = 0},       // never closed
        {.riffSize = 8856, .dataSize = 0},     // half patched
        {.riffSize = 36, .dataSize = 8820},    // the other half
        {.riffSize = 8900, .dataSize = 8864},  // cut in place: 44 bytes too many
        {.riffSize = 4036, .dataSize = 4000},  // grown since
    };
    for (const WavFields& fields : cases) {
        EXPECT_TRUE(Mend(WavBytes(fields, sound)));
        EXPECT_EQ(ReadFileBytes(path), whole);
    }
    EXPECT_FALSE(Mend(whole));
}

TEST_F(TakeRepairTest, OtherFilesAreLeftAlone) {
    ByteBuilder moreChunks;
    moreChunks.Put(WavBytes({.riffSize = 36 + 100 + 12}, Bytes(100))).Put("LIST").U32(4).Fill(4);
    ByteBuilder longFormat;
    longFormat.Put("RIFF").U32(0).Put("WAVE").Put("fmt ").U32(18).Fill(18).Put("data").U32(0);
    longFormat.Fill(9);
    for (const Bytes& file :
         {moreChunks.bytes, longFormat.bytes, Bytes(100, 'x'), Bytes(), Bytes(43)}) {
        EXPECT_FALSE(Mend(file));
        EXPECT_EQ(ReadFileBytes(path), file);
    }
    EXPECT_FALSE(RepairTake(files.services, files.folder.Path(u"none")));
    EXPECT_TRUE(files.boxes.shown.empty());
}

TEST_F(TakeRepairTest, AFaultHarmsNoSound) {
    FaultyStorage faulty(files.storage);
    const Bytes sound(5000, 'a');
    bool mended = false;
    for (std::size_t n = 1; n == 1 || faulty.HasFailed(); ++n) {
        WriteFileBytes(path, WavBytes({.riffSize = 36, .dataSize = 0}, sound));
        faulty.FailAt(FaultyStorage::kAll, n);
        mended = RepairTake({faulty, files.report}, path);
        const Bytes file = ReadFileBytes(path);
        ASSERT_EQ(Bytes(file.begin() + 44, file.end()), sound);
        EXPECT_TRUE(!mended || file == WavBytes({}, sound)) << n;
    }
    EXPECT_GT(faulty.Count(), 5U);
    EXPECT_TRUE(mended);
}

}  // namespace
}  // namespace orma::test
