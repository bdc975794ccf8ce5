#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/resume_offset.h"
#include "audio/files/wr_mp2.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {

/// Kind 6: a publication as Broadcast-Wave of MPEG-1 Layer II frames on an FTP server, or as bare
/// frames. Takes PCM to encode, or stored frames as they are through WriteEncoded.
///
/// A resumed publication is sent anew from its first byte: the same job makes the same bytes, and
/// those that the server holds already are counted and summed here but not sent. So the byte sum in
/// the last chunk is true, and the place where sending goes on is exact to the byte. UI thread.
class JStreamAudioWriteBWFFTP : public JStreamAudioWrite, public JStreamWrFTP, public JStreamWrMP2 {
  public:
    /// `context` has FTP services and outlives the writer.
    explicit JStreamAudioWriteBWFFTP(WriterContext& context);
    ~JStreamAudioWriteBWFFTP() override;

    [[nodiscard]] bool IsOpen() const override { return JStreamFTP::IsOpen() && IsConnected(); }
    void Connect() override;
    void OpenRemote(const Text& name) override;

    /// Reopens the remote file where it broke off: where the server's file ends, for bytes that
    /// were sent need not have arrived, or at `offset` where the server cannot tell sizes. At 0, or
    /// where the server's file is not the piece that was sent, the file is opened afresh. 1: the
    /// server cannot go on at an offset; 2: no connection. After 0 the open itself shows in IsOpen,
    /// and the job sends everything from its first byte.
    [[nodiscard]] int Resume(const Text& name, std::uint32_t offset) override;
    [[nodiscard]] int Reconnect(std::uint32_t offset) override { return Resume(name_, offset); }
    void ResendLast() override;
    void Open(const Text& name) override;
    void Finish() override;

    /// Ends the transfer and disconnects. A finished publication that the server has confirmed is
    /// committed when its size there is right; where the server never could tell sizes, unless it
    /// was resumed. Otherwise it is unverified. What is not finished breaks off, so that nobody
    /// takes it for whole, and stays as far as it got.
    void Close() override;

    void ReleaseEncoder() override { ReleaseFeed(); }
    void WriteSamples(const void* pcm, std::uint32_t bytes) override;
    void WriteEncoded(const void* data, std::uint32_t bytes) override;

    /// The way of everything that belongs to the file: drops what the server holds already.
    void Write(const void* buffer, std::uint32_t count) override;

  private:
    void OpenAnew();
    void Begin(std::uint64_t held);

    WriterContext& context_;
    Text name_;
    UploadTraces traces_;
    std::uint64_t held_ = 0;      // bytes at the file's start that are not sent again
    std::uint64_t position_ = 0;  // bytes of the file so far, sent or held
    bool blind_ = false;          // resumed where the server could not tell what it held
    bool finished_ = false;
    Bytes last_;  // the last block of sound
};

}  // namespace orma
