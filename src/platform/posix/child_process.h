#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace orma {

/// Whether Ctrl-C and the end of this program are the child's business.
enum class ChildTies {
    kOurs,   // of our session, with our streams
    kApart,  // in a session of its own, with nothing to read from or to write to
};

/// Starts a program, looked for in PATH unless its name holds a slash; `words` are its arguments,
/// the first one its name. No signal is blocked in it: what a watch of ours holds back would stay
/// so in the child and all that it starts, and nobody could end them. The caller waits for it. 0
/// when it cannot be started. Any thread.
[[nodiscard]] pid_t StartChild(const char* program, std::vector<std::string> words, ChildTies ties);

}  // namespace orma
