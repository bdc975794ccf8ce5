#include "app/options.h"

#include <algorithm>

namespace orma {

ProjectOptions ProjectOptionsOf(const SettingsRecord& settings) {
    ProjectOptions options;
    options.liveFtpAllowed = settings.LiveFtpAllowed != 0;
    options.liveFtpNewProjects = settings.LiveFtpNewProjects != 0;
    options.recordMp2 = settings.RecordMp2 != 0;
    options.stereo = settings.Stereo != 0;
    options.sampleRateCode = settings.SampleRateCode;
    options.resolutionShift = settings.ResolutionShift;
    options.bitrateIndex = settings.Mp2BitrateIndex;
    options.useTextFile = settings.UseProjectTextFile != 0;
    options.textFile = settings.ProjectTextFile;
    options.descriptionMode = settings.DescriptionMode;
    return options;
}

InputProcessingSettings InputSettingsOf(const SettingsRecord& settings) {
    InputProcessingSettings input;
    for (std::size_t i = 0; i < input.sets.size(); ++i)
        input.sets[i] = settings.Preset[i];
    std::copy(std::begin(settings.InputEq), std::end(settings.InputEq),
              input.initial.bands.begin());
    input.currentSetName = settings.CurrentPresetName;
    input.inputGainDb = settings.InputGain;
    input.outputStep = static_cast<std::uint32_t>(settings.OutputVolumeStep);
    input.volumeControl = settings.VolumeControl != 0;
    input.alternativeHeadsetKey = settings.AltEarjackKey != 0;
    return input;
}

TransportOptions TransportOptionsOf(const SettingsRecord& settings) {
    return {.runGainTool = settings.MicGainTool != 0,
            .gainToolMode = settings.MicGainToolMode,
            .closeSynchronisation = settings.CloseSync != 0};
}

ExternalRecorderSettings RecorderSettingsOf(const SettingsRecord& settings) {
    return {.gainCode = settings.MaycomGain,
            .volumeCode = settings.MaycomVol,
            .configuration = {settings.RecorderConfig1, settings.RecorderConfig2,
                              settings.RecorderConfig3}};
}

void ApplyAudioSettings(const SettingsRecord& settings, AudioState& audio, ErrorReporter& report) {
    audio.mp2 = settings.RecordingFormat != 0;
    audio.stereo = settings.Stereo != 0;
    audio.bitrate.SetMp2Bitrate(settings.Mp2BitrateIndex, report);
    audio.appendPerBlock = settings.AppendPerBlock != 0;
    audio.alternativeSampleSize = settings.SpdifInput != 0;
}

}  // namespace orma
