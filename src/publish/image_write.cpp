#include "publish/image_write.h"

#include <optional>
#include <utility>

namespace orma {

JStreamImageWritePubFTP::JStreamImageWritePubFTP(FtpServices services, FtpAccount account)
    : JStreamFTP(services), account_(std::move(account)) {}

void JStreamImageWritePubFTP::OpenNamed(const Text& name) {
    path_ = account_.folder.empty() ? name : account_.folder + u"/" + name;
    if (!IsConnected()) OpenWriterSession(account_);
    // Without a connection that has been reported, and the open would only say it again.
    if (IsConnected()) OpenRemoteFile(path_, false);
}

void JStreamImageWritePubFTP::WriteRaw(ByteSpan bytes) {
    Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

bool JStreamImageWritePubFTP::CloseNamed() {
    const bool whole = IsOpen();
    const std::uint64_t bytes = BytesWritten();
    CloseFile();
    if (!whole) return false;
    if (!CloseResult().Ok()) {
        ReportUnconfirmed();
        return false;
    }
    const std::optional<std::uint64_t> size = RemoteSize(path_);
    if (!size) return LastResult().Ok() && !tellsSizes_;
    tellsSizes_ = true;
    return *size == bytes;
}

JStreamImageWritePubEMAIL::JStreamImageWritePubEMAIL(const MailServices& services,
                                                     MailDelivery delivery, MailMessage message)
    : JStreamEMAIL(services), delivery_(std::move(delivery)), message_(std::move(message)) {}

void JStreamImageWritePubEMAIL::OpenNamed(const Text& name) {
    message_.attachmentName = name;
    (void)OpenMail(delivery_, message_);  // shows in IsGood
}

void JStreamImageWritePubEMAIL::WriteRaw(ByteSpan bytes) {
    Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

}  // namespace orma
