#include "stream/jstream_wr_ftp.h"

#include "base/trace.h"

namespace orma {

Text RemotePath(const Text& folder, const Text& baseName, const Text& extension) {
    return (folder.empty() ? Text() : folder + u"/") + baseName + u"." + extension;
}

void JStreamWrFTP::SetDestination(const FtpAccount& account, const Text& extension) {
    account_ = account;
    extension_ = extension;
}

bool JStreamWrFTP::EnsureConnected() {
    if (!IsConnected()) OpenWriterSession(account_);
    if (!IsConnected()) Trace("JStreamWrFTP InternetConnect");
    return IsConnected();
}

void JStreamWrFTP::OpenForWriting(const Text& baseName) {
    if (EnsureConnected()) OpenRemoteFile(RemotePath(account_.folder, baseName, extension_), false);
}

JStreamWrFTP::ResumeAnswer JStreamWrFTP::ResumeOpen(const Text& baseName, std::uint32_t offset) {
    if (IsOpen() && !Has(kReading)) return kResumed;
    if (!EnsureConnected()) return kNoConnection;
    CloseFile();
    if (SendResumeOffset(offset)) {
        constexpr int kGoingAway = 421;  // no answer to the question
        const FtpResult& result = LastResult();
        if (result.code == kFtpRefused && result.replyNumber != kGoingAway) return kOffsetRefused;
        CloseAll();
        return kNoConnection;
    }
    OpenRemoteFile(RemotePath(account_.folder, baseName, extension_), false);
    return kResumed;
}

std::optional<std::uint64_t> JStreamWrFTP::PublishedSize(const Text& baseName) {
    if (!EnsureConnected()) return {};
    return RemoteSize(RemotePath(account_.folder, baseName, extension_));
}

}  // namespace orma
