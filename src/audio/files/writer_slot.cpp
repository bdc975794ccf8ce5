#include "audio/files/writer_slot.h"

#include "audio/files/audio_write_bwf_email.h"
#include "audio/files/audio_write_bwf_ftp.h"
#include "audio/files/audio_write_bwf_mp2_file.h"
#include "audio/files/audio_write_bwf_wav_file.h"
#include "audio/files/audio_write_ftp.h"
#include "audio/files/audio_write_mp2_file.h"
#include "audio/files/audio_write_mp2_ftp.h"
#include "audio/files/audio_write_wav_file.h"
#include "audio/files/audio_write_wav_ftp.h"

namespace orma {

void WriterSlot::SelectWriter(WriterKind kind) {
    if (kind == kind_) return;
    // The old writer ends first: both would use the one encoder and the one staging.
    writer_.reset();
    kind_ = kind;
    writer_ = Make(kind);
}

std::unique_ptr<JStreamAudioWrite> WriterSlot::Make(WriterKind kind) {
    const RemoteDestination& remote = context_.remote;
    switch (kind) {
        case WriterKind::kWavFile:
            return std::make_unique<JStreamAudioWriteWavFile>(context_);
        case WriterKind::kMp2File:
            return std::make_unique<JStreamAudioWriteMP2File>(context_);
        case WriterKind::kFtp:
            if (remote.ftp == nullptr) return nullptr;
            return std::make_unique<JStreamAudioWriteFTP>(context_);
        case WriterKind::kWavFtp:
            if (context_.live.ftp == nullptr) return nullptr;
            return std::make_unique<JStreamAudioWriteWavFTP>(context_);
        case WriterKind::kMp2Ftp:
            if (context_.live.ftp == nullptr) return nullptr;
            return std::make_unique<JStreamAudioWriteMP2FTP>(context_);
        case WriterKind::kBwfFtp:
            if (remote.ftp == nullptr) return nullptr;
            return std::make_unique<JStreamAudioWriteBWFFTP>(context_);
        case WriterKind::kBwfEmail:
            if (remote.mail == nullptr) return nullptr;
            return std::make_unique<JStreamAudioWriteBWFEMAIL>(context_);
        case WriterKind::kBwfWavFile:
            return std::make_unique<JStreamAudioWriteBWFWavFile>(context_);
        case WriterKind::kBwfMp2File:
            return std::make_unique<JStreamAudioWriteBWFMP2File>(context_);
        default:
            return nullptr;
    }
}

}  // namespace orma
