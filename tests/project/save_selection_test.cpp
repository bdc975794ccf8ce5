#include "project/save_selection.h"

#include <algorithm>
#include <filesystem>

#include "audio/files/take_journal.h"
#include "audio/files/vu_file.h"
#include "project/recording_access.h"
#include "project_rig.h"
#include "support/byte_builder.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kPeriods = 60;

TakeFormat AnyFormat(std::mt19937& random, bool mp2) {
    TakeFormat format{.mp2 = mp2, .stereo = random() % 2 == 0, .shift = unsigned(random() % 3)};
    format.rate = random() % 2 == 0 ? 44100 : 48000;
    format.bits = random() % 3 == 0 ? 24 : 16;
    format.kilobits = random() % 2 == 0 ? 64 : 128;
    return format;
}

Bytes Part(const Bytes& bytes, std::size_t begin, std::size_t end) {
    return {bytes.begin() + long(begin), bytes.begin() + long(end)};
}

/// The level file that a selection [begin, end) of `sheet` has.
Bytes SelectionLevels(const LevelSheet& sheet, std::uint32_t begin, std::uint32_t end) {
    ByteBuilder marks;
    ByteBuilder cuts;
    for (const std::uint32_t mark : sheet.marks)
        if (mark > begin && mark < end) marks.U32(mark - begin);
    for (const RemovedRange& cut : sheet.cuts)
        if (cut.begin > begin && cut.end < end)
            cuts.U32(cut.begin - begin).U32(cut.end - begin).U32(cut.third);
    return ByteBuilder{}
        .Put("UVOJ")
        .U32(3)
        .U32(0)
        .U32(end - begin)
        .U32(end - begin)
        .U32(static_cast<std::uint32_t>(marks.bytes.size() / 4))
        .U32(static_cast<std::uint32_t>(cuts.bytes.size() / 12))
        .Put(marks.bytes)
        .Put(cuts.bytes)
        .Put(ByteSpan(sheet.levels).subspan(begin, end - begin))
        .U32(sheet.resolutionShift)
        .bytes;
}

bool SaveSelection(ProjectRun& run, std::uint32_t begin, std::uint32_t end, const Text& path) {
    run.recording.selectionStart = begin;
    run.recording.selectionEnd = end;
    return MenuSaveSelAs(run.project, path, false);
}

/// Where thousands of runs that wait for the medium take no minutes.
std::filesystem::path FastestFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    return exists(inMemory) ? inMemory : std::filesystem::temp_directory_path();
}

TEST(SaveSelection, CopiesExactlyTheBytesOfTwoHundredSelections) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const TempFolder folder(FastestFolder());
        const TakeFormat format = AnyFormat(random, round % 2 == 1);
        const RandomTake take(folder, u"talk00", format, kPeriods, random);
        ProjectRun run(folder, format);
        ASSERT_TRUE(run.project.OpenRecording(take.path));
        const auto begin = std::uint32_t(random() % kPeriods);
        const auto end = begin + 1 + std::uint32_t(random() % (kPeriods - begin));
        const Text out = folder.Path(u"talk00_S" + format.Extension());
        ASSERT_TRUE(SaveSelection(run, begin, end, out));
        ASSERT_EQ(ProposedSelectionPath(run.project), out);
        ASSERT_EQ(ReadFileBytes(out),
                  TakeFile(format, Part(take.sound, format.Before(begin), format.Before(end))));
        ASSERT_EQ(ReadFileBytes(WithExtension(out, u".jvu")),
                  SelectionLevels(take.sheet, begin, end));
        ASSERT_EQ(ReadFileBytes(take.path), TakeFile(format, take.sound));
    }
}

/// A WAV take in a folder of its own.
struct SaveSelectionTest : ProjectTest {
    [[nodiscard]] bool Open() { return project.OpenRecording(take.path); }
    [[nodiscard]] bool Save(std::uint32_t begin, std::uint32_t end, const Text& path) {
        return SaveSelection(*this, begin, end, path);
    }

    std::mt19937 random{1};
    const RandomTake take{folder, u"talk00", {}, kPeriods, random};
};

TEST_F(SaveSelectionTest, OfTheWholeRecordingOverItselfOrWhileBusyOrOfNothingChangesNothing) {
    ASSERT_TRUE(Open());
    EXPECT_FALSE(MenuSaveSelAs(project, take.path, true));
    EXPECT_FALSE(Save(0, 0, take.path));
    EXPECT_TRUE(Save(0, kPeriods, take.path));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, take.sound));
    // One period of a file cut in place is no whole period any more, and could not be read.
    EXPECT_FALSE(Save(0, 1, take.path));
    // The other kind's level file would be overwritten.
    AddFile(u"b.mp2", "x");
    EXPECT_FALSE(Save(0, 1, Path(u"b.wav")));
    EXPECT_EQ(boxes.Texts(),
              (Names{u"MenuSaveSelAs", u"Nothing selected", u"The selection is too short.",
                     u"The name belongs to another recording: " + Path(u"b.mp2")}));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, take.sound));
}

