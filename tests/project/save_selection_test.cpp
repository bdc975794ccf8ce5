#include "project/save_selection.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "audio/files/vu_file.h"
#include "edit_rig.h"
#include "project/recording_access.h"
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

TEST(SaveSelection, CopiesExactlyTheBytesOfTwoHundredSelections) {
    const FoldersInMemory fast;
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const TempFolder folder;
        const TakeFormat format = AnyFormat(random, round % 2 == 1);
        const RandomTake take(folder, u"talk00", format, kPeriods, random);
        EditRun run(folder, format);
        ASSERT_TRUE(run.project.OpenRecording(take.path));
        const auto begin = std::uint32_t(random() % kPeriods);
        const auto end = begin + 1 + std::uint32_t(random() % (kPeriods - begin));
        run.recording.selectionStart = begin;
        run.recording.selectionEnd = end;
        const Text out = ProposedSelectionPath(run.project);
        ASSERT_EQ(out, folder.Path(u"talk00_S" + format.Extension()));
        ASSERT_TRUE(MenuSaveSelAs(run.project, out, false)) << round;
        ASSERT_EQ(ReadFileBytes(out),
                  TakeFile(format, Part(take.sound, format.Before(begin), format.Before(end))))
            << round;
        ASSERT_EQ(ReadFileBytes(WithExtension(out, u".jvu")),
                  SelectionLevels(take.sheet, begin, end))
            << round;
        ASSERT_EQ(ReadFileBytes(take.path), TakeFile(format, take.sound));
    }
}

TEST(SaveSelection, OfTheWholeRecordingOverItselfOrWhileBusyOrOfNothingChangesNothing) {
    std::mt19937 random(1);
    const TempFolder folder;
    const RandomTake take(folder, u"talk00", {}, kPeriods, random);
    EditRun run(folder, {});
    ASSERT_TRUE(run.project.OpenRecording(take.path));
    EXPECT_FALSE(MenuSaveSelAs(run.project, take.path, true));
    EXPECT_FALSE(MenuSaveSelAs(run.project, take.path, false));
    run.recording.selectionEnd = kPeriods;
    EXPECT_TRUE(MenuSaveSelAs(run.project, take.path, false));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, take.sound));
    // One period of a file cut in place is no whole period any more, and could not be read.
    run.recording.selectionEnd = 1;
    EXPECT_FALSE(MenuSaveSelAs(run.project, take.path, false));
    // The other kind's level file would be overwritten.
    WriteFileBytes(folder.Path(u"b.mp2"), AsBytes("x"));
    EXPECT_FALSE(MenuSaveSelAs(run.project, folder.Path(u"b.wav"), false));
    EXPECT_EQ(
        run.boxes.Texts(),
        (std::vector<Text>{u"MenuSaveSelAs", u"Nothing selected", u"The selection is too short.",
                           u"The name belongs to another recording: " + folder.Path(u"b.mp2")}));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, take.sound));
}

TEST(SaveSelection, NeverTakesWhatFollowsTheSoundForSound) {
    std::mt19937 random(5);
    const TempFolder folder;
    const RandomTake take(folder, u"talk00", {}, kPeriods, random);
    // The last period is cut short, and another chunk follows: levels count one period more.
    const std::size_t there = take.sound.size() - 1000;
    Bytes file = TakeFile({}, Part(take.sound, 0, there));
    const Bytes chunk = ByteBuilder{}.Put("LIST").U32(2000).Fill(2000, 'x').bytes;
    file.insert(file.end(), chunk.begin(), chunk.end());
    StoreLe(file.data() + 4, static_cast<std::uint32_t>(file.size() - 8));
    WriteFileBytes(take.path, file);
    EditRun run(folder, {});
    ASSERT_TRUE(run.project.OpenRecording(take.path));
    const auto select = [&](std::uint32_t begin, std::uint32_t end) {
        run.recording.selectionStart = begin;
        run.recording.selectionEnd = end;
    };
    select(58, 60);
    ASSERT_TRUE(MenuSaveSelAs(run.project, folder.Path(u"b.wav"), false));
    Bytes wanted = Part(take.sound, 4410 * 58, there);
    wanted.resize(4410 * 2);
    EXPECT_EQ(ReadFileBytes(folder.Path(u"b.wav")), TakeFile({}, wanted));
    // Not cut in place either: its sizes say something else than ours do.
    select(0, 20);
    ASSERT_TRUE(MenuSaveSelAs(run.project, take.path, false));
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, Part(take.sound, 0, 4410 * 20)));
}

