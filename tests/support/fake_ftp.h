#pragma once

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/ftp_client.h"
#include "support/fake_patience.h"

namespace orma::test {

/// A server in memory for uploads, and its clients: what it holds, what it was asked, how it
/// misbehaves. One file at a time is open, as a client has it; the server outlives its clients.
class FakeFtp : public FtpClients {
  public:
    static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

    [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience,
                                                    FtpResult& result) override {
        result = creation;
        if (!creation.Ok()) return nullptr;
        return std::make_unique<Client>(*this, patience);
    }

    std::map<Text, Bytes> files;
    std::vector<std::string> log;  // "CONNECT host:21", "REST 5", "STOR a/b.mp2", "CLOSE", "QUIT"
    FtpTarget target;              // of the last log-in

    // The script. What is counted in bytes happens once and then resets itself.
    FtpResult creation;                       // what Create says
    FtpResult connection;                     // what log-ins say
    std::size_t failingConnections = kNever;  // how many of them, where `connection` is a failure
    FtpResult folder;                         // what looking for one says
    bool takesRestart = true;                 // 350 to REST
    FtpResult restart{kFtpRefused, 502, u"502 No restart here."};  // otherwise
    FtpResult opening;                                             // what opening a file says
    FtpResult restartedStore;  // what a server that accepts REST says to the STOR behind it
    std::size_t refusedRestartedStores = kNever;  // to how many, where that is a failure
    bool hidesUploads = false;         // a new file comes to stand under its name when it is whole
    std::size_t breaksAfter = kNever;  // the upload fails with the write that exceeds so many bytes
    FtpResult breaking{kFtpConnectionLost, 0, {}};  // if none, nothing arrives and nobody notices
    std::size_t losesAtBreak = 0;  // bytes at the end of completed writes that never arrived
    bool knowsSize = true;         // has SIZE
    FtpResult confirmation;        // what CloseFile says after an upload

  private:
    class Client : public FtpClient {
      public:
        Client(FakeFtp& server, Patience& patience) : server_(server), patience_(patience) {}
        ~Client() override { Disconnect(); }

        [[nodiscard]] FtpResult Connect(const FtpTarget& target) override {
            Disconnect();
            server_.target = target;
            server_.log.push_back("CONNECT " + ToUtf8(target.host) + Format(":%d", target.port));
            if (!patience_.GoOn()) return {kFtpCancelled, 0, {}};
            if (!server_.connection.Ok() && server_.failingConnections > 0) {
                if (server_.failingConnections != kNever) --server_.failingConnections;
                return server_.connection;
            }
            connected_ = true;
            return {};
        }

        [[nodiscard]] bool IsConnected() const override { return connected_; }

        void Disconnect() override {
            if (connected_) server_.log.emplace_back("QUIT");
            connected_ = false;
            open_ = false;
            restart_ = 0;
        }

        [[nodiscard]] FtpResult Restart(std::uint64_t offset) override {
            if (!connected_ || open_) return kWrong;
            server_.log.push_back(Format("REST %d", static_cast<int>(offset)));
            restart_ = server_.takesRestart ? offset : 0;
            return server_.takesRestart ? FtpResult{} : server_.restart;
        }

        [[nodiscard]] FtpResult RemoteSize(const Text& path,
                                           std::optional<std::uint64_t>& bytes) override {
            bytes.reset();
            if (!connected_ || open_) return kWrong;
            server_.log.push_back("SIZE " + ToUtf8(path));
            if (!server_.knowsSize) return {};
            bytes = server_.files.contains(path) ? server_.files[path].size() : 0;
            return {};
        }

        [[nodiscard]] FtpResult LookForFolder(const Text& folder) override {
            if (!connected_ || open_) return kWrong;
            server_.log.push_back("CWD " + ToUtf8(folder));
            return server_.folder;
        }

        [[nodiscard]] FtpResult OpenFile(const Text& path, Access access) override {
            if (!connected_ || open_ || access != Access::kWrite) return kWrong;
            server_.log.push_back("STOR " + ToUtf8(path));
            const auto offset = static_cast<std::size_t>(std::exchange(restart_, 0));
            if (!server_.opening.Ok()) return server_.opening;
            if (offset > 0 && !server_.restartedStore.Ok() && server_.refusedRestartedStores > 0) {
                if (server_.refusedRestartedStores != kNever) --server_.refusedRestartedStores;
                return server_.restartedStore;
            }
            finalPath_ = path;
            path_ = offset == 0 && server_.hidesUploads ? path + u".part" : path;
            server_.files[path_].resize(offset);  // a gap becomes zeros, as on real ones
            failure_ = {};
            deaf_ = false;
            open_ = true;
            return {};
        }

        [[nodiscard]] FtpResult Read(std::span<std::uint8_t>, std::size_t& got) override {
            got = 0;
            return kWrong;
        }

        [[nodiscard]] FtpResult Write(ByteSpan from) override {
            if (!open_) return kWrong;
            if (!failure_.Ok()) return failure_;
            if (!patience_.GoOn()) return failure_ = {kFtpCancelled, 0, {}};
            if (deaf_) return {};
            Bytes& file = server_.files[path_];
            if (from.size() > server_.breaksAfter) {
                file.insert(file.end(), from.begin(),
                            from.begin() + static_cast<std::ptrdiff_t>(server_.breaksAfter));
                file.resize(file.size() - std::min(file.size(), server_.losesAtBreak));
                server_.breaksAfter = kNever;
                deaf_ = server_.breaking.Ok();
                return failure_ = server_.breaking;
            }
            if (server_.breaksAfter != kNever) server_.breaksAfter -= from.size();
            file.insert(file.end(), from.begin(), from.end());
            return {};
        }

        [[nodiscard]] FtpResult CloseFile() override {
            if (!open_) return kWrong;
            open_ = false;
            server_.log.emplace_back("CLOSE");
            if (!failure_.Ok()) return failure_;
            if (path_ != finalPath_ && server_.confirmation.Ok())
                server_.files[finalPath_] = std::move(server_.files.extract(path_).mapped());
            return server_.confirmation;
        }

      private:
        inline static const FtpResult kWrong{kFtpWrongState, 0, {}};

        FakeFtp& server_;
        Patience& patience_;
        bool connected_ = false;
        bool open_ = false;
        std::uint64_t restart_ = 0;
        Text finalPath_;
        Text path_;
        FtpResult failure_;
        bool deaf_ = false;
    };
};

}  // namespace orma::test
