#pragma once

#include "audio/engine/external_recorder_control.h"
#include "audio/engine/input_processing.h"
#include "audio/files/audio_state.h"
#include "project/project.h"
#include "settings/settings_record.h"
#include "transport/transport.h"

namespace orma {

/// The settings as the lower folders take them: plain values, so that none of them knows the
/// record.
[[nodiscard]] ProjectOptions ProjectOptionsOf(const SettingsRecord& settings);
[[nodiscard]] InputProcessingSettings InputSettingsOf(const SettingsRecord& settings);
[[nodiscard]] TransportOptions TransportOptionsOf(const SettingsRecord& settings);
[[nodiscard]] ExternalRecorderSettings RecorderSettingsOf(const SettingsRecord& settings);

/// The sound format before a project is loaded. An illegal bit rate is reported and left out.
void ApplyAudioSettings(const SettingsRecord& settings, AudioState& audio, ErrorReporter& report);

}  // namespace orma
