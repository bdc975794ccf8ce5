#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/curl/curl_ftp_clients.h"
#include "platform/curl/ftp_reply.h"
#include "platform/curl/ftp_sockets.h"
#include "platform/ftp_client.h"

namespace orma {

/// The FTP client on one easy handle in one multi handle of libcurl, driven in the calling thread.
/// Every operation is an *exchange*: the handle is set up, added, driven until it is done or has
/// nothing more to do for the caller, and removed. The log-in outlives the exchange in libcurl's
/// connection cache, which holds one.
class CurlFtpClient : public FtpClient {
  public:
    CurlFtpClient(Patience& patience, FtpLimits limits);
    ~CurlFtpClient() override;
    CurlFtpClient(const CurlFtpClient&) = delete;
    CurlFtpClient& operator=(const CurlFtpClient&) = delete;

    /// False when libcurl could not be started.
    [[nodiscard]] bool Usable() const { return multi_ != nullptr && easy_ != nullptr; }

    [[nodiscard]] FtpResult Connect(const FtpTarget& target) override;
    [[nodiscard]] bool IsConnected() const override { return connected_; }
    void Disconnect() override;
    [[nodiscard]] FtpResult Restart(std::uint64_t offset) override;
    [[nodiscard]] FtpResult RemoteSize(const Text& path,
                                       std::optional<std::uint64_t>& bytes) override;
    [[nodiscard]] FtpResult LookForFolder(const Text& folder) override;
    [[nodiscard]] FtpResult OpenFile(const Text& path, Access access) override;
    [[nodiscard]] FtpResult Read(std::span<std::uint8_t> into, std::size_t& got) override;
    [[nodiscard]] FtpResult Write(ByteSpan from) override;
    [[nodiscard]] FtpResult CloseFile() override;
    void Interrupt() override { sockets_.ShutDownAll(); }

  private:
    using Time = std::chrono::steady_clock::time_point;
    enum class Kind { kCommands, kStore, kRetrieve };

    /// What one exchange is to do.
    struct Task {
        Kind kind = Kind::kCommands;
        std::string path{};                   // of the file; of a folder, to go there
        std::vector<std::string> commands{};  // sent first; the file's come after log-in and type
    };

    struct Hooks;  // libcurl's callbacks, each of which calls the operation of its name

    std::size_t OnReply(std::string_view line);
    void OnCommand(std::string_view command);
    std::size_t OnWantsData(std::span<char> room);
    std::size_t OnData(std::string_view data);
    void OnCloseSocket(int socket);
    [[nodiscard]] bool OnProgress() { return Asked(); }

    [[nodiscard]] FtpResult Exchange(const Task& task);
    [[nodiscard]] bool Begin(const Task& task);
    [[nodiscard]] bool SetAddress(const Task& task);
    void SetSecurity();
    void SetLists(const Task& task);
    void Drive(const std::function<bool()>& enough);
    void Wait();
    [[nodiscard]] bool Done();
    void GiveUp(FtpCode code);
    void Leave();
    [[nodiscard]] bool IsOver() const { return !running_; }

    [[nodiscard]] bool Asked();
    [[nodiscard]] bool Stalled();
    [[nodiscard]] bool ServerTookAll();
    [[nodiscard]] FtpResult NotOpen() const;

    Patience& patience_;
    FtpLimits limits_;
    FtpTarget target_;
    std::string password_;
    void* multi_ = nullptr;     // CURLM
    void* easy_ = nullptr;      // CURL
    void* address_ = nullptr;   // CURLU
    void* commands_ = nullptr;  // curl_slist
    FtpSockets sockets_;
    bool connected_ = false;
    bool fileOpen_ = false;
    std::uint64_t restart_ = 0;
    bool restartSaid_ = false;  // the server holds an offset for the next file

    // The exchange that runs, or ran last.
    Kind kind_ = Kind::kCommands;
    bool running_ = false;
    bool usedOldLogIn_ = false;
    bool began_ = false;     // the command that opens the file was sent
    bool inOrder_ = false;   // the server has agreed to transfer the file
    bool cutShort_ = false;  // the control connection spoke into an upload
    bool cancelled_ = false;
    FtpResult result_;
    std::string verb_;  // of the command that was sent last
    FtpReply reply_;    // to it
    std::size_t replyBytes_ = 0;
    FtpReply restReply_;
    FtpReply sizeReply_;
    ByteSpan pending_;              // of Write
    bool hungry_ = false;           // all that was written is in the system's hands
    bool ending_ = false;           // no more will be written
    std::span<std::uint8_t> into_;  // of Read: what is still to be filled
    std::size_t filled_ = 0;
    Bytes surplus_;  // came with it, at most one block of libcurl's
    std::size_t surplusRead_ = 0;
    Time lastAsked_{};
    Time lastMoved_{};
    std::uint64_t lastUnderWay_ = 0;
};

}  // namespace orma
