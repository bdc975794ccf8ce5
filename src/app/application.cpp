#include "app/application.h"

namespace orma {

Application::Application(Ports platform, FrontEnd frontEnd, Text folder)
    : ports(platform),
      programFolder(std::move(folder)),
      report(ports.boxes, ports.storage),
      files{ports.storage, report},
      settingsStore(files, programFolder, settings),
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
                .listener = frontEnd.recorder,
                .externalRecorder = &externalRecorder}),
      player({.waves = ports.waves,
              .readers = {files, audio, decoder},
              .buffers = buffers,
              .recording = {recording.audioPath, recording.length, recording.sheet,
                            recording.currentCut},
              .transport = transport,
              .listener = frontEnd.player != nullptr ? *frontEnd.player : quietPlayer,
              .externalRecorder = &externalRecorder}),
      progress(frontEnd.progress) {}

}  // namespace orma
