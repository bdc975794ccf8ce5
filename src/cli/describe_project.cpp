#include <stdexcept>

#include "cli/describe.h"
#include "project/project_file.h"

namespace orma::cli {

Json DescribeProject(Application& app, const Text& path) {
    ProjectRecord record;
    switch (ReadProjectFile(app.files, path, record)) {
        case ProjectReadResult::kOk:
            break;
        case ProjectReadResult::kWrongVersion:
            throw std::runtime_error("a project of a newer version: " + ToUtf8(path));
        default:
            throw std::runtime_error("cannot read the project " + ToUtf8(path));
    }
    Json clips = Json::array();
    for (const ClipEntry& clip : record.clips) {
        clips.push_back({{"name", ToJson(clip.name)},
                         {"folder", ToJson(clip.folder)},
                         {"begin", clip.begin},
                         {"end", clip.end},
                         {"reserved", clip.reserved},
                         {"title", ToJson(clip.title)}});
    }
    return {{"kind", "project"},
            {"version", record.version},
            {"sample rate code", record.audioFormatWord & 0xFFFFU},
            {"extra mode (stereo)", (record.audioFormatWord >> 16) & 0xFU},
            {"flags", record.flags},
            {"records MP2", (record.flags & 1U) != 0},
            {"records to FTP", (record.flags & 2U) != 0},
            {"recording index", record.recordingIndex},
            {"clips", std::move(clips)},
            {"text", ToJson(record.text)},
            {"publishing value", record.publishingValue},
            {"metadata 1", ToJson(record.metadata1)},
            {"metadata 2", ToJson(record.metadata2)},
            {"resolution shift", record.audioLayout},
            {"stream value 1", record.stream1},
            {"stream value 2", record.stream2to4[0]},
            {"stream value 3", record.stream2to4[1]},
            {"stream value 4", record.stream2to4[2]},
            {"stream value 5", record.stream5},
            {"current clip", record.currentClip}};
}

}  // namespace orma::cli
