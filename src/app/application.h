#pragma once

#include "app/live_uploads.h"
#include "app/recent_projects.h"
#include "audio/engine/pdaudio_in.h"
#include "platform/event_loop.h"
#include "platform/mail_outbox.h"
#include "project/project.h"
#include "publish/publish_job.h"
#include "settings/settings_store.h"
#include "transport/transport.h"

namespace orma {

/// The network; every reference outlives the application.
struct NetworkPorts {
    FtpClients& ftp;
    TcpConnections& tcp;
    TlsConnections& tls;
    KeyedHash& hash;
    MailOutbox& outbox;
};

/// The platform as the application sees it; every reference outlives it.
struct Ports {
    Storage& storage;
    Clock& clock;
    MessageBoxes& boxes;
    EventLoop& loop;
    WaveSystem& waves;
    HeadsetProbe& headset;
    ExternalRecorder* externalRecorder = nullptr;  // null: absent hardware
    SpdifCard* spdif = nullptr;
    DesktopHelpers* desktop = nullptr;
    const NetworkPorts* network = nullptr;  // null: nothing leaves this machine
    FtpClients* liveFtp = nullptr;  // of uploads while recording, used in threads of their own;
                                    // null: there are none
};

/// What a front end listens with; both outlive the application.
struct FrontEnd {
    TransportListener& transport;
    PublishProgress& progress;
};

/// The whole state of the process: one instance of each subsystem, in the order of their
/// dependencies. Each front end builds one; tests build theirs on fake ports. UI thread.
struct Application {
    /// `programFolder` (with its separator) is where settings and program files lie.
    Application(Ports platform, FrontEnd frontEnd, Text folder);

    Ports ports;
    Text programFolder;
    ErrorReporter report;
    FileServices files;

    SettingsRecord settings;
    SettingsStore settingsStore;

    PublishProgress& progress;
    PublishPatience patience;
    std::uint32_t mailBytesSent = 0;    // over any socket
    std::vector<PostedMessage> posted;  // via the outbox
    std::optional<FtpServices> ftp;     // none without a network
    std::optional<MailServices> mail;
    std::optional<LiveUploads> liveUploads;  // none without liveFtp

    AudioState audio;
    Mp2Pipeline encoder;
    Mp2Decoder decoder;
    WriterContext writerContext;
    WriterSlot writers;

    ClipList clips;
    CurrentRecording recording;
    Project project;

    CaptureBuffers buffers;
    InputProcessing input;
    ExternalRecorderControl externalRecorder;
    PDAudioIn spdif;
    DesktopHelpers noHelpers;
    DesktopHelpers& desktop;  // the platform's, or none
    Transport transport;
    Recorder recorder;

    Player player;

    PublishChoices publishChoices;
    RecentProjects recentProjects;  // the window loads and keeps them

    /// What a publish job stands on; `dialogs` outlive the job.
    [[nodiscard]] PublishServices Publishing(PublishDialogs& dialogs);
};

}  // namespace orma
