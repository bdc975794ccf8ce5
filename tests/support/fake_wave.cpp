#include "support/fake_wave.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orma::test {

WaveResult FakeWaveScript::Note(const std::string& call) {
    calls.push_back(call);
    for (const std::string& key : {call + "#" + std::to_string(Count(call)), call})
        if (const auto found = results.find(key); found != results.end()) return found->second;
    return WaveResult::kOk;
}

WaveResult FakeWaveScript::Prepare(WaveHeader& header) {
    if (const WaveResult result = Note("Prepare"); result != WaveResult::kOk) return result;
    prepared.insert(&header);
    return WaveResult::kOk;
}

WaveResult FakeWaveScript::Unprepare(WaveHeader& header) {
    if (const WaveResult result = Note("Unprepare"); result != WaveResult::kOk) return result;
    if (std::ranges::find(queue, &header) != queue.end()) return WaveResult::kFailed;
    return prepared.erase(&header) == 1 ? WaveResult::kOk : WaveResult::kNotPrepared;
}

WaveResult FakeWaveScript::Enqueue(const std::string& call, WaveHeader& header) {
    if (const WaveResult result = Note(call); result != WaveResult::kOk) return result;
    if (!prepared.contains(&header)) return WaveResult::kNotPrepared;
    if (std::ranges::find(queue, &header) != queue.end()) return WaveResult::kFailed;
    queue.push_back(&header);
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

bool FakeWaveOut::FinishOne() {
    if (queue.empty() || paused || events == nullptr) return false;
    WaveHeader& header = *queue.front();
    queue.pop_front();
    played.insert(played.end(), header.data, header.data + header.bufferLength);
    events->OnWaveOutDone(header);
    return true;
}

void FakeWaveOut::FlushReset() {
    for (std::size_t left = queue.size(); left > 0 && !queue.empty(); --left) {
        WaveHeader& header = *queue.front();
        queue.pop_front();
        if (events != nullptr) events->OnWaveOutDone(header);
    }
}

namespace {

/// What is common to both directions.
template <class Script, class Device>
class OpenFake : public Device {
  public:
    OpenFake(Script& script, EventLoop& loop) : script_(script), loop_(loop) {}
    ~OpenFake() override { (void)OpenFake::Close(); }

    WaveResult Close() override {
        if (!std::exchange(*alive_, false)) return WaveResult::kOk;
        script_.open = script_.paused = false;
        script_.events = nullptr;
        script_.queue.clear();
        script_.prepared.clear();
        return script_.Note("Close");
    }

    WaveResult Prepare(WaveHeader& header) override { return script_.Prepare(header); }
    WaveResult Unprepare(WaveHeader& header) override { return script_.Unprepare(header); }

    WaveResult Reset() override {
        const WaveResult result = script_.Note("Reset");
        if (result != WaveResult::kOk) return result;
        script_.paused = false;
        if (script_.flushOnReset)
            loop_.Post([alive = alive_, &script = script_] {
                if (*alive) script.FlushReset();
            });
        return result;
    }

  protected:
    Script& script_;

  private:
    EventLoop& loop_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

class OpenFakeIn : public OpenFake<FakeWaveIn, WaveInDevice> {
  public:
    using OpenFake::OpenFake;

    WaveResult Add(WaveHeader& header) override { return script_.Enqueue("Add", header); }
    WaveResult Start() override {
        const WaveResult result = script_.Note("Start");
        if (result == WaveResult::kOk) script_.backlog.clear();
        return result;
    }
    WaveResult Stop() override { return script_.Note("Stop"); }
    std::uint64_t LostFrames() const override { return script_.lostFrames; }
};

class OpenFakeOut : public OpenFake<FakeWaveOut, WaveOutDevice> {
  public:
    using OpenFake::OpenFake;

    WaveResult Write(WaveHeader& header) override { return script_.Enqueue("Write", header); }
    WaveResult Pause() override { return Pause("Pause", true); }
    WaveResult Restart() override { return Pause("Restart", false); }

  private:
    WaveResult Pause(const std::string& call, bool on) {
        const WaveResult result = script_.Note(call);
        if (result == WaveResult::kOk) script_.paused = on;
        return result;
    }
};

template <class Device, class Opened, class Script, class Events>
WaveResult Open(const std::string& call, const Text& name, const WaveFormat& format, Events& events,
                Script& script, EventLoop& loop, std::unique_ptr<Device>& device) {
    const WaveResult result = script.Note(call);
    if (result != WaveResult::kOk) return result;
    script.name = name;
    script.format = format;
    script.open = true;
    script.events = &events;
    device = std::make_unique<Opened>(script, loop);
    return result;
}

}  // namespace

WaveResult FakeWaveSystem::OpenOutput(const Text& name, const WaveFormat& format,
                                      WaveOutEvents& events,
                                      std::unique_ptr<WaveOutDevice>& device) {
    return Open<WaveOutDevice, OpenFakeOut>("OpenOutput", name, format, events, out, loop_, device);
}

WaveResult FakeWaveSystem::OpenInput(const Text& name, const WaveFormat& format,
                                     WaveInEvents& events, std::unique_ptr<WaveInDevice>& device) {
    return Open<WaveInDevice, OpenFakeIn>("OpenInput", name, format, events, in, loop_, device);
}

WaveResult FakeWaveSystem::SetOutputVolume(std::uint16_t left, std::uint16_t right) {
    if (volumeResult != WaveResult::kOk) return volumeResult;
    volumeLeft = left;
    volumeRight = right;
    return WaveResult::kOk;
}

}  // namespace orma::test
