#include "platform/queued_ftp/upload_line.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orma {
namespace {

// Room in the queue comes back in these steps. What has piled up in a stall may be minutes of
// sound: in one piece it would fill the queue on a line that is moving again.
constexpr std::size_t kMostAtOnce = 64 * 1024;

}  // namespace

UploadLine::UploadLine(FtpClients& clients, std::size_t capacity, Events events)
    : clients_(clients),
      events_(std::move(events)),
      capacity_(capacity),
      ring_(std::make_unique<std::uint8_t[]>(capacity)),
      thread_([this] { Run(); }) {}

UploadLine::~UploadLine() {
    {
        const std::scoped_lock lock(mutex_);
        ended_ = true;
        GiveUpAll();
    }
    changed_.notify_all();
    thread_.join();
}

// ---- The user's side

void UploadLine::Connect(const FtpTarget& target) {
    const std::scoped_lock lock(mutex_);
    target_ = target;
    logInWanted_ = true;
    changed_.notify_all();
}

void UploadLine::Open(const Text& path, std::optional<std::uint64_t> offset) {
    const std::scoped_lock lock(mutex_);
    open_ = std::make_shared<Upload>(Upload{.path = path, .offset = offset, .begin = written_});
    uploads_.push_back(open_);
    changed_.notify_all();
}

FtpResult UploadLine::Write(ByteSpan bytes) {
    const std::scoped_lock lock(mutex_);
    if (open_ == nullptr) return {kFtpWrongState, 0, {}};
    Upload& upload = *open_;
    if (!upload.over && capacity_ - (written_ - sent_) < bytes.size())
        GiveUpUpload(upload, kFtpTimeout);
    if (upload.over || upload.givenUp != kFtpDone) {
        if (!upload.began || upload.givenUp == kFtpCancelled) return {};
        return upload.over ? upload.result : FtpResult{upload.givenUp, 0, {}};
    }
    const std::size_t at = written_ % capacity_;
    const std::size_t first = std::min(bytes.size(), capacity_ - at);
    std::memcpy(ring_.get() + at, bytes.data(), first);
    std::memcpy(ring_.get(), bytes.data() + first, bytes.size() - first);
    written_ += bytes.size();
    changed_.notify_all();
    return {};
}

void UploadLine::Close() {
    const std::scoped_lock lock(mutex_);
    if (open_ == nullptr) return;
    open_->end = written_;
    open_->closed = true;
    open_.reset();
    changed_.notify_all();
}

void UploadLine::Abandon() {
    const std::scoped_lock lock(mutex_);
    if (open_ != nullptr) GiveUpUpload(*open_, kFtpCancelled);
    open_.reset();
}

