// Drives the FTP stream by hand or from a script: one command a line on standard input, one line of
// outcome each on standard output. The password stands in the environment, ORMA_FTP_PASSWORD.
//
//   account SERVER USER PASSIVE SECURITY [CAFILE]   (0 or 1; 0 to 2)
//   connect | test | disconnect | close | sleep MS
//   size BASE.EXT | open BASE.EXT | resume BASE.EXT OFFSET | fetch PATH BYTES FILE
//   write FILE OFFSET BYTES BLOCK        writes bytes of a local file in blocks
//   cancel MS                            patience ends so much later

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include "base/path.h"
#include "platform/curl/curl_ftp_clients.h"
#include "platform/posix/posix_storage.h"
#include "stream/connection_test.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {
namespace {

using Clock = std::chrono::steady_clock;

struct PrintedBoxes : MessageBoxes {
    BoxAnswer Show(const MessageBox& box) override {
        std::cout << "box: " << ToUtf8(box.text) << std::endl;
        return BoxAnswer::kOk;
    }
};

struct TimedPatience : Patience {
    [[nodiscard]] bool GoOn() override {
        const auto now = Clock::now();
        if (asked.time_since_epoch().count() != 0) longest = std::max(longest, now - asked);
        asked = now;
        return now < end;
    }
    Clock::time_point end = Clock::time_point::max();
    Clock::time_point asked{};
    Clock::duration longest{};
};

class Drive {
  public:
    void Run(const std::string& line);

  private:
    void Write(const std::string& file, std::size_t offset, std::size_t bytes, std::size_t block);
    void Name(const std::string& name) {
        const PathParts parts = SplitPath(FromUtf8(name));
        account_.folder = parts.folder.substr(0, parts.folder.size() - !parts.folder.empty());
        base_ = parts.name;
        stream_.SetDestination(account_, parts.extension.substr(!parts.extension.empty()));
    }
    void Say(const std::string& what, const FtpResult& result) {
        std::cout << what << ": status " << stream_.Status() << " code " << result.code;
        if (!result.reply.empty()) std::cout << " [" << ToUtf8(result.reply) << "]";
    }

    PrintedBoxes boxes_;
    PosixStorage storage_;
    ErrorReporter report_{boxes_, storage_};
    TimedPatience patience_;
    CurlFtpClients clients_{{.connectMs = 15'000, .replyMs = 15'000, .stallMs = 15'000}};
    FtpServices services_{clients_, report_, patience_};
    JStreamWrFTP stream_{services_};
    FtpAccount account_;
    Text base_;
};

void Drive::Write(const std::string& file, std::size_t offset, std::size_t bytes,
                  std::size_t block) {
    std::ifstream from(file, std::ios::binary);
    from.seekg(static_cast<std::streamoff>(offset));
    std::string buffer(block, '\0');
    while (bytes > 0 && stream_.IsOpen()) {
        const std::size_t count = std::min(bytes, block);
        from.read(buffer.data(), static_cast<std::streamsize>(count));
        stream_.Write(buffer.data(), static_cast<std::uint32_t>(from.gcount()));
        if (static_cast<std::size_t>(from.gcount()) < count) break;
        bytes -= count;
    }
    Say("write", stream_.LastResult());
    std::cout << " written " << stream_.BytesWritten();
}

void Drive::Run(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    const auto start = Clock::now();
    patience_.asked = {};
    patience_.longest = {};
    if (verb == "account") {
        std::string server;
        std::string user;
        std::string caFile;
        int security = 0;
        words >> server >> user >> account_.passive >> security >> caFile;
        const char* password = std::getenv("ORMA_FTP_PASSWORD");
        account_.server = FromUtf8(server);
        account_.user = FromUtf8(user);
        account_.password = FromUtf8(password != nullptr ? password : "");
        account_.security = static_cast<TransportSecurity>(security);
        account_.caFile = FromUtf8(caFile);
        std::cout << "account";
    } else if (verb == "connect") {
        stream_.OpenWriterSession(account_);
        Say(stream_.IsConnected() ? "connected" : "not connected", stream_.LastResult());
    } else if (verb == "test") {
        std::cout << "test: " << TestConnection(0, account_, services_, [] { return false; });
    } else if (verb == "disconnect") {
        stream_.CloseAll();
        Say("disconnect", stream_.CloseResult());
    } else if (verb == "close") {
        stream_.CloseFile();
        Say("close", stream_.CloseResult());
    } else if (verb == "size" || verb == "open" || verb == "resume") {
        std::string name;
        std::uint32_t offset = 0;
        words >> name >> offset;
        Name(name);
        if (verb == "size") {
            const auto bytes = stream_.PublishedSize(base_);
            std::cout << "size: " << (bytes ? std::to_string(*bytes) : "none") << " ";
        } else if (verb == "open") {
            stream_.OpenForWriting(base_);
        } else {
            std::cout << "resume: " << stream_.ResumeOpen(base_, offset) << " ";
        }
        Say(verb, stream_.LastResult());
    } else if (verb == "write") {
        std::string file;
        std::size_t offset = 0;
        std::size_t bytes = 0;
        std::size_t block = 0;
        words >> file >> offset >> bytes >> block;
        Write(file, offset, bytes, block);
    } else if (verb == "fetch") {
        std::string path;
        std::string file;
        std::uint32_t bytes = 0;
        words >> path >> bytes >> file;
        stream_.OpenRemoteFile(FromUtf8(path), true);
        std::string buffer(bytes, '\0');
        stream_.Read(buffer.data(), bytes);
        std::ofstream(file, std::ios::binary) << buffer;
        Say("fetch", stream_.LastResult());
    } else if (verb == "sleep") {
        int ms = 0;
        words >> ms;
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        std::cout << "slept";
    } else if (verb == "cancel") {
        int ms = 0;
        words >> ms;
        patience_.end = Clock::now() + std::chrono::milliseconds(ms);
        std::cout << "cancel";
    } else {
        std::cout << "unknown command: " << verb;
    }
    using Ms = std::chrono::milliseconds;
    std::cout << " | " << std::chrono::duration_cast<Ms>(Clock::now() - start).count()
              << " ms, longest unasked "
              << std::chrono::duration_cast<Ms>(patience_.longest).count() << " ms" << std::endl;
}

}  // namespace
}  // namespace orma

int main() {
    orma::Drive drive;
    for (std::string line; std::getline(std::cin, line);)
        drive.Run(line);
}
