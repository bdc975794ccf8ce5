#include "audio/files/wr_mp2_file.h"

#include "audio/files/take_repair.h"

namespace orma {

JStreamWrMP2File::JStreamWrMP2File(WriterContext& context)
    : JStreamFile(context.files), context_(context) {}

bool JStreamWrMP2File::RefuseWhileOpen() {
    if (path_.empty()) return false;  // in append-per-block mode the file is closed meanwhile
    Services().report.ShowError(path_ + u" : File is open");
    return true;
}

void JStreamWrMP2File::OpenTake(const Text& name) {
    appendPerBlock_ = context_.audio.appendPerBlock;
    path_ = context_.recordingFolder + name + u".mp2";
    std::uint32_t length = 0;
    if (appendPerBlock_ && Services().storage.Exists(path_)) {
        Open(path_, true);
        length = GetSize();
    }
    const bool isFree = context_.journal.Start(
        Services(), path_, context_.JournalFormat(TakeKind::kMp2, Mp2Pipeline::kBlockBytes, name),
        length);
    if (isFree && appendPerBlock_) {
        OpenForAppend(path_);
        BeginFlush();
        JStreamFile::Close();
    } else if (isFree) {
        Open(path_, false);
    }
    if (!isFree || (appendPerBlock_ && !Has(kGood)))
        Services().report.ShowError(u"Cannot open file : " + path_);
    if (isFree && Has(kGood)) return;
    JStreamFile::Close();
    context_.journal.Discard();
    path_.clear();
}

void JStreamWrMP2File::PutTake(ByteSpan encoded) {
    if (appendPerBlock_ && !OpenForBlock(path_)) return;
    const auto bytes = static_cast<std::uint32_t>(encoded.size());
    Write(encoded.data(), bytes);
    if (Has(kGood)) context_.journal.BlockWritten(bytes);
    BeginFlush();
    context_.journal.BeginFlush();
    if (appendPerBlock_) JStreamFile::Close();
}

void JStreamWrMP2File::CloseTake() {
    if (path_.empty()) return;
    if (!appendPerBlock_ || OpenForBlock(path_)) Flush();
    JStreamFile::Close();
    context_.journal.Close();
    if (!Has(kGood)) RepairTake(Services(), path_);
    path_.clear();
}

bool JStreamWrMP2File::IsHealthy() const {
    if (path_.empty()) return false;
    return appendPerBlock_ ? Has(kGood) : JStreamFile::IsOpen();
}

}  // namespace orma
