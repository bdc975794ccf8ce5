#pragma once

#include <string>
#include <vector>

#include "platform/running_instance.h"

namespace orma::test {

/// A desktop on which another instance runs, or not; what is asked of it goes to a shared log.
class FakeRunningInstance : public RunningInstance {
  public:
    explicit FakeRunningInstance(std::vector<std::string>& log) : log_(log) {}

    [[nodiscard]] bool IsOpen() override { return isOpen; }
    void Raise() override { log_.emplace_back("raise other"); }
    [[nodiscard]] bool Close(int) override {
        log_.emplace_back("close other");
        return ends;
    }
    void CloseSetup() override { log_.emplace_back("close setup"); }
    [[nodiscard]] bool Open(Requests asked) override {
        log_.emplace_back("open instance");
        requests = std::move(asked);
        return !isQuicker;
    }
    void Leave() override { log_.emplace_back("leave instance"); }

    bool isOpen = false;
    bool ends = true;
    bool isQuicker = false;  // another one, than this
    Requests requests;

  private:
    std::vector<std::string>& log_;
};

}  // namespace orma::test
