// Whatever `orma show` is given: it tells from the first bytes what a file is.

#include <stdexcept>

#include "cli/describe.h"
#include "fuzz/fuzz.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"

namespace orma::test {

// The application with its capture buffers. A byte of a level list becomes a JSON number of 16, in
// lists that are copied and grow; a chunk of eight bytes a list of named fields.
const MemoryBudget kMemoryBudget{.fixedBytes = 2560 * 1024, .bytesPerInputByte = 256};

namespace {

class NoHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool) override { return -1; }
};

class NoProgress : public PublishProgress {
  public:
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }
};

class NoScreen : public RecorderListener {};

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
    FuzzFiles files(bytes.size());
    files.storage.Put(u"take00.wav", bytes);
    files.storage.Put(u"take00.mp2", bytes);
    files.storage.Put(u"take00.jvu", bytes);
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves(loop);
    NoHeadset headset;
    NoScreen screen;
    NoProgress progress;
    Application app(Ports{.storage = files.storage,
                          .clock = clock,
                          .boxes = files.report.Boxes(),
                          .loop = loop,
                          .waves = waves,
                          .headset = headset},
                    FrontEnd{screen, progress}, u"");
    Dump([&] { return cli::DescribeFile(app, u"take00.wav"); });
    // As other files that begin with the wrong bytes are never described, each reader on its own.
    Dump([&] { return cli::DescribeSettings(app, u"take00.wav"); });
    Dump([&] { return cli::DescribeProject(app, u"take00.wav"); });
    Dump([&] { return cli::DescribeMp2(app, u"take00.mp2"); });
}

}  // namespace orma::test
