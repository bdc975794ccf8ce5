// The client's exchanges: what libcurl is set up to do, and what it tells meanwhile.

#include <algorithm>
#include <cstring>

#include <curl/curl.h>

#include "platform/curl/curl_ftp_client.h"
#include "platform/curl/curl_ftp_codes.h"

namespace orma {
namespace {

using std::chrono::milliseconds;

constexpr auto kAskEvery = milliseconds(20);
constexpr int kWaitMs = 40;

// More than any server says in one exchange; who says more has something else in mind.
constexpr std::size_t kMostReplyBytes = 64 * 1024;

constexpr long kUploadBlockBytes = 64 * 1024;

constexpr long kTls12 = CURL_SSLVERSION_TLSv1_2;
constexpr long kOnlyTls12 = kTls12 | (kTls12 << 16);  // the upper half is the highest version
static_assert(kTls12 << 16 == +CURL_SSLVERSION_MAX_TLSv1_2);

// Beyond libcurl's own time-outs, which give the better codes.
constexpr std::uint32_t kGraceMs = 2000;

std::chrono::steady_clock::time_point Now() {
    return std::chrono::steady_clock::now();
}

// The path as one word of a URL; its own first slash must not be taken for the URL's.
std::string Escaped(std::string_view path) {
    std::string escaped = "/";
    for (std::size_t i = 0; i < path.size(); ++i) {
        const auto c = static_cast<unsigned char>(path[i]);
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || std::strchr("-_.~", c) != nullptr ||
                           (c == '/' && i > 0);
        escaped += plain ? std::string(1, path[i]) : Format("%%%02X", c);
    }
    return escaped;
}

}  // namespace

struct CurlFtpClient::Hooks {
    static CurlFtpClient& Self(void* client) { return *static_cast<CurlFtpClient*>(client); }

