#pragma once

#include <optional>

#include "platform/queued_ftp/queued_ftp_clients.h"
#include "report/error_reporter.h"
#include "stream/ftp_account.h"

namespace orma {

/// The uploads that accompany recordings: what writers need for them, and the word to the user when
/// one has not arrived whole. It outlives the writers. UI thread.
class LiveUploads : private UploadListener {
  public:
    /// `carriers` wait as long as a stall may last; see QueuedFtpClients.
    LiveUploads(FtpClients& carriers, EventLoop& loop, ErrorReporter& report);

    /// For the writers. Their operations do not block.
    [[nodiscard]] const FtpServices& Services() const { return services_; }

    /// Files that are still being uploaded, and the bytes that wait for that.
    [[nodiscard]] std::size_t UnderWay() const { return clients_.UnderWay(); }
    [[nodiscard]] std::uint64_t BytesWaiting() const { return clients_.BytesWaiting(); }

    /// For the end of the program, once the takes are closed: waits until all uploads have ended;
    /// false when `patience` ended before, and they go on.
    [[nodiscard]] bool Wait(Patience& patience) { return clients_.Wait(patience); }

    /// Gives up what is under way. The takes stay as they are; the user is told, by the event loop
    /// or the next Wait.
    void GiveUp() { clients_.GiveUp(); }

    /// For the end of a program whose event loop has ended: as Wait, but gives up what has not
    /// arrived when `patience` ends, and tells so. False when there was such an upload.
    bool Finish(Patience& patience);

    /// How the last upload ended; none before the first.
    [[nodiscard]] const std::optional<UploadOutcome>& Last() const { return last_; }

  private:
    class EndlessPatience : public Patience {
        [[nodiscard]] bool GoOn() override { return true; }
    };

    void OnUploadEnded(const UploadOutcome& outcome) override;
    void OnLogInFailed(const FtpResult& result) override;

    ErrorReporter& report_;
    EndlessPatience patience_;  // of what does not block, or ends at once
    std::optional<UploadOutcome> last_;
    QueuedFtpClients clients_;
    FtpServices services_;
};

}  // namespace orma
