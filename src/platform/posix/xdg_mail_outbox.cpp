#include "platform/posix/xdg_mail_outbox.h"

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/child_process.h"

namespace orma {
namespace {

constexpr const char* kTool = "xdg-email";
constexpr std::chrono::milliseconds kSlice{50};
constexpr int kSlices = 100;

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
    const pid_t child = StartChild(kTool, std::move(words), ChildTies::kApart);
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
