#include "project_rig.h"

#include <algorithm>

#include "audio/files/take_journal.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_bytes.h"

namespace orma::test {

Bytes TakeFile(const TakeFormat& format, ByteSpan sound) {
    if (format.mp2) return {sound.begin(), sound.end()};
    return WavBytes({.channels = format.stereo ? 2U : 1U,
                     .sampleRate = format.rate,
                     .bits = format.bits,
                     .blockAlign = format.bits / 8U},
                    sound);
}

RandomTake::RandomTake(const TempFolder& folder, const Text& name, const TakeFormat& format,
                       std::uint32_t periods, std::mt19937& random)
    : path(folder.Path(name + format.Extension())) {
    const auto any = [&random](std::uint32_t below) {
        return static_cast<std::uint32_t>(random() % below);
    };
    sound.resize(format.Before(periods));
    std::ranges::generate(sound, [&] { return static_cast<std::uint8_t>(any(256)); });
    if (format.mp2) {
        const ProjectRun run(folder, format);
        const auto index = static_cast<std::uint8_t>(run.audio.bitrate.Index() + 1);
        const Bytes header = {0xFF, 0xFD, static_cast<std::uint8_t>(index << 4 | 4),
                              static_cast<std::uint8_t>(format.stereo ? 0x00 : 0xC0)};
        for (std::size_t at = 0; at + 4 <= sound.size(); at += format.kilobits * 3)
            std::ranges::copy(header, sound.begin() + static_cast<std::ptrdiff_t>(at));
    }
    sheet.rangeEnd = periods;
    sheet.resolutionShift = format.shift;
    for (std::uint32_t i = 0; i < periods; ++i)
        sheet.levels.push_back(static_cast<std::uint8_t>(any(80)));
    for (std::uint32_t i = any(12); i > 0; --i)
        InsertSorted(sheet.marks, any(periods));
    for (std::uint32_t at = any(9) + 1; at + 5 < periods; at += any(9) + 1)
        sheet.cuts.push_back({at, at + any(5), any(1000)});
    WriteFileBytes(path, TakeFile(format, sound));
    WriteFileBytes(WithExtension(path, u".jvu"), EncodeVuFile(sheet));
}

ProjectRun::ProjectRun(const TempFolder& folder, const TakeFormat& format) {
    audio.mp2 = format.mp2;
    audio.stereo = format.stereo;
    audio.resolutionShift = format.shift;
    const auto& rates = Mp2Bitrate::kBitsPerSecond;
    const auto rate = std::ranges::find(rates, format.kilobits * 1000);
    audio.bitrate.SetMp2Bitrate(static_cast<std::uint32_t>(rate - rates.begin()), report);
    project.SetPath(folder.Path(), u"talk");
}

void ProjectTest::AddWav(const Text& name, std::uint32_t periods) const {
    WriteFileBytes(Path(name + u".wav"), TakeFile({}, Bytes(periods * kPeriodBytes)));
}

void ProjectTest::AddLevels(const Text& name, std::uint32_t periods,
                            const std::vector<RemovedRange>& cuts) {
    LevelSheet sheet;
    sheet.rangeEnd = periods;
    sheet.cuts = cuts;
    sheet.levels.assign(periods, 30);
    EXPECT_TRUE(WriteVuFile(files, Path(name + u".jvu"), sheet));
}

void ProjectTest::AddClipOf(const Text& name, std::uint32_t begin, std::uint32_t end) {
    ClipEntry clip;
    clip.folder = folder.Path();
    clip.name = name;
    clip.begin = begin;
    clip.end = end;
    clips.Append(clip);
}

void ProjectTest::AddProjectFile(const Text& name, const Names& clipNames) {
    ProjectRecord record;
    record.audioFormatWord = 1;
    record.audioLayout = 2;
    for (const Text& clipName : clipNames)
        record.clips.emplace_back().name = clipName;
    EXPECT_TRUE(WriteProjectFile(files, Path(name + u".opr"), record));
}

Names ProjectTest::StoredNames(TextView file) {
    ProjectRecord record;
    EXPECT_EQ(ReadProjectFile(files, Path(file), record), ProjectReadResult::kOk);
    Names names;
    for (const ClipEntry& clip : record.clips)
        names.push_back(clip.name);
    return names;
}

Names ProjectTest::ShownNames() const {
    Names names;
    for (std::int32_t i = 0; i < clips.Count(); ++i)
        names.push_back(clips.At(i).ShownName());
    return names;
}

void ProjectTest::RecordTake(std::uint32_t periods) {
    AddWav(project.PrepareTake(), periods);
    recording.sheet.levels.assign(periods, 30);
    project.TakeFinished();
}

void ProjectTest::LeaveJournal(TextView take, ByteSpan sound) {
    TakeJournal journal;
    EXPECT_TRUE(journal.Start(files, Path(Text(take) + u".wav"), {.blockBytes = 4096}, 0));
    journal.Append(sound);
    journal.Close();
}

}  // namespace orma::test
