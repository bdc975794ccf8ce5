#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/queued_ftp/upload_outcome.h"

namespace orma {

/// A queue of bytes and files, and a thread that carries them to the server through a blocking
/// client: what one queued client stands on. Lives on after that client until all is sent.
///
/// Bytes are numbered through all files; a file is the range from its begin to its end. The user's
/// side adds files and bytes and never waits for the network; it only takes the lock, which the
/// thread never holds during an operation on the server.
class UploadLine : private Patience {
  public:
    /// Told from the line's thread.
    struct Events {
        std::function<void(UploadOutcome)> uploadEnded;
        std::function<void(FtpResult)> logInFailed;
    };

    /// Takes all memory for `capacity` bytes of queue now. `clients` outlives the line.
    UploadLine(FtpClients& clients, std::size_t capacity, Events events);

    /// Gives up what is not sent, each file as kFtpCancelled, and waits for the thread.
    ~UploadLine() override;
    UploadLine(const UploadLine&) = delete;
    UploadLine& operator=(const UploadLine&) = delete;

    /// Logs in soon, and again whenever a file finds no connection.
    void Connect(const FtpTarget& target);

    /// Adds a file, which begins at `offset` on the server if one is given. Only one is open.
    void Open(const Text& path, std::optional<std::uint64_t> offset);

    /// Adds bytes to the open file. Fails once that file has broken off, or when the queue is full,
    /// which breaks it off (kFtpTimeout). A file that the server never took up swallows bytes with
    /// success, and so does one that was given up: for these the outcome is enough.
    [[nodiscard]] FtpResult Write(ByteSpan bytes);

    /// The open file has all its bytes.
    void Close();

    /// Gives up the open file.
    void Abandon();

    /// No more will come: the thread ends when all is sent. An open file is given up.
    void End();

    /// Gives up all files that are not sent.
    void GiveUp();

    /// True once the thread has nothing more to do after End.
    [[nodiscard]] bool IsOver() const { return over_; }

    /// Bytes that wait in the queue.
    [[nodiscard]] std::uint64_t BytesWaiting() const;

  private:
    struct Upload {
        Text path;
        std::optional<std::uint64_t> offset;
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        bool closed = false;  // the end is known
        bool began = false;
        bool over = false;
        SystemError givenUp = kFtpDone;  // why from this side
        FtpResult result{};
    };

    [[nodiscard]] bool GoOn() override;

    void Run();
    [[nodiscard]] FtpResult LogIn();
    void Carry(Upload& upload, FtpResult logIn);
    [[nodiscard]] FtpResult Send(Upload& upload, UploadOutcome& outcome);
    [[nodiscard]] FtpResult SendBytes(Upload& upload);
    void Finish(Upload& upload, UploadOutcome outcome);
    void GiveUpUpload(Upload& upload, SystemError why);
    void GiveUpAll();

    FtpClients& clients_;
    Events events_;
    const std::size_t capacity_;
    std::unique_ptr<std::uint8_t[]> ring_;

    mutable std::mutex mutex_;  // guards all below
    std::condition_variable changed_;
    FtpTarget target_;
    bool logInWanted_ = false;
    bool ended_ = false;
    bool atWork_ = false;                          // the thread is on its way to the server
    std::uint64_t written_ = 0;                    // numbers of the next byte to come in,
    std::uint64_t sent_ = 0;                       // and of the next to go out
    std::deque<std::shared_ptr<Upload>> uploads_;  // the thread is at the first
    std::shared_ptr<Upload> open_;                 // on the user's side; null: none

    std::unique_ptr<FtpClient> client_;  // the thread's own; anybody's to interrupt while at work
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

}  // namespace orma
