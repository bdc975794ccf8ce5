#include "support/pulse_server.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_THREAD__)
// The client library of the server is not instrumented: its own locking is not seen.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libpulse.so\nrace:libpulsecommon\nmutex:libpulsecommon\n";
}
#endif

#if defined(__SANITIZE_ADDRESS__)
// Every closing of ALSA unloads its plug-ins with what their libraries' constructors took, which
// then looks like a leak: in this build they stay loaded.
extern "C" int dlclose(void*) noexcept {
    return 0;
}
#endif

namespace orma::test {
namespace {

/// Starts a program that dies with this one and writes nothing to the terminal.
pid_t Start(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t process = ::fork();
    if (process != 0) return process;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (int descriptor : {0, 1, 2})
        ::dup2(nowhere, descriptor);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

}  // namespace

PulseServer::PulseServer() {
    const std::filesystem::path runtime = folder_.Native() / "pulse";
    std::filesystem::create_directories(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", folder_.Native().c_str(), 1);
    ::setenv("PULSE_RUNTIME_PATH", runtime.c_str(), 1);
    ::setenv("PULSE_SERVER", ("unix:" + (runtime / "native").string()).c_str(), 1);
    // The socket comes last: once it is there, so is the sink.
    process_ =
        Start({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "-L",
               "module-null-sink sink_name=mic norewinds=1", "-L", "module-native-protocol-unix"});
    for (int tries = 0; tries < 500 && !std::filesystem::exists(runtime / "native"); ++tries) {
        int status = 0;
        if (::waitpid(process_, &status, WNOHANG) == process_) {
            process_ = -1;
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    if (!std::filesystem::exists(runtime / "native")) Kill();
}

pid_t PulseServer::Speak(const Text& file) const {
    return Start({"paplay", "--device=mic", ToUtf8(file)});
}

int PulseServer::Wait(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void PulseServer::Kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
}

}  // namespace orma::test
