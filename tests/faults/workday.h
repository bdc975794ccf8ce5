#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "app/application.h"
#include "edits.h"
#include "medium.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/faulty_storage.h"
#include "support/quiet_ports.h"

namespace orma::test {

/// How a project records.
struct Recording {
    const char* name;
    bool mp2;
    bool appendPerBlock;
    bool edits = false;  // a day of one take, which is edited
};

/// What a run knows of a take that it recorded. Counts in buffer periods.
struct TakeAccount {
    Text name;
    bool started = false;
    std::uint32_t delivered = 0;
    std::uint32_t deliveredBeforeFault = 0;  // ... and worked off while the storage was well
    bool endedEarly = false;                 // by the program: the user sees it stop
    bool closedBeforeFault = false;
};

/// What a run did and what the user saw.
struct Account {
    std::array<TakeAccount, 2> takes;
    std::optional<EditAccount> edits;
    std::vector<Text> boxes;
    PublishOutcome outcome = PublishOutcome::kRefused;
    bool saved = false;
};

/// One day of a reporter, in one process: two takes with marks into a project that exists, the clip
/// list published to a file, the program left. The sound is the same each time.
class Workday {
  public:
    static constexpr const char16_t* kProject = u"talk.opr";
    static constexpr std::array<std::uint32_t, 2> kPeriods = {36, 23};
    static constexpr std::uint32_t kPeriodBytes = 4410;  // 50 ms, mono, 16 bits at 44100 Hz
    static constexpr std::uint32_t kBitrateIndex = 9;    // 192 kbit/s: many blocks in short takes

    static constexpr const char16_t* kImageFolder = u"/pictures";  // a setting that no day changes

    Workday(Medium& medium, Recording recording) : medium_(medium), recording_(recording) {}

    /// Makes the project: a take of old with a cut and a mark, published, the settings stored.
    void Prepare();

    /// The day; `storage` may fail.
    [[nodiscard]] Account Live(FaultyStorage& storage);

    /// Starts the program; the project is not opened.
    [[nodiscard]] std::unique_ptr<Application> Start(Storage& storage, MessageBoxes& boxes);

    /// Publishes the project's clip list to a file.
    [[nodiscard]] static PublishOutcome Publish(Application& app);

    [[nodiscard]] Text ProjectPath() const { return medium_.Path(kProject); }
    [[nodiscard]] TextView SoundExtension() const { return recording_.mp2 ? u".mp2" : u".wav"; }

  private:
    TakeAccount Record(Application& app, std::uint32_t periods, const FaultyStorage* storage);

    Medium& medium_;
    Recording recording_;
    TransportListener screen_;
    NoHeadset headset_;
    NoProgress progress_;
    FakeClock clock_;
    FakeEventLoop loop_;
    FakeWaveSystem waves_{loop_};
};

}  // namespace orma::test
