#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/wr_mp2.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {

/// The upload half of a writer that records to a local file and to an FTP server at once: MP2
/// frames in a remote file of the take's name, whatever the local format is. It is the lesser half:
/// where no upload begins, the take is recorded without. UI thread.
class LiveUpload : public JStreamWrFTP, public JStreamWrMP2 {
  public:
    /// `context` has live FTP services and outlives the upload.
    explicit LiveUpload(WriterContext& context);

    /// Logs in unless that was done, anew where the destination has changed. Reports when there is
    /// no destination.
    void ConnectLive();

    /// Opens "<folder>/<name>.mp2".
    void OpenLive(const Text& name);

    /// False once an upload has broken off that had begun: who listens to it has lost its end, and
    /// the take ends. True where none began.
    [[nodiscard]] bool IsLiveHealthy() const {
        return !uploading_ || (JStreamFTP::IsOpen() && IsConnected());
    }

    /// Ends the remote file; the connection stays for the next take.
    void CloseLive();

  private:
    WriterContext& context_;
    FtpAccount connectedTo_;
    bool uploading_ = false;
};

}  // namespace orma
