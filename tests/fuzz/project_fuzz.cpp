// Project files, alone and with the project that loads and saves them.

#include <tuple>

#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "fuzz/project_desk.h"

namespace orma::test {

// The takes beside the project. A clip of an old file takes 8 bytes there and 400 in memory, with
// its texts and dates; the record that was read holds it, the clip list, the record to be saved and
// the one that this replaces, and lists double while they grow.
const MemoryBudget kMemoryBudget{.fixedBytes = 64 * 1024, .bytesPerInputByte = 512};

namespace {

/// What a clip carries through everything.
auto Carried(const ClipEntry& clip) {
    return std::tuple(clip.title, clip.begin, clip.end, clip.reserved);
}

/// All of a record but its version, for comparison; floats by their bits.
auto Fields(const ProjectRecord& r) {
    std::vector<std::tuple<Text, Text, Text, std::uint32_t, std::uint32_t, std::uint32_t>> clips;
    for (const ClipEntry& clip : r.clips)
        clips.emplace_back(clip.name, clip.folder, clip.title, clip.begin, clip.end, clip.reserved);
    return std::tuple(r.audioFormatWord, r.flags, r.recordingIndex, clips, r.text,
                      r.publishingValue, r.metadata1, r.metadata2, r.audioLayout, r.stream1,
                      std::bit_cast<std::array<std::uint64_t, 3>>(r.stream2to4), r.stream5,
                      r.currentClip);
}

Bytes ShortWav() {
    WavHeader header;
    header.dataSize = 2 * 4410;  // two periods
    header.riffSize = header.dataSize + 36;
    const auto head = header.Encode();
    Bytes file(head.begin(), head.end());
    file.resize(file.size() + header.dataSize);
    return file;
}

/// A project named "talk".
struct Desk : ProjectDesk {
    explicit Desk(FuzzFiles& files) : ProjectDesk(files) {
        project.SetOptions({.liveFtpAllowed = true});
        project.SetPath(u"news/", u"talk");
    }
};

/// A take of each kind beside it.
void AddTakes(MemoryStorage& storage) {
    storage.Put(u"news/talk00.wav", ShortWav());
    storage.Put(u"news/talk01.wav", ShortWav());
    storage.Put(u"news/talk00.mp2", SilentFrames(10, 192, {0xFF, 0xFD, 0x44, 0xC4}));
    LevelSheet sheet;
    sheet.levels = {20, 30, 40, 50};
    sheet.cuts = {{1, 2, 0}};
    storage.Put(u"news/talk01.jvu", EncodeVuFile(sheet));
}

ProjectRecord Stored(FuzzFiles& files) {
    ProjectRecord record;
    Require(ReadProjectFile(files.services, u"news/talk.opr", record) == ProjectReadResult::kOk,
            "a saved project is a project");
    return record;
}

void TryProject(ByteSpan bytes, const ProjectRecord& input) {
    FuzzFiles files(bytes.size());
    files.storage.Put(u"news/talk.opr", bytes);
    AddTakes(files.storage);
    Desk first(files);
    Require(first.project.LoadProject(), "what can be read is loaded");
    Require(first.project.SaveProject(), "what was loaded can be saved");

    // A clip whose name is empty, or ends in its folder, refers to nothing.
    std::vector<ClipEntry> real;
    std::ranges::copy_if(input.clips, std::back_inserter(real), [](const ClipEntry& clip) {
        return !clip.name.empty() && clip.name.back() != u'/' && clip.name.back() != u'\\';
    });
    if (real.empty()) {
        Require(files.storage.Find(u"news/talk.opr") == nullptr, "no clips, no file");
        return;
    }
    const ProjectRecord saved = Stored(files);
    Require(std::ranges::equal(real, saved.clips, {}, Carried, Carried), "no clip is lost");
    Require(saved.text == input.text && saved.metadata1 == input.metadata1 &&
                saved.metadata2 == input.metadata2,
            "no text is lost");
    const Bytes once = *files.storage.Find(u"news/talk.opr");
    Desk second(files);
    Require(second.project.LoadProject() && second.project.SaveProject(), "it loads again");
    Require(once == *files.storage.Find(u"news/talk.opr"), "a project survives loading and saving");
    Require(second.clips.Count() == first.clips.Count() &&
                second.clips.TotalLength() == first.clips.TotalLength(),
            "the same clips are shown");
}

}  // namespace

void TryInput(ByteSpan bytes) {
    ProjectRecord record;
    if (DecodeProjectFile(bytes, record) != ProjectReadResult::kOk) return;
    ProjectRecord again;
    Require(DecodeProjectFile(EncodeProjectFile(record), again) == ProjectReadResult::kOk,
            "a project file that was written can be read");
    Require(Fields(record) == Fields(again), "a record survives its file");
    TryProject(bytes, record);
}

}  // namespace orma::test