    static std::size_t Header(char* data, std::size_t size, std::size_t count, void* client) {
        return Self(client).OnReply({data, size * count});
    }
    static int Debug(CURL*, curl_infotype type, char* data, std::size_t size, void* client) {
        if (type == CURLINFO_HEADER_OUT) Self(client).OnCommand({data, size});
        return 0;
    }
    static std::size_t WantsData(char* room, std::size_t size, std::size_t count, void* client) {
        return Self(client).OnWantsData({room, size * count});
    }
    static std::size_t Data(char* data, std::size_t size, std::size_t count, void* client) {
        return Self(client).OnData({data, size * count});
    }
    static curl_socket_t OpenSocket(void* client, curlsocktype, curl_sockaddr* address) {
        return Self(client).sockets_.Open(address->family, address->socktype, address->protocol);
    }
    static int CloseSocket(void* client, curl_socket_t socket) {
        Self(client).OnCloseSocket(socket);
        return 0;
    }
    static int SocketOptions(void* client, curl_socket_t socket, curlsocktype purpose) {
        if (purpose == CURLSOCKTYPE_ACCEPT) Self(client).sockets_.Accepted(socket);
        return CURL_SOCKOPT_OK;
    }
    static int Progress(void* client, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
        return Self(client).OnProgress() ? 0 : 1;
    }
};

// ---- What libcurl tells

std::size_t CurlFtpClient::OnReply(std::string_view line) {
    sockets_.FoundControl();
    lastMoved_ = Now();
    replyBytes_ += line.size();
    if (replyBytes_ > kMostReplyBytes) return 0;
    reply_.Take(line);
    if (!reply_.Complete()) return line.size();
    if (verb_ == "REST") {
        restReply_ = reply_;
        // libcurl would take any friendly word for consent and store at the wrong place.
        if (kind_ != Kind::kCommands && reply_.Number() != 350) return 0;
    }
    if (verb_ == "SIZE") sizeReply_ = reply_;
    if (began_ && reply_.Number() < 200) inOrder_ = true;
    return line.size();
}

void CurlFtpClient::OnCommand(std::string_view command) {
    verb_ = command.substr(0, command.find_first_of(" \r\n"));
    began_ = began_ || verb_ == "STOR" || verb_ == "RETR";
    lastMoved_ = Now();
    reply_.Clear();
}

std::size_t CurlFtpClient::OnWantsData(std::span<char> room) {
    inOrder_ = true;
    if (!cutShort_ && sockets_.ControlSpoke()) cutShort_ = true;
    if (cutShort_) return 0;  // libcurl reads what was said, and the exchange has failed
    if (!pending_.empty()) {
        const std::size_t count = std::min(room.size(), pending_.size());
        std::memcpy(room.data(), pending_.data(), count);
        pending_ = pending_.subspan(count);
        lastMoved_ = Now();
        return count;
    }
    hungry_ = true;
    if (!ending_) return CURL_READFUNC_PAUSE;
    const bool clear = target_.security == TransportSecurity::kNone;
    return clear && !ServerTookAll() ? CURL_READFUNC_ABORT : 0;
}

std::size_t CurlFtpClient::OnData(std::string_view data) {
    lastMoved_ = Now();
    if (into_.empty()) return CURL_WRITEFUNC_PAUSE;
    const std::size_t count = std::min(into_.size(), data.size());
    std::memcpy(into_.data(), data.data(), count);
    into_ = into_.subspan(count);
    filled_ += count;
    surplus_.assign(data.begin() + static_cast<std::ptrdiff_t>(count), data.end());
    surplusRead_ = 0;
    return data.size();
}

void CurlFtpClient::OnCloseSocket(int socket) {
    const bool clear = target_.security == TransportSecurity::kNone;
    const bool transferring =
        running_ && began_ && kind_ == Kind::kStore && result_.Ok() && !cancelled_;
    // The server explains on the control connection why it broke the other one.
    if (sockets_.IsControl(socket) && transferring && clear && !reply_.Final())
        sockets_.ReadLeftOver(reply_);
    const bool protectedEnd = sockets_.IsData(socket) && transferring && !clear && ending_;
    sockets_.Close(socket);
    // libcurl would now wait for the confirmation in one piece, deaf to everything else.
    if (protectedEnd && !ServerTookAll()) sockets_.KillControl();
}

// ---- The exchange

bool CurlFtpClient::SetAddress(const Task& task) {
    curl_url_cleanup(static_cast<CURLU*>(address_));
    CURLU* url = curl_url();
    address_ = url;
    const bool implicit = target_.security == TransportSecurity::kImplicit;
    const std::string host = ToUtf8(target_.host);
    const std::string path = task.path.empty() ? "/" : Escaped(task.path);
    bool good = url != nullptr &&
                curl_url_set(url, CURLUPART_SCHEME, implicit ? "ftps" : "ftp", 0) == CURLUE_OK &&
                curl_url_set(url, CURLUPART_HOST, host.c_str(), 0) == CURLUE_OK &&
                curl_url_set(url, CURLUPART_PATH, path.c_str(), 0) == CURLUE_OK;
    if (good && target_.port != 0) {
        const std::string port = Format("%d", target_.port);
        good = curl_url_set(url, CURLUPART_PORT, port.c_str(), 0) == CURLUE_OK;
    }
    if (good) curl_easy_setopt(easy_, CURLOPT_CURLU, url);
    return good;
}

void CurlFtpClient::SetSecurity() {
    if (target_.security == TransportSecurity::kNone) {
        curl_easy_setopt(easy_, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_NONE));
        return;
    }
    curl_easy_setopt(easy_, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
    curl_easy_setopt(easy_, CURLOPT_FTPSSLAUTH, static_cast<long>(CURLFTPAUTH_TLS));
    // Servers want the session of the control connection on every data connection; with TLS 1.3
    // the second transfer fails on several of them.
    curl_easy_setopt(easy_, CURLOPT_SSLVERSION, kOnlyTls12);
    curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYHOST, 2L);
    if (target_.caFile.empty()) return;
    curl_easy_setopt(easy_, CURLOPT_CAINFO, ToUtf8(target_.caFile).c_str());
    curl_easy_setopt(easy_, CURLOPT_CAPATH, nullptr);
}

void CurlFtpClient::SetLists(const Task& task) {
    curl_slist_free_all(static_cast<curl_slist*>(commands_));
    curl_slist* list = nullptr;
    for (const std::string& command : task.commands)
        list = curl_slist_append(list, command.c_str());
    commands_ = list;
    curl_easy_setopt(easy_, task.kind == Kind::kCommands ? CURLOPT_QUOTE : CURLOPT_PREQUOTE, list);
}

