#include "platform/curl/curl_ftp_client.h"

#include <algorithm>
#include <cerrno>
#include <charconv>

#include <curl/curl.h>

#include "platform/curl/curl_ftp_codes.h"

namespace orma {
namespace {

using std::chrono::milliseconds;

// A good-bye is a courtesy; nobody waits long for the answer.
constexpr auto kGoodByeLimit = milliseconds(1000);

std::chrono::steady_clock::time_point Now() {
    return std::chrono::steady_clock::now();
}

// One that keeps one connection; null when there is no memory for it.
CURLM* NewMulti() {
    CURLM* const multi = curl_multi_init();
    if (multi != nullptr) curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 1L);
    return multi;
}

// A line end or a NUL would end the command it stands in and begin another.
bool FitsInCommand(const Text& text) {
    return text.find_first_of(std::u16string_view(u"\r\n\0", 3)) == Text::npos;
}

std::optional<std::uint64_t> NumberIn(std::string_view digits) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end == digits.data()) return {};
    return number;
}

}  // namespace

CurlFtpClient::CurlFtpClient(Patience& patience, FtpLimits limits)
    : patience_(patience), limits_(limits) {
    if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) return;
    multi_ = NewMulti();
    easy_ = curl_easy_init();
}

CurlFtpClient::~CurlFtpClient() {
    Disconnect();
    curl_easy_cleanup(easy_);
    curl_multi_cleanup(multi_);
    curl_url_cleanup(static_cast<CURLU*>(address_));
    curl_slist_free_all(static_cast<curl_slist*>(commands_));
    curl_global_cleanup();
}

FtpResult CurlFtpClient::Connect(const FtpTarget& target) {
    Disconnect();
    constexpr int kLastPort = 65535;
    if (target.port < 0 || target.port > kLastPort) return {kFtpCannotConnect, 0, {}};
    if (!FitsInCommand(target.host)) return {kFtpNameNotResolved, 0, {}};
    if (!FitsInCommand(target.user) || !FitsInCommand(target.password))
        return {kFtpWrongPassword, 0, {}};
    target_ = target;
    password_ = ToUtf8(target.password);
    FtpResult result = Exchange({});
    connected_ = result.Ok();
    return result;
}

void CurlFtpClient::Disconnect() {
    if (running_) GiveUp(kFtpConnectionLost);
    fileOpen_ = false;
    restart_ = 0;
    restartSaid_ = false;
    if (connected_ && sockets_.HasControl() && !sockets_.ControlSpoke() &&
        Begin({.commands = {"*QUIT"}})) {
        const Time limit = Now() + kGoodByeLimit;
        Drive([limit] { return Now() > limit; });
        Leave();
    }
    connected_ = false;
    // libcurl's own good-bye waits for an answer as long as the server likes.
    sockets_.KillControl();
    curl_multi_cleanup(multi_);
    multi_ = NewMulti();
}

FtpResult CurlFtpClient::Restart(std::uint64_t offset) {
    if (!connected_ || running_) return NotOpen();
    restart_ = 0;
    const std::string command =
        Format("*REST %llu", static_cast<unsigned long long>(offset));  // '*': a No is no failure
    FtpResult result = Exchange({.commands = {command}});
    if (!result.Ok()) return result;
    if (restReply_.Number() != 350) return Refusal(restReply_, password_);
    restart_ = offset;
    restartSaid_ = true;
    return result;
}

FtpResult CurlFtpClient::RemoteSize(const Text& path, std::optional<std::uint64_t>& bytes) {
    bytes.reset();
    if (!connected_ || running_) return NotOpen();
    if (!FitsInCommand(path)) return {};
    // Servers refuse the size of a file in text mode, in which a log-in begins.
    FtpResult result = Exchange({.commands = {"*TYPE I", "*SIZE " + ToUtf8(path)}});
    if (!result.Ok()) return result;
    constexpr int kSize = 213;
    constexpr int kNoSuchFile = 550;
    const int number = sizeReply_.Number();
    if (number == kSize) bytes = NumberIn(sizeReply_.LastLine());
    if (number == kNoSuchFile) bytes = 0;
    return number >= 400 && number < 500 ? Refusal(sizeReply_, password_) : result;
}

