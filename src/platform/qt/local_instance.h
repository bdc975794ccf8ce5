#pragma once

#include <memory>
#include <string>

#include "base/text.h"
#include "platform/running_instance.h"

class QSocketNotifier;

namespace orma {

/// One instance for each user and program folder, in the user's runtime folder
/// ($XDG_RUNTIME_DIR, else a folder of the user's own for temporary files): a locked file says that
/// there is one, which ends with its process however that ends; a datagram socket takes what others
/// ask of it, one line each: "raise" or "close". Where no such folder can be had, every instance is
/// the only one. Create it after the toolkit's application object; it is the open instance until it
/// leaves or is destroyed.
class LocalInstance : public RunningInstance {
  public:
    enum class Program { kEditor, kSetup };

    /// Of one of the two programs. `programFolder`: where settings and program files lie; it
    /// exists.
    explicit LocalInstance(const Text& programFolder, Program program = Program::kEditor);
    ~LocalInstance() override;
    LocalInstance(const LocalInstance&) = delete;
    LocalInstance& operator=(const LocalInstance&) = delete;

    [[nodiscard]] bool IsOpen() override;
    void Raise() override;
    [[nodiscard]] bool Close(int patienceMs) override;
    void CloseSetup() override;
    [[nodiscard]] bool Open(Requests requests) override;
    void Leave() override;

  private:
    void Receive();

    std::string name_;   // path of the program's files without their suffixes; empty: none
    std::string setup_;  // the same of the set-up program
    Requests requests_;
    int lock_ = -1;
    int socket_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orma
