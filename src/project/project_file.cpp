#include "project/project_file.h"

#include <algorithm>
#include <string_view>

#include "project/whole_file.h"

namespace orma {
namespace {

constexpr std::string_view kMagic = "JOPR";
constexpr std::size_t kHeadBytes = 8;
constexpr std::uint32_t kVersionBits = 0xFFF;  // the higher bits of the version word mean nothing
constexpr std::uint32_t kClipRangeVersion = 5;

// Both directions work on the file's bytes in memory: a clip list of thousands of small fields
// would otherwise cost several system calls a field.

class FieldReader {
  public:
    explicit FieldReader(ByteSpan bytes) : rest_(bytes) {}

    [[nodiscard]] std::uint32_t U32() { return Field<std::uint32_t>(); }
    [[nodiscard]] double F64() { return Field<double>(); }

    /// A count that the file cannot hold ends the file there.
    [[nodiscard]] Text String(std::size_t maxUnits = Text::npos) {
        const std::size_t count = U32();
        if (count == 0) return {};
        if (count + 1 > rest_.size() / 2) {
            rest_ = {};
            return {};
        }
        Text text(count, u'\0');
        std::memcpy(text.data(), rest_.data(), 2 * count);
        rest_ = rest_.subspan(2 * (count + 1));
        text.resize(std::min({text.find(u'\0'), count, maxUnits}));
        return text;
    }

    [[nodiscard]] std::size_t Remaining() const { return rest_.size(); }

  private:
    template <class T>
    T Field() {
        std::array<std::uint8_t, sizeof(T)> bytes{};
        const std::size_t got = std::min(sizeof(T), rest_.size());
        std::copy_n(rest_.begin(), got, bytes.begin());
        rest_ = rest_.subspan(got);
        return LoadLe<T>(bytes.data());
    }

    ByteSpan rest_;
};

class FieldWriter {
  public:
    void U32(std::uint32_t value) { Field(value); }
    void F64(double value) { Field(value); }

    void String(TextView text) {
        U32(static_cast<std::uint32_t>(text.size()));
        if (text.empty()) return;
        for (const char16_t unit : text)
            Field(unit);
        Field(u'\0');
    }

    [[nodiscard]] Bytes Take() { return std::move(bytes_); }

  private:
    template <class T>
    void Field(T value) {
        bytes_.resize(bytes_.size() + sizeof(T));
        StoreLe(bytes_.data() + bytes_.size() - sizeof(T), value);
    }

    Bytes bytes_;
};

ProjectReadResult CheckHead(ByteSpan head) {
    if (head.size() < kMagic.size() || !IsTag(head.data(), kMagic))
        return ProjectReadResult::kWrongMagic;
    FieldReader version(head.subspan(kMagic.size()));
    if ((version.U32() & kVersionBits) > ProjectRecord::kVersion)
        return ProjectReadResult::kWrongVersion;
    return ProjectReadResult::kOk;
}

std::vector<ClipEntry> ReadClips(FieldReader& file, std::uint32_t version) {
    const bool withRange = version >= kClipRangeVersion;
    const std::size_t count = file.U32();
    std::vector<ClipEntry> clips;  // not reserved: only clips that are there take memory
    while (clips.size() < count && file.Remaining() > 0) {
        ClipEntry& clip = clips.emplace_back();
        clip.name = file.String();
        clip.folder = file.String();
        if (!withRange) continue;
        clip.begin = file.U32();
        clip.end = file.U32();
        clip.reserved = file.U32();
        clip.title = file.String();
    }
    return clips;
}

void WriteClips(FieldWriter& file, const std::vector<ClipEntry>& clips) {
    file.U32(static_cast<std::uint32_t>(clips.size()));
    for (const ClipEntry& clip : clips) {
        file.String(clip.name);
        file.String(clip.folder);
        file.U32(clip.begin);
        file.U32(clip.end);
        file.U32(clip.reserved);
        file.String(clip.title);
    }
}

}  // namespace

Bytes EncodeProjectFile(const ProjectRecord& record) {
    FieldWriter file;
    file.U32(LoadLe<std::uint32_t>(AsBytes(kMagic).data()));
    file.U32(ProjectRecord::kVersion);
    file.U32(record.audioFormatWord);
    file.U32(record.flags);
    file.U32(static_cast<std::uint32_t>(record.recordingIndex));
    WriteClips(file, record.clips);
    file.String(record.text);
    file.U32(record.publishingValue);
    file.String(TextView(record.metadata1).substr(0, ProjectRecord::kMetadataUnits));
    file.String(TextView(record.metadata2).substr(0, ProjectRecord::kMetadataUnits));
    file.U32(record.audioLayout);
    file.U32(record.stream1);
    for (const double value : record.stream2to4)
        file.F64(value);
    file.U32(record.stream5);
    file.U32(static_cast<std::uint32_t>(record.currentClip));
    return file.Take();
}

ProjectReadResult DecodeProjectFile(ByteSpan bytes, ProjectRecord& record) {
    if (const ProjectReadResult result = CheckHead(bytes); result != ProjectReadResult::kOk)
        return result;
    FieldReader file(bytes.subspan(kMagic.size()));
    ProjectRecord read;
    read.version = file.U32() & kVersionBits;
    read.audioFormatWord = file.U32();
    read.flags = file.U32();
    read.recordingIndex = static_cast<std::int32_t>(file.U32());
    read.clips = ReadClips(file, read.version);
    read.text = file.String();
    if (read.version >= 4) {
        read.publishingValue = file.U32();
        read.metadata1 = file.String(ProjectRecord::kMetadataUnits);
        read.metadata2 = file.String(ProjectRecord::kMetadataUnits);
    }
    if (read.version >= 6) read.audioLayout = file.U32();
    if (read.version >= 9) {
        read.stream1 = file.U32();
        for (double& value : read.stream2to4)
            value = file.F64();
        read.stream5 = file.U32();
    }
    if (read.version >= 10) read.currentClip = static_cast<std::int32_t>(file.U32());
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
