#include "audio/files/wr_mp2_file.h"

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
    if (appendPerBlock_) {
        OpenForAppend(path_);
        JStreamFile::Close();
    } else {
        Open(path_, false);
    }
    if (!Has(kGood)) path_.clear();
}

void JStreamWrMP2File::PutTake(ByteSpan encoded) {
    const auto bytes = static_cast<std::uint32_t>(encoded.size());
    if (appendPerBlock_)
        AppendBlock(path_, encoded.data(), bytes);
    else
        Write(encoded.data(), bytes);
}

void JStreamWrMP2File::CloseTake() {
    JStreamFile::Close();
    path_.clear();
}

bool JStreamWrMP2File::IsHealthy() const {
    if (path_.empty()) return false;
    return appendPerBlock_ ? Has(kGood) : JStreamFile::IsOpen();
}

}  // namespace orma
