// Checks of `fmt `, `fact` and `mext`.

#include <algorithm>
#include <array>

#include "audio/files/buffer_period.h"
#include "audio/files/mp2_bitrate.h"
#include "base/bytes.h"
#include "publish/verify_head.h"

namespace orma {
namespace {

constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kMpeg = 0x0050;

/// The fixed-size content of a chunk, with its place in the file for findings.
template <std::size_t Size>
class Fields {
  public:
    [[nodiscard]] bool Load(VerifySource& source, const FileChunk& chunk, VerifyNotes& notes) {
        at_ = chunk.Content();
        notes_ = &notes;
        if (chunk.size == Size && source.Read(at_, bytes_)) return true;
        notes.Find(chunk.offset + 4, Format("'%s' has %u bytes, should have %zu", chunk.tag.c_str(),
                                            chunk.size, Size));
        return false;
    }

    template <class T>
    [[nodiscard]] T Get(std::size_t offset) const {
        return LoadLe<T>(&bytes_[offset]);
    }

    template <class T>
    void Expect(std::size_t offset, std::uint32_t wanted, const char* name) const {
        const auto value = static_cast<std::uint32_t>(Get<T>(offset));
        if (value != wanted)
            notes_->Find(at_ + offset, Format("%s is %u, should be %u", name, value, wanted));
    }

  private:
    std::array<std::uint8_t, Size> bytes_{};
    std::uint64_t at_ = 0;
    VerifyNotes* notes_ = nullptr;
};

bool ChannelsValid(std::uint16_t channels, const FileChunk& format, VerifyNotes& notes) {
    if (channels == 1 || channels == 2) return true;
    notes.Find(format.Content() + 2, Format("%u channels", channels));
    return false;
}

void CheckMpegFormat(VerifySource& source, const FileChunk& chunk, PublishedHead& head,
                     VerifyNotes& notes) {
    Fields<40> fields;
    if (!fields.Load(source, chunk, notes)) return;
    PublicationFormat& format = head.format;
    format.mp2 = true;
    format.channels = fields.Get<std::uint16_t>(2);
    format.bitrate = fields.Get<std::uint32_t>(20);
    format.frameBytes = format.bitrate / 1000 * 3;  // 144 * bit rate / 48000
    const auto& rates = Mp2Bitrate::kBitsPerSecond;
    if (std::ranges::find(rates, format.bitrate) == rates.end()) {
        notes.Find(chunk.Content() + 20, Format("bit rate is %u", format.bitrate));
        return;
    }
    head.formatKnown = ChannelsValid(format.channels, chunk, notes);
    fields.Expect<std::uint32_t>(4, 48000, "sample rate");
    fields.Expect<std::uint32_t>(8, format.bitrate / 8, "bytes a second");
    fields.Expect<std::uint16_t>(12, format.frameBytes, "block align");
    fields.Expect<std::uint16_t>(14, 0, "bits per sample");
    fields.Expect<std::uint16_t>(16, 22, "extension size");
    fields.Expect<std::uint16_t>(18, 2, "layer");
    fields.Expect<std::uint16_t>(24, 8, "mode");  // single channel, whatever the channels
    fields.Expect<std::uint16_t>(26, 0, "mode extension");
    fields.Expect<std::uint16_t>(28, 0, "emphasis");
    fields.Expect<std::uint16_t>(30, 0x10, "flags");
    fields.Expect<std::uint32_t>(32, 0, "PTS low");
    fields.Expect<std::uint32_t>(36, 0, "PTS high");
}

void CheckPcmFormat(VerifySource& source, const FileChunk& chunk, PublishedHead& head,
                    VerifyNotes& notes) {
    Fields<16> fields;
    if (!fields.Load(source, chunk, notes)) return;
    head.format.channels = fields.Get<std::uint16_t>(2);
    head.formatKnown = ChannelsValid(head.format.channels, chunk, notes);
    fields.Expect<std::uint32_t>(4, 48000, "sample rate");
    fields.Expect<std::uint32_t>(8, head.format.channels * 96000U, "bytes a second");
    // Bytes of one sample of the takes' template: 2, or 3 after 24-bit work; not times channels.
    const auto align = fields.Get<std::uint16_t>(12);
    if (align != 2 && align != 3)
        notes.Find(chunk.Content() + 12, Format("block align is %u, should be 2", align));
    fields.Expect<std::uint16_t>(14, 16, "bits per sample");
}

void CheckMext(VerifySource& source, const FileChunk& chunk, const PublishedHead& head,
               VerifyNotes& notes) {
    Fields<12> fields;
    if (!fields.Load(source, chunk, notes)) return;
    fields.Expect<std::uint16_t>(0, 3, "sound information");
    fields.Expect<std::uint16_t>(2, head.format.frameBytes, "frame size");
    fields.Expect<std::uint16_t>(4, 0, "ancillary data length");
    fields.Expect<std::uint16_t>(6, 0, "ancillary data definition");
    fields.Expect<std::uint32_t>(8, 0, "reserved field of 'mext'");
}

void CheckFact(VerifySource& source, const FileChunk& chunk, const PublishedHead& head,
               std::uint32_t dataBytes, VerifyNotes& notes) {
    Fields<4> fields;
    if (!fields.Load(source, chunk, notes)) return;
    const PublicationFormat& format = head.format;
    const std::size_t before = notes.Found();
    if (format.mp2)
        fields.Expect<std::uint32_t>(0, dataBytes / format.frameBytes * kMp2FrameSamples,
                                     "sample count");
    else
        fields.Expect<std::uint32_t>(0, dataBytes / (2U * format.channels), "sample count");
    if (notes.Found() == before)
        notes.Fact(Format("'fact' fits 'data': %u samples", fields.Get<std::uint32_t>(0)));
}

}  // namespace

void CheckFormat(VerifySource& source, const std::vector<FileChunk>& chunks, PublishedHead& head,
                 VerifyNotes& notes) {
    const std::size_t before = notes.Found();
    const FileChunk* format = FindChunk(chunks, "fmt ");
    std::array<std::uint8_t, 2> tag{};
    if (format == nullptr || format->size < 2 || !source.Read(format->Content(), tag)) return;
    if (LoadLe<std::uint16_t>(tag.data()) == kMpeg)
        CheckMpegFormat(source, *format, head, notes);
    else if (LoadLe<std::uint16_t>(tag.data()) == kPcm)
        CheckPcmFormat(source, *format, head, notes);
    else
        notes.Find(format->Content(), "neither PCM nor MPEG");
    if (!head.formatKnown) return;
    if (const FileChunk* mext = FindChunk(chunks, "mext"); mext != nullptr && head.format.mp2)
        CheckMext(source, *mext, head, notes);
    const std::string coding =
        head.format.mp2 ? Format("MPEG-1 Layer II, %u kbit/s", head.format.bitrate / 1000)
                        : std::string("PCM, 16 bits");
    if (notes.Found() == before)
        notes.Fact(coding + Format(", 48000 Hz, %u channel(s)", head.format.channels));
    const FileChunk* fact = FindChunk(chunks, "fact");
    const FileChunk* data = FindChunk(chunks, "data");
    if (fact != nullptr && data != nullptr) CheckFact(source, *fact, head, data->size, notes);
}

}  // namespace orma
