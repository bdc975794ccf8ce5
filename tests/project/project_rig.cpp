#include "project_rig.h"

#include <gtest/gtest.h>

#include "audio/files/vu_file.h"
#include "support/sound_files.h"

namespace orma::test {

void ProjectRig::AddWav(const Text& name, std::uint32_t periods) const {
    WriteSoundFile(Path(name + u".wav"), 1, 44100,
                   std::vector<std::int16_t>(periods * kPeriodBytes / 2));
}

void ProjectRig::AddLevels(const Text& name, std::uint32_t periods,
                           const std::vector<RemovedRange>& cuts) {
    LevelSheet sheet;
    sheet.rangeEnd = periods;
    sheet.cuts = cuts;
    sheet.levels.assign(periods, 30);
    EXPECT_TRUE(WriteVuFile(files.services, Path(name + u".jvu"), sheet));
}

ProjectRecord ProjectRig::AddProjectFile(const Text& name, const std::vector<Text>& clipNames) {
    ProjectRecord record;
    record.audioFormatWord = 1;
    record.audioLayout = 2;
    for (const Text& clipName : clipNames)
        record.clips.emplace_back().name = clipName;
    EXPECT_TRUE(WriteProjectFile(files.services, Path(name + u".opr"), record));
    return record;
}

std::vector<Text> ProjectRig::StoredNames(TextView file) {
    ProjectRecord record;
    EXPECT_EQ(ReadProjectFile(files.services, Path(file), record), ProjectReadResult::kOk);
    std::vector<Text> names;
    for (const ClipEntry& clip : record.clips)
        names.push_back(clip.name);
    return names;
}

std::vector<Text> ProjectRig::ShownNames() const {
    std::vector<Text> names;
    for (std::int32_t i = 0; i < clips.Count(); ++i)
        names.push_back(clips.At(i).name);
    return names;
}

void ProjectRig::RecordTake(std::uint32_t periods) {
    AddWav(project.PrepareTake(), periods);
    recording.sheet.levels.assign(periods, 30);
    project.TakeFinished();
}

}  // namespace orma::test
