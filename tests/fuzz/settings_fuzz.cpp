// "OrmaSet.sup" and "OrmaIni.sup", up to what the sound engine makes of their equaliser sets.

#include "app/options.h"
#include "fuzz/fuzz.h"
#include "publish/publish_settings.h"
#include "settings/settings_store.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"

namespace orma::test {

// Three records with the tables of names over them. Each holds every text once.
const MemoryBudget kMemoryBudget{.fixedBytes = 128 * 1024, .bytesPerInputByte = 16};

namespace {

class NoHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool) override { return 1; }
};

std::vector<std::string> Values(SettingsRecord& record) {
    std::vector<std::string> values;
    const SettingsTable table(record);
    for (const Setting& setting : table.All())
        values.push_back(setting.Get());
    return values;
}

void Process(const SettingsRecord& record) {
    FakeEventLoop loop;
    FakeWaveSystem waves(loop);
    NoHeadset headset;
    InputProcessing input(waves, headset);
    input.Load(InputSettingsOf(record), 44100);
    input.ChooseEqualizerForHeadset();
    for (const EqualizerSet& set : record.Preset) {
        std::array<std::int16_t, 64> samples{};
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = i % 8 < 4 ? 32767 : -32768;
        (void)input.SelectByName(set.name);
        input.SetInputGain(1);
        input.SetOutputVolume(-1);
        input.ProcessInputBuffer(samples, 2);
    }
}

}  // namespace

void TryInput(ByteSpan bytes) {
    FuzzFiles files(bytes.size());
    files.storage.Put(u"OrmaSet.sup", bytes);
    files.storage.Put(u"OrmaIni.sup", bytes);
    SettingsRecord record;
    SettingsStore store(files.services, u"", record);
    const bool noState = store.LoadUserState();
    const bool noConfiguration = store.LoadConfiguration();
    if (noState && noConfiguration) {
        static const std::vector<std::string> kUntouched =
            Values(*std::make_unique<SettingsRecord>());
        Require(Values(record) == kUntouched, "a refused file changes nothing");
        return;
    }
    AudioState audio;
    ApplyAudioSettings(record, audio, files.report);
    (void)ProjectOptionsOf(record);
    (void)PublishSettingsOf(record);
    Process(record);

    Require(store.SaveUserState() && store.SaveConfiguration(), "what was loaded can be saved");
    SettingsRecord again;
    SettingsStore reader(files.services, u"", again);
    Require(!reader.LoadUserState() && !reader.LoadConfiguration(), "what was saved loads");
    Require(Values(record) == Values(again), "settings survive saving and loading");
}

}  // namespace orma::test
