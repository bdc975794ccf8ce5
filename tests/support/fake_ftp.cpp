#include "support/fake_ftp.h"

#include <algorithm>
#include <utility>

namespace orma::test {
namespace {

class FakeFtpClient : public FtpClient {
  public:
    FakeFtpClient(FakeFtp& server, Patience& patience) : server_(server), patience_(patience) {}
    ~FakeFtpClient() override { Disconnect(); }

    [[nodiscard]] FtpResult Connect(const FtpTarget& target) override {
        Disconnect();
        server_.target = target;
        server_.log.push_back("CONNECT " + ToUtf8(target.host) + Format(":%d", target.port));
        if (!patience_.GoOn()) return {kFtpCancelled, 0, {}};
        if (!server_.connection.Ok() && server_.failingConnections > 0) {
            if (server_.failingConnections != FakeFtp::kNever) --server_.failingConnections;
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
        if (!connected_ || open_) return kWrong;
        reading_ = access == Access::kRead;
        server_.log.push_back((reading_ ? "RETR " : "STOR ") + ToUtf8(path));
        const auto offset = static_cast<std::size_t>(std::exchange(restart_, 0));
        if (!server_.opening.Ok()) return server_.opening;
        if (reading_ && !server_.files.contains(path))
            return {kFtpRefused, 550, u"550 Failed to open file."};
        if (!reading_ && offset > 0 && !server_.restartedStore.Ok() &&
            server_.refusedRestartedStores > 0) {
            if (server_.refusedRestartedStores != FakeFtp::kNever) --server_.refusedRestartedStores;
            return server_.restartedStore;
        }
        finalPath_ = path;
        path_ = !reading_ && offset == 0 && server_.hidesUploads ? path + u".part" : path;
        position_ = offset;
        if (!reading_) server_.files[path_].resize(offset);  // a gap becomes zeros, as on real ones
        failure_ = {};
        deaf_ = false;
        open_ = true;
        return {};
    }

    [[nodiscard]] FtpResult Read(std::span<std::uint8_t> into, std::size_t& got) override {
        got = 0;
        if (!open_ || !reading_) return kWrong;
        const Bytes& file = server_.files[path_];
        got = std::min(into.size(), file.size() - std::min(position_, file.size()));
        std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(position_), got, into.begin());
        position_ += got;
        return {};
    }

    [[nodiscard]] FtpResult Write(ByteSpan from) override {
        if (!open_ || reading_) return kWrong;
        if (!failure_.Ok()) return failure_;
        if (!patience_.GoOn()) return failure_ = {kFtpCancelled, 0, {}};
        if (deaf_) return {};
        Bytes& file = server_.files[path_];
        if (from.size() > server_.breaksAfter) {
            file.insert(file.end(), from.begin(),
                        from.begin() + static_cast<std::ptrdiff_t>(server_.breaksAfter));
            file.resize(file.size() - std::min(file.size(), server_.losesAtBreak));
            server_.breaksAfter = FakeFtp::kNever;
            deaf_ = server_.breaking.Ok();
            return failure_ = server_.breaking;
        }
        if (server_.breaksAfter != FakeFtp::kNever) server_.breaksAfter -= from.size();
        file.insert(file.end(), from.begin(), from.end());
        return {};
    }

    [[nodiscard]] FtpResult CloseFile() override {
        if (!open_) return kWrong;
        open_ = false;
        server_.log.emplace_back("CLOSE");
        if (reading_) return {};
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
    bool reading_ = false;
    std::uint64_t restart_ = 0;
    Text finalPath_;
    Text path_;
    std::size_t position_ = 0;
    FtpResult failure_;
    bool deaf_ = false;
};

}  // namespace

std::unique_ptr<FtpClient> FakeFtp::Create(Patience& patience, FtpResult& result) {
    result = creation;
    if (!creation.Ok()) return nullptr;
    return std::make_unique<FakeFtpClient>(*this, patience);
}

}  // namespace orma::test
