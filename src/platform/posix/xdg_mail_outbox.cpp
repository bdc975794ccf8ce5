#include "platform/posix/xdg_mail_outbox.h"

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace orma {
namespace {

constexpr const char* kTool = "xdg-email";
constexpr std::chrono::milliseconds kSlice{50};
constexpr int kSlices = 100;

/// Starts the tool in a session of its own, so that it outlives us and no Ctrl-C of ours reaches
/// it, with nothing to read from or to write to. 0 when it cannot be started.
pid_t Start(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawnattr_init(&attributes);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t child = 0;
    const int failure =
        ::posix_spawnp(&child, kTool, &files, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? child : 0;
}

}  // namespace

bool XdgMailOutbox::HasMailProgram() {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (::access((folder + "/" + kTool).c_str(), X_OK) == 0) return true;
    }
    return false;
}

bool XdgMailOutbox::HandOver(const OutboxLetter& letter, Patience& patience) {
    std::erase_if(running_, [](pid_t child) { return ::waitpid(child, nullptr, WNOHANG) != 0; });

    std::vector<std::string> words = {kTool, "--utf8"};
    const auto add = [&](const char* option, const Text& value) {
        if (value.empty()) return;  // the tool takes an empty value for a missing one
        words.emplace_back(option);
        words.push_back(ToUtf8(value));
    };
    add("--subject", letter.subject);
    add("--body", letter.body);
    add("--attach", letter.attachmentPath);
    words.push_back(ToUtf8(letter.recipient));
    const pid_t child = Start(std::move(words));
    if (child == 0) return false;
    for (int slice = 0; slice < kSlices; ++slice) {
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (!patience.GoOn()) break;  // what was begun goes on
        std::this_thread::sleep_for(kSlice);
    }
    running_.push_back(child);
    return true;
}

}  // namespace orma