TEST(SaveSelection, OverItselfTakesTheClipsAlong) {
    std::mt19937 random(2);
    const TempFolder folder;
    const RandomTake take(folder, u"talk00", {}, kPeriods, random);
    EditRun run(folder, {});
    run.project.NewProject();
    run.audio.resolutionShift = 2;
    const auto add = [&](std::uint32_t begin, std::uint32_t end) {
        ClipEntry clip;
        clip.folder = folder.Path();
        clip.name = u"talk00";
        clip.begin = begin;
        clip.end = end;
        run.clips.Append(clip);
    };
    for (const auto& [begin, end] : {std::pair{0U, 0U}, {2U, 8U}, {5U, 20U}, {10U, 40U}})
        add(begin, end);
    ASSERT_TRUE(run.project.SelectClip(3));
    FileTime before;
    ASSERT_EQ(run.storage.SetLastWriteTime(take.path, FileTime(std::chrono::seconds(99))), 0U);
    ASSERT_TRUE(MenuSaveSelAs(run.project, take.path, false));
    ASSERT_EQ(run.clips.Count(), 3);  // nothing was left of 2 to 8
    EXPECT_EQ(run.clips.At(0).end, 0U);
    EXPECT_EQ(run.clips.At(1).begin, 0U);
    EXPECT_EQ(run.clips.At(1).end, 10U);
    EXPECT_EQ(run.clips.At(2).end, 0U);
    EXPECT_EQ(run.clips.CurrentIndex(), 2);
    EXPECT_EQ(run.recording.length, 30U);
    EXPECT_EQ(ReadFileBytes(take.path), TakeFile({}, Part(take.sound, 4410 * 10, 4410 * 40)));
    ASSERT_EQ(run.storage.LastWriteTime(take.path, before), 0U);
    EXPECT_EQ(before, FileTime(std::chrono::seconds(99)));  // it dates the recording
    EXPECT_FALSE(run.storage.Exists(folder.Path(u"talk00.wa2")));
}

TEST(SaveSelection, LeavesNoJournalThatCouldBeBroughtIn) {
    std::mt19937 random(3);
    const TempFolder folder;
    const RandomTake take(folder, u"talk00", {}, kPeriods, random);
    TakeJournal journal;
    EditRun run(folder, {});
    ASSERT_TRUE(journal.Start(run.files, take.path, {.blockBytes = 65536},
                              std::uint32_t(44 + take.sound.size())));
    journal.Append(Bytes(4410, 5));
    EditRun other(folder, {});
    ASSERT_TRUE(other.project.OpenRecording(take.path));
    other.recording.selectionEnd = 20;
    EXPECT_FALSE(MenuSaveSelAs(other.project, take.path, false));  // it is being recorded
    journal.Close();
    ASSERT_TRUE(run.project.OpenRecording(take.path));
    run.recording.selectionEnd = 20;
    ASSERT_TRUE(MenuSaveSelAs(run.project, take.path, false));
    EXPECT_FALSE(run.storage.Exists(folder.Path(u"talk00.rec")));
    EXPECT_EQ(run.recording.length, 20U);
    EXPECT_EQ(ReadFileBytes(take.path).size(), 4410U * 20);
}

enum class Branch { kCopy, kCopyOver, kRebuild, kTruncate };

struct Fault {
    Branch branch;
    bool mp2;
};

class SaveSelectionFaults : public ::testing::TestWithParam<Fault> {
  protected:
    static constexpr std::uint32_t kShort = 12;

    SaveSelectionFaults() : format_{.mp2 = GetParam().mp2} {}

    [[nodiscard]] bool InPlace() const {
        return GetParam().branch == Branch::kRebuild || GetParam().branch == Branch::kTruncate;
    }

    struct Content {
        Bytes sound;
        Bytes levels;
        bool operator==(const Content&) const = default;
    };

    /// The recording as the next start of the program finds it, with its clip.
    std::optional<Content> AfterRestart(const TempFolder& folder, const Text& path) {
        EditRun run(folder, format_);
        EXPECT_TRUE(run.project.LoadProject());
        EXPECT_EQ(run.clips.Count(), 1);
        if (!run.storage.Exists(path)) return std::nullopt;
        EXPECT_TRUE(ReadRecording(run.project.Readers(), path));
        for (const TextView left : {u".wa2", u".jv2"})
            EXPECT_FALSE(run.storage.Exists(WithExtension(path, left)));
        EXPECT_TRUE(run.boxes.shown.empty());
        const Bytes file = ReadFileBytes(path);
        Content content{Part(file, format_.mp2 ? 0 : 44, file.size()), {}};
        EXPECT_EQ(file, TakeFile(format_, content.sound));
        if (run.storage.Exists(WithExtension(path, u".jvu")))
            content.levels = ReadFileBytes(WithExtension(path, u".jvu"));
        return content;
    }

