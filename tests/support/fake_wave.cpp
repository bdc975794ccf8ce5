#include "support/fake_wave.h"

#include <algorithm>
#include <cstring>

namespace orma::test {

std::size_t FakeWaveIn::Count(const std::string& call) const {
    return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), call));
}

WaveResult FakeWaveIn::Note(const std::string& call) {
    calls.push_back(call);
    for (const std::string& key : {call + "#" + std::to_string(Count(call)), call})
        if (const auto found = results.find(key); found != results.end()) return found->second;
    return WaveResult::kOk;
}

bool FakeWaveIn::Deliver(ByteSpan bytes) {
    if (queue.empty() || events == nullptr) return false;
    WaveHeader& header = *queue.front();
    queue.pop_front();
    const std::size_t filled = std::min<std::size_t>(bytes.size(), header.bufferLength);
    std::memset(header.data, 0, header.bufferLength);
    std::copy_n(bytes.begin(), filled, header.data);
    header.bytesRecorded = static_cast<std::uint32_t>(filled);
    events->OnWaveInData(header);
    return true;
}

bool FakeWaveIn::DeliverValue(std::int16_t sample) {
    if (queue.empty()) return false;
    Bytes bytes(queue.front()->bufferLength);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        StoreLe(bytes.data() + at, sample);
    return Deliver(bytes);
}

void FakeWaveIn::FlushReset() {
    for (std::size_t left = queue.size(); left > 0 && !queue.empty(); --left) {
        const std::size_t part = std::min<std::size_t>(backlog.size(), queue.front()->bufferLength);
        const Bytes bytes(backlog.begin(), backlog.begin() + static_cast<std::ptrdiff_t>(part));
        backlog.erase(backlog.begin(), backlog.begin() + static_cast<std::ptrdiff_t>(part));
        Deliver(bytes);
    }
}

void FakeWaveIn::Lose(WaveLoss reason) {
    if (events != nullptr) events->OnWaveInLost(reason);
}

namespace {

class OpenFakeIn : public WaveInDevice {
  public:
    OpenFakeIn(FakeWaveIn& script, EventLoop& loop) : script_(script), loop_(loop) {}

    ~OpenFakeIn() override {
        *alive_ = false;
        (void)script_.Note("Close");
        script_.open = script_.started = false;
        script_.events = nullptr;
        script_.queue.clear();
        script_.prepared.clear();
    }

    WaveResult Prepare(WaveHeader& header) override {
        const WaveResult result = script_.Note("Prepare");
        if (result == WaveResult::kOk) script_.prepared.insert(&header);
        return result;
    }

    WaveResult Unprepare(WaveHeader& header) override {
        const WaveResult result = script_.Note("Unprepare");
        if (result != WaveResult::kOk) return result;
        if (Holds(header)) return WaveResult::kFailed;
        return script_.prepared.erase(&header) == 1 ? WaveResult::kOk : WaveResult::kNotPrepared;
    }

    WaveResult Add(WaveHeader& header) override {
        const WaveResult result = script_.Note("Add");
        if (result != WaveResult::kOk) return result;
        if (!script_.prepared.contains(&header)) return WaveResult::kNotPrepared;
        if (Holds(header)) return WaveResult::kFailed;
        script_.queue.push_back(&header);
        return WaveResult::kOk;
    }

    WaveResult Start() override {
        const WaveResult result = script_.Note("Start");
        if (result != WaveResult::kOk) return result;
        script_.started = true;
        script_.backlog.clear();
        return result;
    }

    WaveResult Stop() override {
        const WaveResult result = script_.Note("Stop");
        if (result == WaveResult::kOk) script_.started = false;
        return result;
    }

    WaveResult Reset() override {
        const WaveResult result = script_.Note("Reset");
        if (result != WaveResult::kOk) return result;
        script_.started = false;
        if (script_.flushOnReset)
            loop_.Post([alive = alive_, &script = script_] {
                if (*alive) script.FlushReset();
            });
        return result;
    }

    std::uint64_t LostFrames() const override { return script_.lostFrames; }

  private:
    [[nodiscard]] bool Holds(WaveHeader& header) const {
        return std::ranges::find(script_.queue, &header) != script_.queue.end();
    }

    FakeWaveIn& script_;
    EventLoop& loop_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace

WaveResult FakeWaveSystem::OpenInput(const Text& name, const WaveFormat& format,
                                     WaveInEvents& events, std::unique_ptr<WaveInDevice>& device) {
    const WaveResult result = in.Note("OpenInput");
    if (result != WaveResult::kOk) return result;
    in.name = name;
    in.format = format;
    in.open = true;
    in.events = &events;
    device = std::make_unique<OpenFakeIn>(in, loop_);
    return result;
}

WaveResult FakeWaveSystem::SetOutputVolume(std::uint16_t left, std::uint16_t right) {
    if (volumeResult != WaveResult::kOk) return volumeResult;
    volumeLeft = left;
    volumeRight = right;
    return WaveResult::kOk;
}

}  // namespace orma::test
