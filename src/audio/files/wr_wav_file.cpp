#include "audio/files/wr_wav_file.h"

#include "audio/files/take_repair.h"

namespace orma {

JStreamWrWavFile::JStreamWrWavFile(WriterContext& context)
    : JStreamFile(context.files), context_(context) {}

void JStreamWrWavFile::OpenTake(const Text& name) {
    if (!path_.empty()) {  // in append-per-block mode the file itself is closed meanwhile
        Services().report.ShowError(path_ + u" : File is open");
        CloseTake();
        return;
    }
    context_.staging.Restart();
    appendPerBlock_ = context_.audio.appendPerBlock;
    path_ = context_.recordingFolder + name + u".wav";
    const bool isFree = context_.journal.Start(
        Services(), path_, context_.JournalFormat(TakeKind::kWav, PcmStaging::kBytes, name), 0);
    if (isFree)
        Open(path_, false);
    else
        Services().report.ShowError(u"Cannot open file : " + path_);
    if (!isFree || !JStreamFile::IsOpen()) {
        // What may lie under that name is not this take: it is never closed, patched or mended.
        context_.journal.Discard();
        path_.clear();
        return;
    }
    const auto header = Header().Encode();
    context_.journal.Append(header);
    WriteBlock(header);
    if (!appendPerBlock_) return;
    BeginFlush();
    JStreamFile::Close();
}

WavHeader JStreamWrWavFile::Header() const {
    const AudioState& audio = context_.audio;
    WavHeader header;
    header.channels = audio.Channels();
    header.sampleRate = audio.sampleRate;
    header.bitsPerSample = audio.alternativeSampleSize ? audio.bitsPerSample : std::uint16_t{16};
    header.byteRate = header.bitsPerSample / 8U * header.channels * header.sampleRate;
    header.blockAlign = context_.wavTemplate.blockAlign;
    return header;
}

void JStreamWrWavFile::WriteTake(ByteSpan pcm) {
    if (path_.empty()) return;
    context_.journal.Append(pcm);
    context_.staging.Add(pcm, [this](ByteSpan block) { PutBlock(block); });
}

void JStreamWrWavFile::WriteBlock(ByteSpan block) {
    const auto bytes = static_cast<std::uint32_t>(block.size());
    Write(block.data(), bytes);
    if (Has(kGood)) context_.journal.BlockWritten(bytes);
}

/// Between blocks the take is a valid WAV file, and soon on the medium.
void JStreamWrWavFile::PutBlock(ByteSpan block) {
    if (appendPerBlock_ && !OpenForBlock(path_)) return;
    WriteBlock(block);
    PatchSizes();
    BeginFlush();
    context_.journal.BeginFlush();
    if (appendPerBlock_) JStreamFile::Close();
}

void JStreamWrWavFile::PatchSizes() {
    if (!JStreamFile::IsOpen()) return;
    const std::uint32_t length = GetSize();
    if (length < WavHeader::kBytes) return;  // unknown: better no size than a wrong one
    // The data size first: with it alone the take is readable already.
    WriteNumberAt(*this, WavHeader::kDataSizeOffset, length - WavHeader::kBytes);
    WriteNumberAt(*this, WavHeader::kRiffSizeOffset, length - 8);
    SetPosition(static_cast<std::int32_t>(length));
}

void JStreamWrWavFile::CloseTake() {
    if (path_.empty()) return;
    const bool exists = Services().storage.Exists(path_);
    if (exists && (!appendPerBlock_ || OpenForBlock(path_))) {
        context_.staging.Flush([this](ByteSpan block) { WriteBlock(block); });
        PatchSizes();
        Flush();
    }
    JStreamFile::Close();
    context_.journal.Close();
    if (exists && !Has(kGood)) RepairTake(Services(), path_);
    path_.clear();
}

bool JStreamWrWavFile::IsHealthy() const {
    if (path_.empty()) return false;
    return appendPerBlock_ ? Has(kGood) : JStreamFile::IsOpen();
}

}  // namespace orma
