#include "audio/files/audio_write_bwf_ftp.h"

#include <algorithm>
#include <optional>

#include "audio/files/bwf_output.h"
#include "base/trace.h"

namespace orma {
namespace {

/// A refusal that asking again will not change: a permanent one (5xx), or 451, which servers give
/// that do not allow files to be continued.
bool RefusesForGood(const FtpResult& result) {
    return result.code == kFtpRefused && (result.replyNumber >= 500 || result.replyNumber == 451);
}

}  // namespace

JStreamAudioWriteBWFFTP::JStreamAudioWriteBWFFTP(WriterContext& context)
    : JStreamWrFTP(*context.remote.ftp), JStreamWrMP2(context), context_(context) {}

JStreamAudioWriteBWFFTP::~JStreamAudioWriteBWFFTP() {
    ReleaseFeed();
    CloseAll();
}

void JStreamAudioWriteBWFFTP::Connect() {
    SetDestination(context_.remote.account, context_.remote.extension);
    (void)EnsureConnected();  // shows in IsConnected
}

void JStreamAudioWriteBWFFTP::OpenRemote(const Text& name) {
    name_ = name;
    finished_ = false;
    blind_ = false;
    context_.committed = false;
    context_.unverified = false;
    handed_ = 0;
    CloseFile();
    SetDestination(context_.remote.account, context_.remote.extension);
    OpenForWriting(name);
}

void JStreamAudioWriteBWFFTP::Open(const Text& name) {
    context_.bytesSent = 0;
    OpenRemote(name);
    Begin(0);
}

int JStreamAudioWriteBWFFTP::Resume(const Text& name, std::uint32_t offset) {
    name_ = name;
    finished_ = false;
    context_.committed = false;
    context_.unverified = false;
    CloseFile();
    Connect();
    if (!IsConnected()) return kNoConnection;
    std::uint64_t held = offset;
    blind_ = false;
    if (offset > 0) {
        const std::optional<std::uint64_t> size = PublishedSize(name);
        // Not to be taken for a server that cannot tell: nobody knows what it holds.
        if (!size && !LastResult().Ok()) return kNoConnection;
        // What of a failed write arrived is right as well.
        if (size) held = std::min(*size, std::max(held, handed_));
        blind_ = !size;
    }
    if (held == 0) {
        OpenForWriting(name);
    } else if (const ResumeAnswer answer = ResumeOpen(name, static_cast<std::uint32_t>(held));
               answer != kResumed) {
        return answer;
    }
    // Some servers agree to an offset and then refuse to store there.
    if (held > 0 && !IsOpen() && RefusesForGood(LastResult())) return kOffsetRefused;
    Trace("Resuming at %llu", static_cast<unsigned long long>(held));
    Begin(held);
    return kResumed;
}

/// Starts the file's bytes, of which the server holds the first ones.
void JStreamAudioWriteBWFFTP::Begin(std::uint64_t held) {
    if (!IsOpen()) return;
    held_ = held;
    position_ = 0;
    context_.bytesSent = held;
    context_.bytesHeld = held;
    context_.byteSum = 0;
    context_.dataBytes = 0;
    context_.dataStart = 0;
    if (context_.remote.broadcastWave) WriteMpegHead(*this, context_);
    if (IsOpen() && !StartFeed(*this, PublicationRate(context_.audio))) CloseAll();
}

void JStreamAudioWriteBWFFTP::Write(const void* buffer, std::uint32_t count) {
    const auto held = static_cast<std::uint32_t>(
        std::clamp<std::uint64_t>(held_, position_, position_ + count) - position_);
    position_ += count;
    if (held == count || !IsOpen()) return;
    handed_ = position_;
    JStreamWrFTP::Write(static_cast<const std::uint8_t*>(buffer) + held, count - held);
    context_.bytesSent = held_ + BytesWritten();
}

void JStreamAudioWriteBWFFTP::WriteSamples(const void* pcm, std::uint32_t bytes) {
    if (context_.encoder.SetInputRate(PublicationRate(context_.audio)))
        Feed(pcm, bytes);
    else
        CloseAll();
}

void JStreamAudioWriteBWFFTP::WriteEncoded(const void* data, std::uint32_t bytes) {
    const ByteSpan block(static_cast<const std::uint8_t*>(data), bytes);
    last_.assign(block.begin(), block.end());
    WriteAudioData(*this, context_, block);
}

void JStreamAudioWriteBWFFTP::ResendLast() {
    JStreamWrFTP::Write(last_.data(), static_cast<std::uint32_t>(last_.size()));
}

void JStreamAudioWriteBWFFTP::Finish() {
    FlushFeed();
    if (!IsOpen()) return;
    if (context_.remote.broadcastWave) (void)WriteTrailingChunks(*this, context_);
    finished_ = IsOpen();
}

void JStreamAudioWriteBWFFTP::Close() {
    ReleaseFeed();
    const bool whole = finished_ && IsOpen();
    finished_ = false;
    CloseFile();
    if (whole && CloseResult().Ok()) {
        const std::uint64_t stored = PublishedSize(name_).value_or(position_);
        context_.committed = !blind_ && stored == position_;
        // Bytes under way were lost, and the server took the broken end for a good one. As long as
        // its file grows that is an interruption like any other.
        const bool cutShort = !blind_ && stored < position_ && stored > held_;
        context_.unverified = !context_.committed && !cutShort;
    } else if (whole) {
        ReportUnconfirmed();
    }
    CloseAll();
}

}  // namespace orma
