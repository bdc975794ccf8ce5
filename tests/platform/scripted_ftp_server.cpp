#include "platform/scripted_ftp_server.h"

#include <array>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orma::test {
namespace {

int Listen(int& port) {
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

bool Send(int socket, const std::string& text) {
    return send(socket, text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
}

}  // namespace

ScriptedFtpServer::ScriptedFtpServer(Script script) : script_(std::move(script)) {
    listener_ = Listen(port_);
    thread_ = std::thread([this] { Serve(); });
}

ScriptedFtpServer::~ScriptedFtpServer() {
    stop_ = true;
    thread_.join();
    if (dataListener_ >= 0) close(dataListener_);
    close(listener_);
}

std::vector<std::string> ScriptedFtpServer::Commands() {
    const std::lock_guard lock(mutex_);
    return commands_;
}

std::string ScriptedFtpServer::File(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return script_.files[path];
}

bool ScriptedFtpServer::Readable(int socket) const {
    pollfd entry{socket, POLLIN, 0};
    while (!stop_) {
        if (poll(&entry, 1, 10) > 0) return true;
    }
    return false;
}

bool ScriptedFtpServer::Freeze() const {
    while (!stop_)
        poll(nullptr, 0, 10);
    return false;
}

void ScriptedFtpServer::Serve() {
    while (Readable(listener_)) {
        const int control = accept(listener_, nullptr, nullptr);
        Talk(control);
        close(control);
    }
}

void ScriptedFtpServer::Talk(int control) {
    bool going = Send(control, script_.greeting);
    while (going && script_.greetsForEver && !stop_)
        going = Send(control, script_.greeting);
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

bool ScriptedFtpServer::Obey(int control, const std::string& line) {
    const std::size_t space = line.find(' ');
    const std::string verb = line.substr(0, space);
    const std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
    auto reply = script_.replies.find(line);
    if (reply == script_.replies.end()) reply = script_.replies.find(verb);
    if (reply != script_.replies.end())
        return Send(control, reply->second) && (verb != script_.freezesAt || Freeze());
    if (verb == "USER") return Send(control, "331 Password?\r\n");
    if (verb == "PASS") return Send(control, "230 Welcome.\r\n");
    if (verb == "PWD") return Send(control, "257 \"/\" is where you are\r\n");
    if (verb == "QUIT") return Send(control, "221 Bye.\r\n") && false;
    if (verb == "TYPE") return Send(control, "200 Binary.\r\n");
    if (verb == "REST") {
        offset_ = std::stoul(rest);
        return Send(control, "350 Restarting.\r\n");
    }
    if (verb == "EPSV") {
        int port = 0;
        if (dataListener_ >= 0) close(dataListener_);
        dataListener_ = Listen(port);
        return Send(control, "229 Passive (|||" + std::to_string(port) + "|)\r\n");
    }
    const std::string file = File(rest);
    if (verb == "SIZE") return Send(control, "213 " + std::to_string(file.size()) + "\r\n");
    if (verb == "STOR") {
        const bool going = Store(control, rest);
        if (!going || script_.dropsIdle == 0) return going;
        --script_.dropsIdle;
        return Send(control, "421 Timeout.\r\n") && false;
    }
    if (verb == "RETR") {
        const int data = AcceptData();
        const bool sent = Send(control, "150 Here it comes.\r\n") && Send(data, file);
        close(data);
        return sent && Send(control, "226 Sent.\r\n");
    }
    return Send(control, "500 What?\r\n");
}

int ScriptedFtpServer::AcceptData() {
    return Readable(dataListener_) ? accept(dataListener_, nullptr, nullptr) : -1;
}

bool ScriptedFtpServer::Store(int control, const std::string& path) {
    const int data = AcceptData();
    {
        const std::lock_guard lock(mutex_);
        script_.files[path].resize(std::exchange(offset_, 0));
    }
    bool going = Send(control, "150 Ok to send.\r\n");
    std::array<char, 16384> bytes{};
    std::size_t taken = 0;
    while (going && Readable(data)) {
        const ssize_t got = recv(data, bytes.data(), bytes.size(), 0);
        if (got <= 0) break;
        {
            const std::lock_guard lock(mutex_);
            script_.files[path].append(bytes.data(), static_cast<std::size_t>(got));
        }
        const bool reached = taken < script_.limit;
        taken += static_cast<std::size_t>(got);
        if (!reached || taken < script_.limit) continue;
        if (script_.atLimit == AtLimit::kRefuse) break;
        if (script_.atLimit == AtLimit::kCloseControl) shutdown(control, SHUT_RDWR);
        if (script_.atLimit == AtLimit::kCloseBoth) going = false;
        if (script_.atLimit == AtLimit::kFreeze) going = Freeze();
    }
    close(data);
    return going && Send(control, script_.last);
}

}  // namespace orma::test