bool CurlFtpClient::Begin(const Task& task) {
    kind_ = task.kind;
    began_ = inOrder_ = cutShort_ = cancelled_ = hungry_ = ending_ = false;
    result_ = {};
    verb_.clear();
    reply_.Clear();
    restReply_.Clear();
    replyBytes_ = 0;
    sizeReply_.Clear();
    pending_ = {};
    into_ = {};
    surplus_.clear();
    surplusRead_ = 0;
    lastMoved_ = Now();
    lastUnderWay_ = 0;
    // A server that dropped an idle connection has said so, which is no reply to what comes now.
    if (sockets_.ControlSpoke()) sockets_.KillControl();
    usedOldLogIn_ = sockets_.HasControl();

    curl_easy_reset(easy_);
    if (!SetAddress(task)) {
        result_.code = kFtpNameNotResolved;
        return false;
    }
    const auto set = [this](auto option, auto value) { curl_easy_setopt(easy_, option, value); };
    void* self = this;
    set(CURLOPT_HEADERFUNCTION, &Hooks::Header);
    set(CURLOPT_HEADERDATA, self);
    set(CURLOPT_DEBUGFUNCTION, &Hooks::Debug);
    set(CURLOPT_DEBUGDATA, self);
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_READFUNCTION, &Hooks::WantsData);
    set(CURLOPT_READDATA, self);
    set(CURLOPT_WRITEFUNCTION, &Hooks::Data);
    set(CURLOPT_WRITEDATA, self);
    set(CURLOPT_OPENSOCKETFUNCTION, &Hooks::OpenSocket);
    set(CURLOPT_OPENSOCKETDATA, self);
    set(CURLOPT_CLOSESOCKETFUNCTION, &Hooks::CloseSocket);
    set(CURLOPT_CLOSESOCKETDATA, self);
    set(CURLOPT_SOCKOPTFUNCTION, &Hooks::SocketOptions);
    set(CURLOPT_SOCKOPTDATA, self);
    set(CURLOPT_XFERINFOFUNCTION, &Hooks::Progress);
    set(CURLOPT_XFERINFODATA, self);
    set(CURLOPT_NOPROGRESS, 0L);

    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // giving up does not wait for a name server
    set(CURLOPT_PROXY, "");
    set(CURLOPT_PROTOCOLS_STR, "ftp,ftps");
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    set(CURLOPT_TCP_NODELAY, 0L);  // blocks of a few KB are gathered while others are under way
    set(CURLOPT_CONNECTTIMEOUT_MS,
        static_cast<long>(target_.connectTimeoutMs != 0 ? target_.connectTimeoutMs
                                                        : limits_.connectMs));
    set(CURLOPT_SERVER_RESPONSE_TIMEOUT, static_cast<long>((limits_.replyMs + 999) / 1000));
    set(CURLOPT_ACCEPTTIMEOUT_MS, static_cast<long>(limits_.replyMs));
    const bool goes = task.kind == Kind::kCommands;  // a file has its folder in its name
    set(CURLOPT_FTP_FILEMETHOD,
        static_cast<long>(goes ? CURLFTPMETHOD_SINGLECWD : CURLFTPMETHOD_NOCWD));
    set(CURLOPT_PATH_AS_IS, 1L);
    // libcurl 7.88 sends the data of active connections in clear text even where it must not.
    if (!target_.passive && target_.security == TransportSecurity::kNone) set(CURLOPT_FTPPORT, "-");
    if (!target_.user.empty()) {
        set(CURLOPT_USERNAME, ToUtf8(target_.user).c_str());
        set(CURLOPT_PASSWORD, password_.c_str());
    }
    SetSecurity();
    SetLists(task);
    if (task.kind == Kind::kCommands) set(CURLOPT_NOBODY, 1L);
    if (task.kind == Kind::kStore) {
        set(CURLOPT_UPLOAD, 1L);
        set(CURLOPT_UPLOAD_BUFFERSIZE, kUploadBlockBytes);
    }
    if (task.kind == Kind::kRetrieve) set(CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
    running_ = curl_multi_add_handle(multi_, easy_) == CURLM_OK;
    if (!running_) result_.code = kFtpConnectionLost;
    return running_;
}

