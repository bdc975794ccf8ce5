#include "stream/jstream_ftp.h"

#include <cstring>
#include <utility>

#include "base/trace.h"

namespace orma {

void JStreamFTP::Fail(const Text& operation, FtpResult result) {
    status &= ~kGood;
    lastResult_ = std::move(result);
    Report(operation);
}

void JStreamFTP::Report(const Text& operation) {
    if (lastResult_.code == kFtpCancelled) return;
    services_.report.ReportInternetFailure(operation, lastResult_.code, lastResult_.reply);
}

void JStreamFTP::OpenWriterSession(const FtpAccount& account) {
    CloseAll();
    session_ = std::make_unique<FtpSession>(services_, account);
    lastResult_ = session_->LastResult();
}

void JStreamFTP::OpenRemoteFile(const Text& path, bool forReading) {
    CloseFile();
    status = (status & ~kReading) | (forReading ? kReading : 0U);
    closeResult_ = {kFtpWrongState, 0, {}};
    bytesWritten_ = 0;
    if (!IsConnected()) {
        FtpResult reason = session_ != nullptr ? session_->LastResult() : FtpResult{};
        if (reason.Ok()) reason.code = kFtpWrongState;
        Fail(u"InternetConnect", std::move(reason));
        return;
    }
    FtpResult result =
        session_->Client().OpenFile(path, forReading ? Access::kRead : Access::kWrite);
    if (!result.Ok()) {
        status &= ~kGood;
        lastResult_ = std::move(result);
        if (!forReading) Report(u"FtpOpenFile");
        return;
    }
    lastResult_ = {};
    fileOpen_ = true;
    status |= kGood | kOpen;
}

void JStreamFTP::Read(void* buffer, std::uint32_t count) {
    if (!Has(kGood | kOpen | kReading)) return;
    auto* bytes = static_cast<std::uint8_t*>(buffer);
    std::size_t got = 0;
    FtpResult result = session_->Client().Read({bytes, count}, got);
    if (result.Ok() && got == count) return;
    if (count > 0) std::memset(bytes, 0, count);
    Fail(u"InternetReadFile", std::move(result));
}

void JStreamFTP::Write(const void* buffer, std::uint32_t count) {
    if (!IsOpen() || Has(kReading)) return;
    FtpResult result = session_->Client().Write({static_cast<const std::uint8_t*>(buffer), count});
    if (result.Ok())
        bytesWritten_ += count;
    else
        Fail(u"InternetWriteFile", std::move(result));
}

void JStreamFTP::CloseFile() {
    if (!fileOpen_) return;
    fileOpen_ = false;
    status &= ~kOpen;
    if (!IsConnected()) {
        closeResult_ = {kFtpConnectionLost, 0, {}};
        return;
    }
    closeResult_ = session_->Client().CloseFile();
}

void JStreamFTP::ReportUnconfirmed() {
    Fail(u"InternetWriteFile", closeResult_);
}

void JStreamFTP::Abandon() {
    if (fileOpen_) closeResult_ = {kFtpConnectionLost, 0, {}};
    fileOpen_ = false;
    status &= ~kOpen;
    CloseAll();
}

void JStreamFTP::CloseAll() {
    CloseFile();
    session_.reset();
}

bool JStreamFTP::SendResumeOffset(std::uint32_t offset) {
    if (!IsConnected()) {
        lastResult_ = {kFtpWrongState, 0, {}};
        return true;
    }
    lastResult_ = session_->Client().Restart(offset);
    if (!lastResult_.Ok()) return true;
    Trace("REST Ok");
    return false;
}

std::optional<std::uint64_t> JStreamFTP::RemoteSize(const Text& path) {
    CloseFile();
    std::optional<std::uint64_t> bytes;
    if (IsConnected())
        lastResult_ = session_->Client().RemoteSize(path, bytes);
    else
        lastResult_ = {kFtpWrongState, 0, {}};
    return bytes;
}

}  // namespace orma
