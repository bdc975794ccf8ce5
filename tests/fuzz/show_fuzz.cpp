// Whatever `orma show` is given: it tells from the first bytes what a file is.

#include <stdexcept>

#include "cli/describe.h"
#include "fuzz/fuzz.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/quiet_ports.h"

namespace orma::test {

// A byte of a level list becomes a JSON number of 16, in lists that are copied and grow; a chunk of
// eight bytes a list of named fields. The fixed part is the table of settings. The application is
// made once, with all its buffers, and not counted.
const MemoryBudget kMemoryBudget{.fixedBytes = 256 * 1024, .bytesPerInputByte = 256};

namespace {

class NoScreen : public TransportListener {};

/// The application, on files in memory.
struct Desk {
    FuzzFiles files;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    NoHeadset headset;
    NoScreen screen;
    NoProgress progress;
    Application app{Ports{.storage = files.storage,
                          .clock = clock,
                          .boxes = files.report.Boxes(),
                          .loop = loop,
                          .waves = waves,
                          .headset = headset},
                    FrontEnd{screen, progress}, u""};
};

/// A description as text, or why there is none.
template <class Describe>
void Dump(Describe describe) {
    try {
        (void)describe().dump(2, ' ', false, cli::Json::error_handler_t::replace);
    } catch (const std::runtime_error& error) {
        Require(error.what()[0] != '\0', "a refusal has a reason");
    }
}

}  // namespace

void TryInput(ByteSpan bytes) {
    static const std::unique_ptr<Desk> kDesk = [] {
        const UncountedMemory uncounted;
        return std::make_unique<Desk>();
    }();
    kDesk->files.Finish(4 * bytes.size());
    for (const Text name : {u"take00.wav", u"take00.mp2", u"take00.jvu"})
        kDesk->files.storage.Put(name, bytes);
    Application& app = kDesk->app;
    Dump([&] { return cli::DescribeFile(app, u"take00.wav"); });
    // Any header, also those that are told from a file of ours.
    Dump([&] { return cli::DescribeMp2(app, u"take00.mp2"); });
}

}  // namespace orma::test