/// Runs a task to its end, or a file to where its data begins. A log-in that the server dropped
/// while it was idle is renewed once, as long as no file was asked for.
FtpResult CurlFtpClient::Exchange(const Task& task) {
    for (bool again = false;; again = true) {
        if (Begin(task)) {
            Drive([this] {
                return kind_ == Kind::kStore ? hungry_ : kind_ == Kind::kRetrieve && inOrder_;
            });
        }
        const bool dropped = result_.code == kFtpConnectionLost || result_.replyNumber == 421;
        if (again || !dropped || !usedOldLogIn_ || began_) return result_;
    }
}

/// Drives the exchange until it is over, which result_ then tells, or the caller has enough.
void CurlFtpClient::Drive(const std::function<bool()>& enough) {
    while (running_ && !enough()) {
        int handles = 0;
        const std::size_t pending = pending_.size();
        const CURLMcode code = curl_multi_perform(multi_, &handles);
        if (code != CURLM_OK) GiveUp(kFtpConnectionLost);
        if (Done() || enough()) return;
        if (!Asked())
            GiveUp(kFtpCancelled);
        else if (pending_.size() < pending)
            continue;  // it goes well; looking around would cost as much as sending
        else if (Stalled())
            GiveUp(kFtpTimeout);
        else
            Wait();
    }
}

void CurlFtpClient::Wait() {
    curl_waitfd control{};
    control.fd = sockets_.Control();
    control.events = CURL_WAIT_POLLIN;
    const bool watch = kind_ == Kind::kStore && inOrder_ && sockets_.HasControl() && !cutShort_;
    curl_multi_poll(multi_, &control, watch ? 1U : 0U, kWaitMs, nullptr);
    // A server that says why it stopped may leave the data connection standing, full.
    if (watch && sockets_.ControlSpoke() && !ending_) cutShort_ = true;
}

/// Takes libcurl's word for the end of the exchange.
bool CurlFtpClient::Done() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode code = message->data.result;
        long verifyResult = 0;
        curl_easy_getinfo(easy_, CURLINFO_SSL_VERIFYRESULT, &verifyResult);
        Leave();
        if (!result_.Ok()) break;  // known already
        if (cancelled_)
            result_.code = kFtpCancelled;
        else if (code != CURLE_OK)
            result_ = restReply_.Complete() && restReply_.Number() != 350 && !began_
                          ? Refusal(restReply_, password_)
                          : FailureOf(code, verifyResult, reply_, password_);
        else if (cutShort_)
            result_ = FailureOf(CURLE_SEND_ERROR, 0, reply_, password_);
    }
    return !running_;
}

void CurlFtpClient::GiveUp(FtpCode code) {
    if (result_.Ok()) result_.code = code;
    if (kind_ == Kind::kStore) sockets_.ResetData();
    Leave();
}

void CurlFtpClient::Leave() {
    if (!running_) return;
    curl_multi_remove_handle(multi_, easy_);
    running_ = false;
    pending_ = {};
    into_ = {};
    sockets_.ForgetData();
}

bool CurlFtpClient::Asked() {
    const Time now = Now();
    if (cancelled_ || now - lastAsked_ < kAskEvery) return !cancelled_;
    lastAsked_ = now;
    cancelled_ = !patience_.GoOn();
    return !cancelled_;
}

bool CurlFtpClient::Stalled() {
    const std::uint64_t underWay = sockets_.DataUnderWay();
    if (underWay != lastUnderWay_) lastMoved_ = Now();
    lastUnderWay_ = underWay;
    const std::uint32_t limit = inOrder_ && !ending_
                                    ? limits_.stallMs
                                    : std::max(limits_.connectMs, limits_.replyMs) + kGraceMs;
    return Now() - lastMoved_ > milliseconds(limit);
}

/// Waits for the confirmation of an upload, with patience: libcurl would not ask. In clear text the
/// end of the data is told before libcurl does, with TLS libcurl has told it. What the server says
/// is left to libcurl to read.
bool CurlFtpClient::ServerTookAll() {
    if (target_.security == TransportSecurity::kNone) sockets_.EndData();
    lastMoved_ = Now();
    while (!sockets_.WaitForControl(kWaitMs)) {
        if (!Asked()) return false;
        const std::uint64_t underWay = sockets_.DataUnderWay();
        if (underWay != lastUnderWay_) lastMoved_ = Now();
        lastUnderWay_ = underWay;
        if (Now() - lastMoved_ <= milliseconds(limits_.replyMs)) continue;
        result_.code = kFtpTimeout;
        return false;
    }
    return true;
}

}  // namespace orma