TEST_F(SaveSelectionTest, NeverTakesWhatFollowsTheSoundForSound) {
    // The last period is cut short, and another chunk follows: levels count one period more.
    const std::size_t there = take.sound.size() - 1000;
    Bytes file = TakeFile({}, Part(take.sound, 0, there));
    const Bytes chunk = ByteBuilder{}.Put("LIST").U32(2000).Fill(2000, 'x').bytes;
    file.insert(file.end(), chunk.begin(), chunk.end());
    StoreLe(file.data() + 4, static_cast<std::uint32_t>(file.size() - 8));
    WriteFileBytes(take.path, file);
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Save(58, 60, Path(u"b.wav")));
    Bytes wanted = Part(take.sound, kPeriodBytes * 58, there);
    wanted.resize(kPeriodBytes * 2);
    EXPECT_EQ(File(u"b.wav"), TakeFile({}, wanted));
    // Not cut in place either: its sizes say something else than ours do.
    ASSERT_TRUE(Save(0, 20, take.path));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, Part(take.sound, 0, kPeriodBytes * 20)));
}

TEST_F(SaveSelectionTest, OverItselfTakesTheClipsAlong) {
    project.NewProject();
    audio.resolutionShift = 2;
    for (const auto& [begin, end] : {std::pair{0U, 0U}, {2U, 8U}, {5U, 20U}, {10U, 40U}})
        AddClipOf(u"talk00", begin, end);
    ASSERT_TRUE(project.SelectClip(3));
    const FileTime made(std::chrono::seconds(99));
    ASSERT_EQ(storage.SetLastWriteTime(take.path, made), 0U);
    ASSERT_TRUE(MenuSaveSelAs(project, take.path, false));
    ASSERT_EQ(clips.Count(), 3);  // nothing was left of 2 to 8
    EXPECT_EQ(clips.At(0).end, 0U);
    EXPECT_EQ(clips.At(1).begin, 0U);
    EXPECT_EQ(clips.At(1).end, 10U);
    EXPECT_EQ(clips.At(2).end, 0U);
    EXPECT_EQ(clips.CurrentIndex(), 2);
    EXPECT_EQ(recording.length, 30U);
    EXPECT_EQ(ReadFileBytes(take.path),
              TakeFile({}, Part(take.sound, kPeriodBytes * 10, kPeriodBytes * 40)));
    FileTime time;
    ASSERT_EQ(storage.LastWriteTime(take.path, time), 0U);
    EXPECT_EQ(time, made);  // it dates the recording
    EXPECT_FALSE(Exists(u"talk00.wa2"));
}

TEST_F(SaveSelectionTest, LeavesNoJournalThatCouldBeBroughtIn) {
    TakeJournal journal;
    ASSERT_TRUE(journal.Start(files, take.path, {.blockBytes = 65536},
                              std::uint32_t(44 + take.sound.size())));
    journal.Append(Bytes(kPeriodBytes, 5));
    ASSERT_TRUE(Open());
    EXPECT_FALSE(Save(0, 20, take.path));
    EXPECT_EQ(boxes.Texts(), Names{u"The recording is in use: " + take.path});
    journal.Close();
    ASSERT_TRUE(Open());
    ASSERT_TRUE(Save(0, 20, take.path));
    EXPECT_FALSE(Exists(u"talk00.rec"));
    EXPECT_EQ(recording.length, 20U);
    EXPECT_EQ(ReadFileBytes(take.path).size(), kPeriodBytes * 20);
}

enum class Branch { kCopy, kCopyOver, kRebuild, kTruncate };

class SaveSelectionFaults : public ::testing::TestWithParam<std::tuple<Branch, bool>> {
  protected:
    static constexpr std::uint32_t kShort = 12;

    [[nodiscard]] bool InPlace() const {
        return branch_ == Branch::kRebuild || branch_ == Branch::kTruncate;
    }

    using Content = std::pair<Bytes, Bytes>;  // sound and level file

