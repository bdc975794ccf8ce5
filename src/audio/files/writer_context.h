#pragma once

#include <cstdint>
#include <string>

#include "audio/files/audio_state.h"
#include "audio/files/bwf_chunks.h"
#include "audio/files/mp2_pipeline.h"
#include "audio/files/pcm_staging.h"
#include "audio/files/take_journal.h"
#include "audio/files/wav_header.h"
#include "stream/ftp_account.h"
#include "stream/jstream_file.h"
#include "stream/smtp_account.h"

namespace orma {

/// The header templates of a publication: filled by the publish job before a Broadcast-Wave writer
/// opens, copied out by the writer.
struct PublicationTemplates {
    BwfHead head = BwfHead::Template();
    std::string codingHistory;  // 8-bit, without terminator
    MpegFormatBlock mpeg;
    Bytes levl;  // encoded chunks; empty: absent
    QltyChunk qlty;
    bool hasQlty = false;
};

/// Where publications and recordings go that leave this machine. Null services: none can.
struct RemoteDestination {
    const FtpServices* ftp = nullptr;  // both outlive the writers
    const MailServices* mail = nullptr;
    FtpAccount account;         // of the FTP writers
    Text extension = u"wav";    // of the remote file, without the dot
    bool broadcastWave = true;  // FTP: head and trailing chunks; off: bare MP2 frames
    MailDelivery delivery;      // of the e-mail writer
    MailMessage message;
};

/// Where recordings go while they are made.
struct LiveDestination {
    const FtpServices* ftp = nullptr;  // null: nowhere. Their operations do not block; they outlive
                                       // the writers
    FtpAccount account{};              // counts from the next start of the recorder on
};

/// What all writers share: there is one writer at a time and one of each of these. Plain state,
/// UI thread.
struct WriterContext {
    FileServices files;
    AudioState& audio;
    Mp2Pipeline& encoder;

    Text recordingFolder{};          // with its separator; takes and publications lie in it
    Text projectName{};              // a take's name is this and a number
    Text publishExtension = u"wav";  // of a published MP2 file, without the dot
    WavHeader wavTemplate{};         // its block align is what takes get
    PublicationTemplates publication{};
    RemoteDestination remote{};
    LiveDestination live{};

    PcmStaging staging{};
    TakeJournal journal{};  // of the take being written

    std::uint32_t byteSum = 0;    // 32-bit sum of every audio data byte put out; the job resets it
    std::uint32_t dataBytes = 0;  // audio data bytes put out
    std::uint32_t dataStart = 0;  // where audio data begins in the output

    bool cancelled = false;  // the user cancelled: a local publication is not kept
    bool committed = false;  // the publication stands complete under its final name, confirmed
    Text publishedPath{};    // that final name, of a local file

    bool unverified = false;      // an upload was accepted as whole, yet its size says otherwise,
                                  // or it was resumed and cannot be told
    std::uint64_t bytesSent = 0;  // of an upload, from the file's start, in completed writes
    std::uint64_t bytesHeld = 0;  // of these, what the server held before a resumed attempt

    /// What the journal of the take `name` is to know.
    [[nodiscard]] TakeJournal::Format JournalFormat(TakeKind kind, std::uint32_t blockBytes,
                                                    const Text& name) const {
        const bool isNumbered = name.starts_with(projectName);
        return {
            .kind = kind,
            .blockBytes = blockBytes,
            .resolutionShift = audio.resolutionShift,
            .projectNameUnits = isNumbered ? static_cast<std::uint32_t>(projectName.size()) : 0};
    }
};

}  // namespace orma
