#include "audio/files/audio_write_bwf_ftp.h"

#include <algorithm>
#include <array>
#include <optional>

#include "audio/files/bwf_output.h"
#include "base/trace.h"

namespace orma {
namespace {

/// The replies to a store at an offset of servers that do not continue files. A full disk, a wrong
/// name or a file that is busy are reasons of their own.
bool KnowsNoRestart(const FtpResult& result) {
    constexpr std::array kReplies = {451, 501, 502, 504, 550};
    return result.code == kFtpRefused && std::ranges::count(kReplies, result.replyNumber) > 0;
}

}  // namespace

JStreamAudioWriteBWFFTP::JStreamAudioWriteBWFFTP(WriterContext& context)
    : JStreamWrFTP(*context.remote.ftp), JStreamWrMP2(context), context_(context) {}

JStreamAudioWriteBWFFTP::~JStreamAudioWriteBWFFTP() {
    ReleaseFeed();
    Abandon();
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
    traces_ = {};
    CloseFile();
    SetDestination(context_.remote.account, context_.remote.extension);
    OpenAnew();
}

/// Opens the file at its beginning. What stands there before is an earlier publication.
void JStreamAudioWriteBWFFTP::OpenAnew() {
    if (!EnsureConnected()) return;
    if (!traces_.older) traces_.older = PublishedSize(name_);
    OpenForWriting(name_);
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
    std::optional<std::uint64_t> size;
    if (offset > 0) {
        size = PublishedSize(name);
        // Not to be taken for a server that cannot tell: nobody knows what it holds.
        if (!size && !LastResult().Ok()) return kNoConnection;
    }
    const auto [held, blind] = DecideResumeOffset(traces_, size, offset);
    blind_ = blind;
    if (held == 0) {
        OpenAnew();
    } else if (const ResumeAnswer answer = ResumeOpen(name, static_cast<std::uint32_t>(held));
               answer != kResumed) {
        return answer;
    }
    // Some servers agree to an offset and then refuse to store there.
    if (held > 0 && !IsOpen() && KnowsNoRestart(LastResult())) return kOffsetRefused;
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
    if (IsOpen() && !StartFeed(*this, PublicationRate(context_.audio))) Abandon();
}

void JStreamAudioWriteBWFFTP::Write(const void* buffer, std::uint32_t count) {
    const auto held = static_cast<std::uint32_t>(
        std::clamp<std::uint64_t>(held_, position_, position_ + count) - position_);
    position_ += count;
    if (held == count || !IsOpen()) return;
    traces_.handed = std::max(traces_.handed, position_);
    JStreamWrFTP::Write(static_cast<const std::uint8_t*>(buffer) + held, count - held);
    context_.bytesSent = held_ + BytesWritten();
}

void JStreamAudioWriteBWFFTP::WriteSamples(const void* pcm, std::uint32_t bytes) {
    if (context_.encoder.SetInputRate(PublicationRate(context_.audio)))
        Feed(pcm, bytes);
    else
        Abandon();
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
    // Cancelled while passing over what the server has: an end from here would be cut into it.
    if (context_.cancelled && position_ < held_) return;
    FlushFeed();
    if (!IsOpen()) return;
    if (context_.remote.broadcastWave) (void)WriteTrailingChunks(*this, context_);
    finished_ = IsOpen();
}

void JStreamAudioWriteBWFFTP::Close() {
    ReleaseFeed();
    const bool whole = finished_ && IsOpen();
    finished_ = false;
    if (!whole) {
        Abandon();
        return;
    }
    CloseFile();
    if (CloseResult().Ok()) {
        const std::optional<std::uint64_t> size = PublishedSize(name_);
        const bool fits = size ? *size == position_ : LastResult().Ok() && !traces_.older;
        context_.committed = fits && !blind_;
        // Bytes under way were lost, and the server took the broken end for a good one. As long as
        // its file grows that is an interruption like any other.
        const bool cutShort =
            !blind_ && size && *size < position_ && HeldBytes(traces_, *size) > held_;
        context_.unverified = !context_.committed && !cutShort;
    } else {
        ReportUnconfirmed();
    }
    CloseAll();
}

}  // namespace orma
