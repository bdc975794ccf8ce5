#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "platform/queued_ftp/upload_line.h"

namespace orma {

/// FTP clients that never make their user wait: what they are told goes into a queue, and a thread
/// for each carries it out through a client of another kind. For uploads that accompany a
/// recording, which a stalled network must not stop.
///
/// A queued client is an FtpClient with these differences. Connect, Restart, OpenFile and Write
/// return at once, with success as far as anyone can tell by then. A Write fails once the upload
/// has broken off after the server had taken it up; a full queue is a dead link (kFtpTimeout). An
/// upload that never began swallows its bytes. CloseFile returns kFtpPending: nothing is confirmed
/// yet. How the upload really ends, its listener hears; that goes on after the client is gone.
/// There is no reading, and RemoteSize is no question for a queue (both kFtpWrongState). Patience
/// is not asked. A file that is open at Disconnect is given up.
///
/// UI thread.
class QueuedFtpClients : public FtpClients {
  public:
    /// What CloseFile of a queued client returns.
    static constexpr SystemError kFtpPending = 997;  // the system's own "overlapped I/O"

    /// Bytes that each client's queue holds: over two minutes at 256 kbit/s, the highest bit rate.
    static constexpr std::size_t kQueueBytes = 4 * 1024 * 1024;

    /// Makes clients over those of `carriers`, which are used in threads, one thread each, and
    /// whose time-outs decide how long a stall may be. All arguments outlive this.
    QueuedFtpClients(FtpClients& carriers, EventLoop& loop, UploadListener& listener,
                     std::size_t queueBytes = kQueueBytes);

    /// Gives up what is under way; nobody hears of it.
    ~QueuedFtpClients() override;
    QueuedFtpClients(const QueuedFtpClients&) = delete;
    QueuedFtpClients& operator=(const QueuedFtpClients&) = delete;

    /// Takes the queue's memory and starts its thread.
    [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience, FtpResult& result) override;

    /// Files that were opened and whose end the listener has not heard yet.
    [[nodiscard]] std::size_t UnderWay() const { return underWay_; }

    /// Bytes that wait to be sent, of all uploads.
    [[nodiscard]] std::uint64_t BytesWaiting() const;

    /// Blocks until no upload is under way, telling the listener meanwhile; false when `patience`
    /// ended before, and everything goes on.
    [[nodiscard]] bool Wait(Patience& patience);

    /// Gives up all uploads under way, each as kFtpCancelled; a recording that feeds one goes on.
    void GiveUp();

  private:
    class Client;
    class News;

    void Tell();
    [[nodiscard]] std::shared_ptr<UploadLine> StartLine();

    FtpClients& carriers_;
    UploadListener& listener_;
    std::size_t queueBytes_;
    std::unique_ptr<News> news_;
    std::unique_ptr<Wakeup> wakeup_;
    std::size_t underWay_ = 0;
    std::list<std::shared_ptr<UploadLine>> lines_;  // the first to go: their threads use the rest
};

}  // namespace orma
