#include "project/project_file.h"

#include <algorithm>
#include <string_view>

#include "stream/binary_fields.h"
#include "stream/whole_file.h"

namespace orma {
namespace {

constexpr std::string_view kMagic = "JOPR";
constexpr std::size_t kHeadBytes = 8;
constexpr std::uint32_t kVersionBits = 0xFFF;  // the higher bits of the version word mean nothing
constexpr std::uint32_t kClipRangeVersion = 5;

ProjectReadResult CheckHead(ByteSpan head) {
    if (head.size() < kMagic.size() || !IsTag(head.data(), kMagic))
        return ProjectReadResult::kWrongMagic;
    std::uint32_t version = 0;
    FieldReader(head.subspan(kMagic.size())).Get(version);
    if ((version & kVersionBits) > ProjectRecord::kVersion) return ProjectReadResult::kWrongVersion;
    return ProjectReadResult::kOk;
}

std::vector<ClipEntry> ReadClips(FieldReader& file, std::uint32_t version) {
    const bool withRange = version >= kClipRangeVersion;
    std::uint32_t count = 0;
    file.Get(count);
    std::vector<ClipEntry> clips;  // not reserved: only clips that are there take memory
    while (clips.size() < count && file.Remaining() > 0) {
        ClipEntry& clip = clips.emplace_back();
        file.Get(clip.name);
        file.Get(clip.folder);
        if (!withRange) continue;
        file.Get(clip.begin);
        file.Get(clip.end);
        file.Get(clip.reserved);
        file.Get(clip.title);
    }
    return clips;
}

void WriteClips(FieldWriter& file, const std::vector<ClipEntry>& clips) {
    file.Put(static_cast<std::uint32_t>(clips.size()));
    for (const ClipEntry& clip : clips) {
        file.Put(clip.name);
        file.Put(clip.folder);
        file.Put(clip.begin);
        file.Put(clip.end);
        file.Put(clip.reserved);
        file.Put(clip.title);
    }
}

}  // namespace

Bytes EncodeProjectFile(const ProjectRecord& record) {
    FieldWriter file;
    file.PutTag(kMagic);
    file.Put(ProjectRecord::kVersion);
    file.Put(record.audioFormatWord);
    file.Put(record.flags);
    file.Put(record.recordingIndex);
    WriteClips(file, record.clips);
    file.Put(record.text);
    file.Put(record.publishingValue);
    file.Put(TextView(record.metadata1).substr(0, ProjectRecord::kMetadataUnits));
    file.Put(TextView(record.metadata2).substr(0, ProjectRecord::kMetadataUnits));
    file.Put(record.audioLayout);
    file.Put(record.stream1);
    for (const double value : record.stream2to4)
        file.Put(value);
    file.Put(record.stream5);
    file.Put(record.currentClip);
    return file.Written();
}

ProjectReadResult DecodeProjectFile(ByteSpan bytes, ProjectRecord& record) {
    if (const ProjectReadResult result = CheckHead(bytes); result != ProjectReadResult::kOk)
        return result;
    FieldReader file(bytes.subspan(kMagic.size()));
    ProjectRecord read;
    file.Get(read.version);
    read.version &= kVersionBits;
    file.Get(read.audioFormatWord);
    file.Get(read.flags);
    file.Get(read.recordingIndex);
    read.clips = ReadClips(file, read.version);
    file.Get(read.text);
    if (read.version >= 4) {
        file.Get(read.publishingValue);
        file.Get(read.metadata1, ProjectRecord::kMetadataUnits);
        file.Get(read.metadata2, ProjectRecord::kMetadataUnits);
    }
    if (read.version >= 6) file.Get(read.audioLayout);
    if (read.version >= 9) {
        file.Get(read.stream1);
        for (double& value : read.stream2to4)
            file.Get(value);
        file.Get(read.stream5);
    }
    if (read.version >= 10) file.Get(read.currentClip);
    record = std::move(read);
    return ProjectReadResult::kOk;
}

ProjectReadResult ReadProjectFile(FileServices services, const Text& path, ProjectRecord& record) {
    {
        JStreamFile file(services, path, true);
        Bytes head(std::min<std::size_t>(kHeadBytes, file.GetSize()));
        file.ReadHeld(head.data(), static_cast<std::uint32_t>(head.size()));
        if (!file.IsOpen()) return ProjectReadResult::kNotOpened;
        if (const ProjectReadResult result = CheckHead(head); result != ProjectReadResult::kOk)
            return result;
    }
    const std::optional<Bytes> bytes = ReadWholeFile(services, path);
    return bytes ? DecodeProjectFile(*bytes, record) : ProjectReadResult::kNotOpened;
}

bool WriteProjectFile(FileServices services, const Text& path, const ProjectRecord& record) {
    return ReplaceWholeFile(services, path, EncodeProjectFile(record));
}

}  // namespace orma
