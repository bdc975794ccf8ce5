#pragma once

#include <cstdint>
#include <optional>

#include "platform/ftp_client.h"

namespace orma {

/// How an upload that went on behind its writer ended.
struct UploadOutcome {
    Text path{};              // on the server
    FtpResult result;         // success: the server has confirmed the file (226 or 250)
    Text operation{};         // what failed, as error texts name it; empty after success
    bool began = false;       // the server had taken the file up
    std::uint64_t bytes = 0;  // that the file is to have
    std::optional<std::uint64_t> remoteBytes{};  // that it has, where the server tells

    /// Confirmed, and of the right size where the server tells sizes.
    [[nodiscard]] bool IsWhole() const {
        return result.Ok() && (!remoteBytes || *remoteBytes == bytes);
    }
};

/// Hears how uploads end. UI thread.
class UploadListener {
  public:
    virtual ~UploadListener() = default;

    /// Once for each file that was opened.
    virtual void OnUploadEnded(const UploadOutcome& outcome) = 0;

    /// A log-in failed while no file was waiting for it; the next file tries again.
    virtual void OnLogInFailed(const FtpResult& result) = 0;
};

}  // namespace orma