void UploadLine::End() {
    Abandon();
    const std::scoped_lock lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

void UploadLine::GiveUp() {
    const std::scoped_lock lock(mutex_);
    if (!uploads_.empty()) GiveUpAll();
}

void UploadLine::GiveUpAll() {
    for (const auto& upload : uploads_)
        GiveUpUpload(*upload, kFtpCancelled);
    // The thread's patience is over by this, but not every wait asks for it.
    if (atWork_ && client_ != nullptr) client_->Interrupt();
}

void UploadLine::GiveUpUpload(Upload& upload, SystemError why) {
    if (upload.over || upload.givenUp != kFtpDone) return;
    upload.givenUp = why;
    if (!upload.closed) upload.end = written_;
    upload.closed = true;
    changed_.notify_all();
}

std::uint64_t UploadLine::BytesWaiting() const {
    const std::scoped_lock lock(mutex_);
    return written_ - sent_;
}

// ---- The thread

bool UploadLine::GoOn() {
    const std::scoped_lock lock(mutex_);
    return uploads_.empty() ? !ended_ : uploads_.front()->givenUp == kFtpDone;
}

void UploadLine::Run() {
    FtpResult creation;
    client_ = clients_.Create(*this, creation);
    while (true) {
        std::unique_lock lock(mutex_);
        atWork_ = false;
        changed_.wait(lock, [this] { return ended_ || logInWanted_ || !uploads_.empty(); });
        if (uploads_.empty() && ended_) break;
        atWork_ = true;
        const bool logInWanted = std::exchange(logInWanted_, false);
        lock.unlock();
        FtpResult logIn = creation;
        if (logIn.Ok() && (logInWanted || !client_->IsConnected())) logIn = LogIn();
        lock.lock();
        const std::shared_ptr<Upload> upload = uploads_.empty() ? nullptr : uploads_.front();
        lock.unlock();
        if (upload != nullptr)
            Carry(*upload, std::move(logIn));
        else if (!logIn.Ok() && logIn.code != kFtpCancelled)
            events_.logInFailed(std::move(logIn));
    }
    client_.reset();
    over_ = true;
}

FtpResult UploadLine::LogIn() {
    std::unique_lock lock(mutex_);
    const FtpTarget target = target_;
    lock.unlock();
    if (!GoOn()) return {kFtpCancelled, 0, {}};
    return client_->Connect(target);
}

void UploadLine::Carry(Upload& upload, FtpResult logIn) {
    UploadOutcome outcome{.path = upload.path, .result = std::move(logIn)};
    if (outcome.result.Ok())
        outcome.result = Send(upload, outcome);
    else
        outcome.operation = u"InternetConnect";
    // The next file begins with a fresh log-in.
    if (!outcome.result.Ok() && client_ != nullptr) client_->Disconnect();
    Finish(upload, std::move(outcome));
}

FtpResult UploadLine::Send(Upload& upload, UploadOutcome& outcome) {
    outcome.operation = u"FtpOpenFile";
    FtpResult result;
    if (upload.offset) result = client_->Restart(*upload.offset);
    if (result.Ok()) result = client_->OpenFile(upload.path, Access::kWrite);
    if (!result.Ok()) return result;
    {
        const std::scoped_lock lock(mutex_);
        upload.began = true;
    }
    outcome.operation = u"InternetWriteFile";
    result = SendBytes(upload);
    if (result.Ok()) {
        outcome.operation = u"InternetCloseHandle";
        result = client_->CloseFile();
    }
    if (!result.Ok()) return result;
    outcome.operation.clear();
    // Where even the question fails, the confirmation stands alone.
    if (!client_->RemoteSize(upload.path, outcome.remoteBytes).Ok()) outcome.remoteBytes.reset();
    return result;
}

FtpResult UploadLine::SendBytes(Upload& upload) {
    while (true) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return upload.closed || written_ > sent_; });
        if (upload.givenUp != kFtpDone) return {upload.givenUp, 0, {}};
        const std::uint64_t end = upload.closed ? upload.end : written_;
        const std::size_t at = sent_ % capacity_;
        const std::size_t count =
            std::min({static_cast<std::size_t>(end - sent_), capacity_ - at, kMostAtOnce});
        lock.unlock();
        if (count == 0) return {};
        // Nobody writes there until sent_ has moved on.
        FtpResult result = client_->Write({ring_.get() + at, count});
        if (!result.Ok()) return result;
        lock.lock();
        sent_ += count;
    }
}

/// Takes the file out of the queue, with those of its bytes that are still there.
void UploadLine::Finish(Upload& upload, UploadOutcome outcome) {
    {
        const std::scoped_lock lock(mutex_);
        if (upload.givenUp != kFtpDone && !outcome.result.Ok())
            outcome.result = {upload.givenUp, 0, {}};
        if (!upload.closed) upload.end = written_;
        sent_ = upload.end;
        upload.over = true;
        upload.result = outcome.result;
        outcome.began = upload.began;
        outcome.bytes = upload.offset.value_or(0) + upload.end - upload.begin;
        uploads_.pop_front();
    }
    events_.uploadEnded(std::move(outcome));
}

}  // namespace orma
