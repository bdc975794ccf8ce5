#pragma once

#include "base/bytes.h"
#include "stream/jstream_email.h"
#include "stream/jstream_ftp.h"

namespace orma {

/// Sends files other than the sound, one after the other, each under its own name. UI thread.
class JStreamImageWrite {
  public:
    virtual ~JStreamImageWrite() = default;

    /// Begins a file; success shows in IsGood.
    virtual void OpenNamed(const Text& name) = 0;

    [[nodiscard]] virtual bool IsGood() const = 0;

    /// The file's next bytes.
    virtual void WriteRaw(ByteSpan bytes) = 0;

    /// Ends the file; true when it was confirmed whole.
    [[nodiscard]] virtual bool CloseNamed() = 0;

    /// Breaks the file off, and the connection with it.
    virtual void Abort() = 0;
};

/// Files beside the sound on an FTP server. One log-in serves all.
class JStreamImageWritePubFTP : public JStreamImageWrite, public JStreamFTP {
  public:
    JStreamImageWritePubFTP(FtpServices services, FtpAccount account);

    void OpenNamed(const Text& name) override;
    [[nodiscard]] bool IsGood() const override { return IsOpen() && IsConnected(); }
    void WriteRaw(ByteSpan bytes) override;

    /// True when the server confirmed the file and, where it can tell, has its size.
    [[nodiscard]] bool CloseNamed() override;
    void Abort() override { Abandon(); }

  private:
    FtpAccount account_;
    Text path_;
    bool tellsSizes_ = false;  // it told one
};

/// Files as attachments, each of a mail of its own.
class JStreamImageWritePubEMAIL : public JStreamImageWrite, public JStreamEMAIL {
  public:
    /// The message's attachment name is set for each file.
    JStreamImageWritePubEMAIL(const MailServices& services, MailDelivery delivery,
                              MailMessage message);

    void OpenNamed(const Text& name) override;
    [[nodiscard]] bool IsGood() const override { return Has(kGood | kOpen); }
    void WriteRaw(ByteSpan bytes) override;
    [[nodiscard]] bool CloseNamed() override { return CloseMail(); }
    void Abort() override { AbandonMail(); }

  private:
    MailDelivery delivery_;
    MailMessage message_;
};

}  // namespace orma
