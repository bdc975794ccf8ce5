// bench_child COMMAND [ARG...]: runs a command, its output silenced, and prints its CPU seconds,
// its seconds on the wall and its largest resident memory in MiB. Small on purpose: a child starts
// with its parent's memory counted as its own peak.

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int count, char** words) {
    if (count < 2) return 2;
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) return 2;
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        execvp(words[1], words + 1);
        _exit(127);
    }
    int status = 0;
    rusage used{};
    if (wait4(child, &status, 0, &used) != child) return 2;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    std::printf("%.6f %.6f %.1f\n", seconds(used.ru_utime) + seconds(used.ru_stime), wall.count(),
                static_cast<double>(used.ru_maxrss) / 1024);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