    /// Saves with a fault; true when it was met.
    bool Try(unsigned operations, std::size_t n, FaultyStorage::Extent extent) {
        std::mt19937 random(11);
        const TempFolder folder;
        const RandomTake source(folder, u"talk00", format_, kShort, random);
        const Branch branch = GetParam().branch;
        const Text path = InPlace() ? source.path : folder.Path(u"part" + format_.Extension());
        std::optional<Content> before;
        if (InPlace()) before = {source.sound, EncodeVuFile(source.sheet)};
        if (branch == Branch::kCopyOver) {
            const RandomTake old(folder, u"part", format_, kShort, random);
            before = {old.sound, EncodeVuFile(old.sheet)};
        }
        EditRun run(folder, format_);
        run.project.NewProject();
        run.audio.mp2 = format_.mp2;
        ClipEntry clip;
        clip.folder = folder.Path();
        clip.name = u"talk00";
        run.clips.Append(clip);
        EXPECT_TRUE(run.project.SelectClip(0) && run.project.SaveProject());
        const std::uint32_t begin = branch == Branch::kTruncate ? 0 : 3;
        run.recording.selectionStart = begin;
        run.recording.selectionEnd = 9;
        const std::size_t header = branch == Branch::kTruncate && !format_.mp2 ? 44 : 0;
        const Content wanted{Part(source.sound, format_.Before(begin), format_.Before(9) - header),
                             SelectionLevels(source.sheet, begin, 9)};

        run.storage.FailAt(operations, n, extent);
        const bool saved = MenuSaveSelAs(run.project, path, false);
        const bool failed = run.storage.HasFailed();
        run.storage.FailAt(0, 0);
        const std::optional<Content> after = AfterRestart(folder, path);
        if (saved) {
            EXPECT_EQ(after, wanted);
        } else {
            EXPECT_FALSE(run.boxes.shown.empty());
            const bool whole = after == before || after == wanted || IsSalvaged(after, wanted) ||
                               (!before && after && after->sound == wanted.sound);
            EXPECT_TRUE(whole) << (before ? before->sound.size() : 0) << " "
                               << (after ? after->sound.size() : 0) << " " << wanted.sound.size()
                               << (before && after && after->levels == before->levels ? " old" : "")
                               << (after && after->levels == wanted.levels ? " new" : "");
        }
        if (!InPlace()) {
            EXPECT_EQ(ReadFileBytes(source.path), TakeFile(format_, source.sound));
        }
        // The same run goes on with what is on disk.
        if (InPlace() && run.project.SelectClip(0)) {
            EXPECT_EQ(run.recording.length, after == wanted ? 9 - begin : kShort);
        }
        return failed;
    }

    /// A copy under a new name whose source could not be read to its end.
    bool IsSalvaged(const std::optional<Content>& after, const Content& wanted) const {
        if (GetParam().branch != Branch::kCopy || !after ||
            after->sound.size() != wanted.sound.size())
            return false;
        const auto [end, other] = std::ranges::mismatch(after->sound, wanted.sound);
        return end != after->sound.begin() &&
               std::all_of(end, after->sound.end(), [](std::uint8_t byte) { return byte == 0; });
    }

    FoldersInMemory fast_;
    TakeFormat format_;
};

INSTANTIATE_TEST_SUITE_P(
    Branches, SaveSelectionFaults,
    ::testing::Values(Fault{Branch::kCopy, false}, Fault{Branch::kCopy, true},
                      Fault{Branch::kCopyOver, false}, Fault{Branch::kCopyOver, true},
                      Fault{Branch::kRebuild, false}, Fault{Branch::kRebuild, true},
                      Fault{Branch::kTruncate, false}, Fault{Branch::kTruncate, true}));

TEST_P(SaveSelectionFaults, WhateverFailsTheOldOrTheNewRecordingIsWholeWithItsLevels) {
    int faults = 0;
    using Extent = FaultyStorage::Extent;
    for (unsigned kind = FaultyStorage::kOpen; kind <= FaultyStorage::kDelete; kind *= 2) {
        for (const Extent extent : {Extent::kOnce, Extent::kFromThenOn}) {
            std::size_t n = 1;
            for (; Try(kind, n, extent) && !HasFailure(); ++n)
                ++faults;
            ASSERT_FALSE(HasFailure()) << "operation " << kind << ", call " << n;
        }
    }
    // The process ends at any call.
    for (std::size_t n = 1; Try(FaultyStorage::kAll, n, Extent::kFromThenOn); ++n, ++faults)
        ASSERT_FALSE(HasFailure()) << "ended at call " << n;
    RecordProperty("faults", faults);
    EXPECT_GT(faults, 60);
}

}  // namespace
}  // namespace orma::test
