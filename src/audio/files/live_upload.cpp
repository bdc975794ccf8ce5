#include "audio/files/live_upload.h"

namespace orma {

LiveUpload::LiveUpload(WriterContext& context)
    : JStreamWrFTP(*context.live.ftp), JStreamWrMP2(context), context_(context) {}

void LiveUpload::ConnectLive() {
    const FtpAccount& account = context_.live.account;
    if (account != connectedTo_) CloseAll();
    connectedTo_ = account;
    SetDestination(account, u"mp2");
    const bool connected = EnsureConnected();
    // Without a server the connection fails silently, but an upload was asked for.
    if (!connected && account.server.empty())
        context_.files.report.ShowError(u"No FTP server: the take is not uploaded");
}

void LiveUpload::OpenLive(const Text& name) {
    OpenForWriting(name);
    uploading_ = JStreamFTP::IsOpen();
}

void LiveUpload::CloseLive() {
    uploading_ = false;
    CloseFile();
}

}  // namespace orma