    /// The recording as the next start of the program finds it, with its clip.
    std::optional<Content> AfterRestart(const TempFolder& folder, const Text& path) {
        ProjectRun run(folder, format_);
        EXPECT_TRUE(run.project.LoadProject());
        EXPECT_EQ(run.clips.Count(), 1);
        if (!run.storage.Exists(path)) return std::nullopt;
        EXPECT_TRUE(ReadRecording(run.project.Readers(), path));
        for (const TextView left : {u".wa2", u".jv2"})
            EXPECT_FALSE(run.storage.Exists(WithExtension(path, left)));
        EXPECT_TRUE(run.boxes.shown.empty());
        const Bytes file = ReadFileBytes(path);
        const Bytes sound = Part(file, format_.mp2 ? 0 : 44, file.size());
        EXPECT_EQ(file, TakeFile(format_, sound));
        const Text levels = WithExtension(path, u".jvu");
        return Content{sound, run.storage.Exists(levels) ? ReadFileBytes(levels) : Bytes()};
    }

    /// Saves with a fault; true when it was met.
    bool Try(unsigned operations, std::size_t n, FaultyStorage::Extent extent) {
        std::mt19937 random(11);
        const TempFolder folder(FastestFolder());
        const RandomTake source(folder, u"talk00", format_, kShort, random);
        const Text path = InPlace() ? source.path : folder.Path(u"part" + format_.Extension());
        std::optional<Content> before;
        if (InPlace()) before = {source.sound, EncodeVuFile(source.sheet)};
        if (branch_ == Branch::kCopyOver) {
            const RandomTake old(folder, u"part", format_, kShort, random);
            before = {old.sound, EncodeVuFile(old.sheet)};
        }
        ProjectRun run(folder, format_);
        run.project.NewProject();
        run.audio.mp2 = format_.mp2;
        ClipEntry clip;
        clip.folder = folder.Path();
        clip.name = u"talk00";
        run.clips.Append(clip);
        EXPECT_TRUE(run.project.SelectClip(0) && run.project.SaveProject());
        const std::uint32_t begin = branch_ == Branch::kTruncate ? 0 : 3;
        const std::size_t header = branch_ == Branch::kTruncate && !format_.mp2 ? 44 : 0;
        const Content wanted{Part(source.sound, format_.Before(begin), format_.Before(9) - header),
                             SelectionLevels(source.sheet, begin, 9)};

        run.storage.FailAt(operations, n, extent);
        const bool saved = SaveSelection(run, begin, 9, path);
        const bool failed = run.storage.HasFailed();
        run.storage.FailAt(0, 0);
        const std::optional<Content> after = AfterRestart(folder, path);
        if (saved) {
            EXPECT_EQ(after, wanted);
        } else {
            EXPECT_FALSE(run.boxes.shown.empty());
            EXPECT_TRUE(after == before || after == wanted || IsSalvaged(after, wanted) ||
                        (!before && after && after->first == wanted.first));
        }
        if (!InPlace()) {
            EXPECT_EQ(ReadFileBytes(source.path), TakeFile(format_, source.sound));
        } else if (run.project.SelectClip(0)) {  // the same run goes on with what is on disk
            EXPECT_EQ(run.recording.length, after == wanted ? 9 - begin : kShort);
        }
        return failed;
    }

    /// A copy under a new name whose source could not be read to its end.
    bool IsSalvaged(const std::optional<Content>& after, const Content& wanted) const {
        if (branch_ != Branch::kCopy || !after || after->first.size() != wanted.first.size())
            return false;
        const Bytes& sound = after->first;
        const auto end = std::ranges::mismatch(sound, wanted.first).in1;
        return end != sound.begin() && std::count(end, sound.end(), 0) == sound.end() - end;
    }

    const Branch branch_ = std::get<0>(GetParam());
    const TakeFormat format_{.mp2 = std::get<1>(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Branches, SaveSelectionFaults,
                         ::testing::Combine(::testing::Values(Branch::kCopy, Branch::kCopyOver,
                                                              Branch::kRebuild, Branch::kTruncate),
                                            ::testing::Bool()));

TEST_P(SaveSelectionFaults, WhateverFailsTheOldOrTheNewRecordingIsWholeWithItsLevels) {
    using Extent = FaultyStorage::Extent;
    int faults = 0;
    const auto failEach = [&](unsigned operations, Extent extent) {
        for (std::size_t n = 1; Try(operations, n, extent); ++n, ++faults)
            ASSERT_FALSE(HasFailure()) << "operations " << operations << ", call " << n;
    };
    for (unsigned kind = FaultyStorage::kOpen; kind <= FaultyStorage::kDelete; kind *= 2) {
        failEach(kind, Extent::kOnce);
        failEach(kind, Extent::kFromThenOn);
    }
    failEach(FaultyStorage::kAll, Extent::kFromThenOn);  // the process ends at any call
    EXPECT_GT(faults, 60);
}

}  // namespace
}  // namespace orma::test
