#include "app/input_options.h"

#include <algorithm>

#include "app/start_up.h"

namespace orma {

InputOptions InputOptionsOf(const Application& app) {
    const SettingsRecord& settings = app.settings;
    InputOptions options;
    for (const EqualizerSet& set : settings.Preset) {
        if (set.name.empty()) break;
        if (!options.set && set.name == app.input.CurrentSetName())
            options.set = options.sets.size();
        options.sets.push_back(set);
    }
    options.sampleRate = app.audio.sampleRate;
    // An external recorder has a gain of its own; digital input is not processed.
    options.gainControl =
        settings.GainControl != 0 && settings.SpdifInput == 0 && !app.externalRecorder.IsPresent();
    options.gainDb = app.input.InputGainDb();
    options.liveFtpAllowed = settings.LiveFtpAllowed != 0;
    options.liveFtp = app.project.LiveFtp();
    return options;
}

bool ApplyInputOptions(Application& app, const InputOptions& chosen) {
    if (!chosen.set || *chosen.set >= chosen.sets.size() ||
        !app.input.SelectByName(chosen.sets[*chosen.set].name))
        app.input.SwitchEqualizerOff();
    if (chosen.gainControl) app.input.SetInputGain(chosen.gainDb - app.input.InputGainDb());
    bool saved = SaveUserState(app);
    if (chosen.liveFtpAllowed && chosen.liveFtp != app.project.LiveFtp()) {
        app.project.SetLiveFtp(chosen.liveFtp);
        saved = app.project.SaveProjectFile() && saved;
    }
    return saved;
}

}  // namespace orma
