#include "platform/queued_ftp/queued_ftp_clients.h"

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace orma {
namespace {

constexpr auto kAskEvery = std::chrono::milliseconds(40);

}  // namespace

/// What the lines' threads have to tell, on its way to the UI thread.
class QueuedFtpClients::News {
  public:
    struct Items {
        std::vector<UploadOutcome> outcomes;
        std::vector<FtpResult> logIns;
    };

    void Add(UploadOutcome outcome, Wakeup& wakeup) {
        const std::scoped_lock lock(mutex_);
        items_.outcomes.push_back(std::move(outcome));
        came_.notify_all();
        wakeup.Signal();
    }
    void Add(FtpResult logIn, Wakeup& wakeup) {
        const std::scoped_lock lock(mutex_);
        items_.logIns.push_back(std::move(logIn));
        came_.notify_all();
        wakeup.Signal();
    }
    [[nodiscard]] Items Take() {
        const std::scoped_lock lock(mutex_);
        return std::exchange(items_, {});
    }
    void WaitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex_);
        came_.wait_for(lock, time, [this] { return !items_.outcomes.empty(); });
    }

  private:
    std::mutex mutex_;
    std::condition_variable came_;
    Items items_;
};

class QueuedFtpClients::Client : public FtpClient {
  public:
    Client(std::shared_ptr<UploadLine> line, std::size_t& underWay)
        : line_(std::move(line)), underWay_(underWay) {}
    ~Client() override { line_->End(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] FtpResult Connect(const FtpTarget& target) override {
        Disconnect();
        line_->Connect(target);
        connected_ = true;
        return {};
    }

    [[nodiscard]] bool IsConnected() const override { return connected_; }

    void Disconnect() override {
        if (open_) line_->Abandon();
        open_ = false;
        connected_ = false;
        offset_.reset();
    }

    [[nodiscard]] FtpResult Restart(std::uint64_t offset) override {
        if (!connected_ || open_) return kWrong;
        offset_ = offset;
        return {};
    }

    [[nodiscard]] FtpResult RemoteSize(const Text&, std::optional<std::uint64_t>& bytes) override {
        bytes.reset();
        return kWrong;
    }

    [[nodiscard]] FtpResult OpenFile(const Text& path, Access access) override {
        if (!connected_ || open_ || access == Access::kRead) return kWrong;
        open_ = true;
        ++underWay_;
        line_->Open(path, std::exchange(offset_, {}));
        return {};
    }

    [[nodiscard]] FtpResult Read(std::span<std::uint8_t>, std::size_t& got) override {
        got = 0;
        return kWrong;
    }

    [[nodiscard]] FtpResult Write(ByteSpan from) override {
        return open_ ? line_->Write(from) : kWrong;
    }

    [[nodiscard]] FtpResult CloseFile() override {
        if (!open_) return kWrong;
        open_ = false;
        line_->Close();
        return {kFtpPending, 0, {}};
    }

  private:
    inline static const FtpResult kWrong{kFtpWrongState, 0, {}};

    std::shared_ptr<UploadLine> line_;
    std::size_t& underWay_;
    bool connected_ = false;
    bool open_ = false;
    std::optional<std::uint64_t> offset_;
};

QueuedFtpClients::QueuedFtpClients(FtpClients& carriers, EventLoop& loop, UploadListener& listener,
                                   std::size_t queueBytes)
    : carriers_(carriers),
      listener_(listener),
      queueBytes_(queueBytes),
      news_(std::make_unique<News>()),
      wakeup_(loop.CreateWakeup([this] { Tell(); })) {}

QueuedFtpClients::~QueuedFtpClients() = default;

std::unique_ptr<FtpClient> QueuedFtpClients::Create(Patience&, FtpResult& result) {
    lines_.remove_if([](const auto& line) { return line->IsOver(); });
    std::shared_ptr<UploadLine> line = StartLine();
    result = {line != nullptr ? SystemError{kFtpDone} : SystemError{ENOMEM}, 0, {}};
    if (line == nullptr) return nullptr;
    lines_.push_back(line);
    return std::make_unique<Client>(std::move(line), underWay_);
}

std::shared_ptr<UploadLine> QueuedFtpClients::StartLine() {
    const UploadLine::Events events{
        .uploadEnded = [this](UploadOutcome outcome) { news_->Add(std::move(outcome), *wakeup_); },
        .logInFailed = [this](FtpResult result) { news_->Add(std::move(result), *wakeup_); }};
    try {
        return std::make_shared<UploadLine>(carriers_, queueBytes_, events);
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const std::system_error&) {  // no more threads
        return nullptr;
    }
}

void QueuedFtpClients::Tell() {
    const News::Items items = news_->Take();
    underWay_ -= items.outcomes.size();
    for (const FtpResult& logIn : items.logIns)
        listener_.OnLogInFailed(logIn);
    for (const UploadOutcome& outcome : items.outcomes)
        listener_.OnUploadEnded(outcome);
}

std::uint64_t QueuedFtpClients::BytesWaiting() const {
    std::uint64_t bytes = 0;
    for (const auto& line : lines_)
        bytes += line->BytesWaiting();
    return bytes;
}

bool QueuedFtpClients::Wait(Patience& patience) {
    while (true) {
        Tell();
        if (underWay_ == 0) return true;
        if (!patience.GoOn()) return false;
        news_->WaitFor(kAskEvery);
    }
}

void QueuedFtpClients::GiveUp() {
    for (const auto& line : lines_)
        line->GiveUp();
}

}  // namespace orma
