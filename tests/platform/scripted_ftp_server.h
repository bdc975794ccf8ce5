#pragma once

#include <array>
#include <atomic>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orma::test {

/// A small FTP server on 127.0.0.1 in a thread of its own, passive only, one connection at a time,
/// with the faults of real ones. Ends with the object.
class ScriptedFtpServer {
  public:
    struct Script {
        // By verb or whole command, or "greeting"; the usual ones need not be said.
        std::map<std::string, std::string> replies{};
        std::size_t limit = std::numeric_limits<std::size_t>::max();  // bytes of an upload
        bool freezesAtLimit = false;  // instead of ending the data connection and saying `last`
        std::string last = "226 Transfer complete.\r\n";  // after an upload
        std::string freezesAt{};  // says nothing more after the reply to this verb
        int dropsIdle = 0;        // so many times, after a file: 421 and the end
    };

    explicit ScriptedFtpServer(Script script) : script_(std::move(script)) {
        script_.replies.merge(
            std::map<std::string, std::string>{{"greeting", "220 ready\r\n"},
                                               {"USER", "331 Password?\r\n"},
                                               {"PASS", "230 Welcome.\r\n"},
                                               {"PWD", "257 \"/\" is where you are\r\n"},
                                               {"TYPE", "200 Binary.\r\n"},
                                               {"REST", "350 Restarting.\r\n"},
                                               {"QUIT", "221 Bye.\r\n"}});
        thread_ = std::thread([this] {
            while (Readable(listener_)) {
                const int control = accept(listener_, nullptr, nullptr);
                Talk(control);
                close(control);
            }
        });
    }
    ~ScriptedFtpServer() {
        stop_ = true;
        thread_.join();
        if (dataListener_ >= 0) close(dataListener_);
        close(listener_);
    }
    ScriptedFtpServer(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;

    [[nodiscard]] int Port() const { return port_; }

    /// What was sent to it so far, a line each.
    [[nodiscard]] std::vector<std::string> Commands() {
        const std::lock_guard lock(mutex_);
        return commands_;
    }

  private:
    static int Listen(int& port) {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        bind(socket, reinterpret_cast<sockaddr*>(&address), size);
        listen(socket, 4);
        getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        return socket;
    }
    static bool Send(int socket, const std::string& text) {
        return send(socket, text.data(), text.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(text.size());
    }

    /// Waits; false at the end of the server. A negative socket is never readable.
    [[nodiscard]] bool Readable(int socket) const {
        pollfd entry{socket, POLLIN, 0};
        while (!stop_)
            if (poll(&entry, 1, 10) > 0) return true;
        return false;
    }

    void Talk(int control) {
        bool going = Send(control, script_.replies["greeting"]);
        std::string line;
        char byte = 0;
        while (going && Readable(control) && recv(control, &byte, 1, 0) == 1) {
            if (byte != '\n') {
                line += byte;
                continue;
            }
            line.pop_back();
            {
                const std::lock_guard lock(mutex_);
                commands_.push_back(line);
            }
            going = Obey(control, std::exchange(line, {}));
        }
    }

    [[nodiscard]] bool Obey(int control, const std::string& line) {
        const std::string verb = line.substr(0, line.find(' '));
        const std::string rest = line.substr(std::min(line.size(), verb.size() + 1));
        auto reply = script_.replies.find(line);
        if (reply == script_.replies.end()) reply = script_.replies.find(verb);
        if (reply != script_.replies.end()) {
            if (verb == "REST") offset_ = std::stoul(rest);
            return Send(control, reply->second) && verb != "QUIT" &&
                   (verb != script_.freezesAt || Readable(-1));
        }
        std::string& file = files_[rest];
        if (verb == "EPSV") {
            int port = 0;
            if (dataListener_ >= 0) close(dataListener_);
            dataListener_ = Listen(port);
            return Send(control, "229 Passive (|||" + std::to_string(port) + "|)\r\n");
        }
        if (verb == "SIZE") return Send(control, "213 " + std::to_string(file.size()) + "\r\n");
        if (verb == "STOR") {
            const bool going = Store(control, file);
            if (!going || script_.dropsIdle == 0) return going;
            --script_.dropsIdle;
            return Send(control, "421 Timeout.\r\n") && false;
        }
        return Send(control, "500 What?\r\n");
    }

    [[nodiscard]] bool Store(int control, std::string& file) {
        const int data = Readable(dataListener_) ? accept(dataListener_, nullptr, nullptr) : -1;
        file.resize(std::exchange(offset_, 0));
        bool going = Send(control, "150 Ok to send.\r\n");
        std::array<char, 16384> bytes{};
        for (std::size_t taken = 0; going && taken < script_.limit && Readable(data);) {
            const ssize_t got = recv(data, bytes.data(), bytes.size(), 0);
            if (got <= 0) break;
            file.append(bytes.data(), static_cast<std::size_t>(got));
            taken += static_cast<std::size_t>(got);
            if (taken >= script_.limit && script_.freezesAtLimit) going = Readable(-1);
        }
        close(data);
        return going && Send(control, script_.last);
    }

    Script script_;
    std::map<std::string, std::string> files_;
    int port_ = 0;
    int listener_ = Listen(port_);
    int dataListener_ = -1;
    std::size_t offset_ = 0;
    std::mutex mutex_;
    std::vector<std::string> commands_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

}  // namespace orma::test