FtpResult CurlFtpClient::LookForFolder(const Text& folder) {
    if (!connected_ || running_) return NotOpen();
    if (folder.empty()) return {};
    if (!FitsInCommand(folder)) return {kFtpBadName, 0, {}};
    const FtpResult there = Exchange({.path = ToUtf8(folder) + "/"});
    return there.Ok() ? Exchange({}) : there;  // libcurl goes back by itself
}

FtpResult CurlFtpClient::OpenFile(const Text& path, Access access) {
    if (!connected_ || running_) return NotOpen();
    if (path.empty() || !FitsInCommand(path)) return {kFtpBadName, 0, {}};
    Task task{.kind = access == Access::kRead ? Kind::kRetrieve : Kind::kStore,
              .path = ToUtf8(path),
              .commands = {}};
    if (restartSaid_)
        task.commands.push_back(Format("REST %llu", static_cast<unsigned long long>(restart_)));
    restart_ = 0;
    restartSaid_ = false;
    FtpResult result = Exchange(task);
    fileOpen_ = result.Ok();
    return result;
}

FtpResult CurlFtpClient::NotOpen() const {
    return connected_ && !result_.Ok() ? result_ : FtpResult{kFtpWrongState, 0, {}};
}

FtpResult CurlFtpClient::Read(std::span<std::uint8_t> into, std::size_t& got) {
    got = 0;
    if (!fileOpen_ || kind_ != Kind::kRetrieve) return NotOpen();
    const std::size_t ready = std::min(into.size(), surplus_.size() - surplusRead_);
    std::copy_n(surplus_.begin() + static_cast<std::ptrdiff_t>(surplusRead_), ready, into.begin());
    surplusRead_ += ready;
    got = ready;
    if (got == into.size() || !running_) return got == into.size() ? FtpResult{} : result_;
    into_ = into.subspan(ready);
    filled_ = 0;
    lastMoved_ = Now();
    curl_easy_pause(easy_, CURLPAUSE_CONT);
    Drive([this] { return into_.empty(); });
    into_ = {};
    got += filled_;
    return got == into.size() ? FtpResult{} : result_;
}

FtpResult CurlFtpClient::Write(ByteSpan from) {
    if (!fileOpen_ || kind_ != Kind::kStore || !running_) return NotOpen();
    if (from.empty()) return {};
    pending_ = from;
    hungry_ = false;
    lastMoved_ = Now();
    curl_easy_pause(easy_, CURLPAUSE_CONT);
    Drive([this] { return hungry_; });
    pending_ = {};
    if (running_) return {};
    if (result_.Ok()) result_.code = kFtpConnectionLost;  // the server had enough before we had
    return result_;
}

FtpResult CurlFtpClient::CloseFile() {
    if (!fileOpen_) return NotOpen();
    fileOpen_ = false;
    if (kind_ == Kind::kRetrieve) {
        if (running_) Leave();
        return result_;
    }
    if (running_) {
        ending_ = true;
        lastMoved_ = Now();
        curl_easy_pause(easy_, CURLPAUSE_CONT);
        Drive([] { return false; });
        const bool confirmed = reply_.Number() == 226 || reply_.Number() == 250;
        if (result_.Ok() && !confirmed) result_.code = kFtpConnectionLost;
    }
    return result_;
}

std::unique_ptr<FtpClient> CurlFtpClients::Create(Patience& patience, FtpResult& result) {
    auto client = std::make_unique<CurlFtpClient>(patience, limits_);
    result = {client->Usable() ? SystemError{kFtpDone} : SystemError{ENOMEM}, 0, {}};
    if (!client->Usable()) return nullptr;
    return client;
}

}  // namespace orma
