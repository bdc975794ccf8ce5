#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <thread>

#include "support/fake_ftp.h"

namespace orma::test {

/// A FakeFtp that stands still while it is frozen, as a server on a dead line does: operations wait
/// and ask their patience, or only an interruption ends them. For clients on other threads: change
/// the atomic fields at any time, touch the rest only while none is at work.
class StallingFtp : public FtpClients {
  public:
    [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience,
                                                    FtpResult& result) override {
        return std::make_unique<Client>(*this, patience, server.Create(patience, result));
    }

    FakeFtp server;
    std::atomic<bool> frozen = false;
    std::atomic<bool> deaf = false;  // nobody's patience is asked
    std::atomic<std::size_t> room = std::numeric_limits<std::size_t>::max();  // for bytes to come
    std::optional<std::uint64_t> claimedSize;  // instead of the truth

  private:
    class Client : public FtpClient {
      public:
        Client(StallingFtp& line, Patience& patience, std::unique_ptr<FtpClient> client)
            : line_(line), patience_(patience), client_(std::move(client)) {}

        FtpResult Connect(const FtpTarget& target) override {
            return Thawed() ? client_->Connect(target) : kCancelled;
        }
        bool IsConnected() const override { return client_->IsConnected(); }
        void Disconnect() override { client_->Disconnect(); }
        FtpResult Restart(std::uint64_t offset) override { return client_->Restart(offset); }
        FtpResult RemoteSize(const Text& path, std::optional<std::uint64_t>& bytes) override {
            const FtpResult result = client_->RemoteSize(path, bytes);
            if (line_.claimedSize) bytes = line_.claimedSize;
            return result;
        }
        FtpResult OpenFile(const Text& path, Access access) override {
            return Thawed() ? client_->OpenFile(path, access) : kCancelled;
        }
        FtpResult Read(std::span<std::uint8_t> into, std::size_t& got) override {
            return client_->Read(into, got);
        }
        FtpResult Write(ByteSpan from) override {
            if (!Thawed([&] { return line_.room >= from.size(); })) return kCancelled;
            line_.room -= from.size();
            return client_->Write(from);
        }
        FtpResult CloseFile() override { return Thawed() ? client_->CloseFile() : kCancelled; }
        void Interrupt() override { interrupted_ = true; }

      private:
        inline static const FtpResult kCancelled{kFtpCancelled, 0, {}};

        bool Thawed(const std::function<bool()>& mayGo = [] { return true; }) {
            while (line_.frozen || !mayGo()) {
                if (interrupted_.exchange(false)) return false;
                if (!line_.deaf && !patience_.GoOn()) return false;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            return true;
        }

        StallingFtp& line_;
        Patience& patience_;
        std::unique_ptr<FtpClient> client_;
        std::atomic<bool> interrupted_ = false;
    };
};

}  // namespace orma::test
