#include "app/application.h"

namespace orma {

Application::Application(Ports platform, FrontEnd frontEnd, Text folder)
    : ports(platform),
      programFolder(std::move(folder)),
      report(ports.boxes, ports.storage),
      files{ports.storage, report},
      settingsStore(files, programFolder, settings),
      progress(frontEnd.progress),
      patience(progress, ports.clock),
      encoder(audio, report),
      decoder(audio, ports.storage, programFolder + u"mp2dec.txt"),
      writerContext{.files = files, .audio = audio, .encoder = encoder},
      writers(writerContext),
      project({.readers = {files, audio, decoder},
               .clock = ports.clock,
               .clips = clips,
               .recording = recording}),
      input(ports.waves, ports.headset),
      externalRecorder(ports.externalRecorder, report),
      spdif(ports.spdif, ports.loop, ports.clock, report),
      desktop(ports.desktop != nullptr ? *ports.desktop : noHelpers),
      transport({.readers = {files, audio, decoder},
                 .project = project,
                 .recording = recording,
                 .input = input,
                 .recorder = recorder,
                 .player = player,
                 .desktop = desktop,
                 .listener = frontEnd.transport}),
      recorder({.waves = ports.waves,
                .clock = ports.clock,
                .storage = ports.storage,
                .report = report,
                .audio = audio,
                .buffers = buffers,
                .input = input,
                .writers = writers,
                .sheet = recording.sheet,
                .takes = project,
                .listener = transport,
                .externalRecorder = &externalRecorder}),
      player({.waves = ports.waves,
              .readers = {files, audio, decoder},
              .buffers = buffers,
              .recording = {recording.audioPath, recording.length, recording.sheet,
                            recording.currentCut},
              .transport = transport.State(),
              .listener = transport,
              .externalRecorder = &externalRecorder}),
      recentProjects(ports.storage, programFolder + u"recent.txt") {
    if (ports.liveFtp != nullptr) {
        liveUploads.emplace(*ports.liveFtp, ports.loop, report);
        writerContext.live.ftp = &liveUploads->Services();
    }
    if (ports.network == nullptr) return;
    const NetworkPorts& network = *ports.network;
    ftp.emplace(FtpServices{.clients = network.ftp, .report = report, .patience = patience});
    mail.emplace(MailServices{.tcp = network.tcp,
                              .tls = network.tls,
                              .hash = network.hash,
                              .outbox = network.outbox,
                              .files = files,
                              .patience = patience,
                              .bytesSent = mailBytesSent,
                              .posted = &posted});
    writerContext.remote.ftp = &*ftp;
    writerContext.remote.mail = &*mail;
}

PublishServices Application::Publishing(PublishDialogs& dialogs) {
    return {.readers = {files, audio, decoder},
            .clock = ports.clock,
            .writers = writers,
            .project = project,
            .progress = progress,
            .patience = patience,
            .state = {settings, publishChoices, files, programFolder},
            .dialogs = dialogs};
}

}  // namespace orma
