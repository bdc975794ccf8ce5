#pragma once

#include "publish/umid.h"
#include "settings/settings_record.h"
#include "stream/ftp_account.h"
#include "stream/smtp_account.h"

namespace orma {

/// Where publications go by default; the numbers are those of the setting.
enum class PublishMethod { kFtp = 0, kOutbox = 1, kMail = 2 };

/// What publishing takes from the settings, as plain values.
struct PublishSettings {
    bool publishToFile = false;  // the option that enables publications to files
    Text publishExtension = u"wav";
    OriginatorCodes originator;

    PublishMethod method = PublishMethod::kFtp;
    bool ftpPublishing = true;  // the option that enables publications by FTP
    FtpAccount ftp;
    bool broadcastWave = true;  // FTP: head and trailing chunks; off: bare MP2 frames
    bool autoResume = false;    // FTP: go on after a break without asking
    bool serverChoice = false;  // the FTP dialog offers the server
    SmtpAccount smtp;
    Text recipient;
    Text subject;

    std::uint32_t fastBitrateIndex = 3;  // of fast publications, as Mp2Bitrate has it
    bool imagePublishing = true;
    bool keepImageNames = false;  // images published alone keep their file names
    bool publishText = false;     // FTP: the project's text goes along as a file
    Text textExtension = u".txt";
};

/// The destinations in use with everything that publishing needs to know.
[[nodiscard]] PublishSettings PublishSettingsOf(const SettingsRecord& settings);

}  // namespace orma
