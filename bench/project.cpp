// bench_project FOLDER: opening a project of 10,000 clips. Each clip has a take of its own, a WAV
// file of one minute whose sound is a hole in the file, and a level file; a second measurement
// without the level files makes it look into the sound files instead.

#include "project/project.h"

#include <filesystem>
#include <fstream>

#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "measure.h"
#include "platform/posix/posix_clock.h"

namespace orma::bench {
namespace {

constexpr std::int32_t kClips = 10000;
constexpr std::uint32_t kPeriods = 60 * 20;
constexpr std::uint32_t kDataBytes = kPeriods * 4410;

Text TakeName(std::int32_t number) {
    return FormatText("report%05d", number);
}

void MakeProject(Desk& desk, const Text& folder) {
    WavHeader header;
    header.riffSize = kDataBytes + 36;
    header.dataSize = kDataBytes;
    const auto head = header.Encode();
    LevelSheet sheet;
    sheet.rangeEnd = kPeriods;
    sheet.levels.assign(kPeriods, 30);
    const Bytes levels = EncodeVuFile(sheet);

    ProjectRecord record;
    record.audioFormatWord = 1;
    record.audioLayout = 2;
    record.currentClip = 0;
    for (std::int32_t i = 0; i < kClips; ++i) {
        const std::string base = ToUtf8(folder + TakeName(i));
        std::ofstream wav(base + ".wav", std::ios::binary);
        wav.write(reinterpret_cast<const char*>(head.data()),
                  static_cast<std::streamsize>(head.size()));
        wav.seekp(static_cast<std::streamoff>(head.size() + kDataBytes - 1));
        wav.put('\0');
        std::ofstream jvu(base + ".jvu", std::ios::binary);
        jvu.write(reinterpret_cast<const char*>(levels.data()),
                  static_cast<std::streamsize>(levels.size()));
        Require(wav.good() && jvu.good(), "cannot write the takes");
        ClipEntry clip;
        clip.name = TakeName(i);
        clip.folder = folder;
        clip.title = FormatText("Report number %d", i);
        record.clips.push_back(std::move(clip));
    }
    Require(WriteProjectFile(desk.Files(), folder + u"many.opr", record), "no project file");
}

void Load(Desk& desk, const Text& folder) {
    PosixClock clock;
    ClipList clips;
    CurrentRecording recording;
    Project project(
        {.readers = desk.Readers(), .clock = clock, .clips = clips, .recording = recording});
    project.SetPath(folder, u"many");
    Require(project.LoadProject() && clips.Count() == kClips, "the project was not loaded whole");
    Require(clips.At(kClips - 1).length == kPeriods, "a clip has another length");
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    using namespace orma::bench;
    Require(count == 2, "usage: bench_project FOLDER");
    const orma::Text folder = orma::FromUtf8(words[1]);
    Desk desk;
    MakeProject(desk, folder);
    Compare("project", {{"levels", [&] { Load(desk, folder); }}});
    for (std::int32_t i = 0; i < kClips; ++i)
        std::filesystem::remove(orma::ToUtf8(folder + TakeName(i)) + ".jvu");
    Compare("project", {{"audio", [&] { Load(desk, folder); }}});
}
