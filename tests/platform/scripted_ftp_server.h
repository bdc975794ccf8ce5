#pragma once

#include <atomic>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orma::test {

/// A small FTP server on 127.0.0.1 in a thread of its own, passive only, one connection at a time,
/// with the faults of real ones. Ends with the object.
class ScriptedFtpServer {
  public:
    enum class AtLimit {
        kCloseBoth,     // both connections
        kCloseControl,  // goes on taking data
        kRefuse,        // closes the data connection, then says `last`
        kFreeze,        // takes nothing more and says nothing
    };
    struct Script {
        std::string greeting = "220 ready\r\n";
        bool greetsForEver = false;
        // Instead of the usual ones, by verb or whole command.
        std::map<std::string, std::string> replies{};
        std::map<std::string, std::string> files{};
        std::size_t limit = std::numeric_limits<std::size_t>::max();  // bytes of an upload
        AtLimit atLimit = AtLimit::kRefuse;
        std::string last = "226 Transfer complete.\r\n";  // after an upload
        std::string freezesAt{};  // says nothing more after the reply to this verb
        int dropsIdle = 0;        // so many times, after a file: 421 and the end
    };

    explicit ScriptedFtpServer(Script script);
    ~ScriptedFtpServer();
    ScriptedFtpServer(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;

    [[nodiscard]] int Port() const { return port_; }

    /// What was sent to it so far, a line each, and what an upload stored.
    [[nodiscard]] std::vector<std::string> Commands();
    [[nodiscard]] std::string File(const std::string& path);

  private:
    void Serve();
    void Talk(int control);
    [[nodiscard]] bool Obey(int control, const std::string& line);
    [[nodiscard]] bool Store(int control, const std::string& path);
    [[nodiscard]] int AcceptData();
    [[nodiscard]] bool Readable(int socket) const;
    [[nodiscard]] bool Freeze() const;

    Script script_;
    int listener_ = -1;
    int dataListener_ = -1;
    int port_ = 0;
    std::size_t offset_ = 0;
    std::mutex mutex_;
    std::vector<std::string> commands_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

}  // namespace orma::test
