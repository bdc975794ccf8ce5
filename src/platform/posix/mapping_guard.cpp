#include "platform/posix/mapping_guard.h"

#include <array>
#include <atomic>
#include <csignal>

#include <sys/mman.h>

namespace orma {
namespace {

struct Slot {
    std::atomic<std::uintptr_t> begin = 0;  // 0: free
    std::atomic<std::size_t> size = 0;
    std::atomic<bool> lost = false;
};

// A signal handler reaches nothing but what is static.
std::array<Slot, 8> slots;
struct sigaction before {};

void OnBusError(int number, siginfo_t* info, void* context) {
    const auto at = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (Slot& slot : slots) {
        const std::uintptr_t begin = slot.begin.load();
        if (begin == 0 || at < begin || at - begin >= slot.size.load()) continue;
        slot.lost = true;
        void* const memory =
            ::mmap(reinterpret_cast<void*>(begin), slot.size.load(), PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
        if (memory != MAP_FAILED) return;
    }
    if ((before.sa_flags & SA_SIGINFO) != 0 && before.sa_sigaction != nullptr) {
        before.sa_sigaction(number, info, context);
        return;
    }
    ::sigaction(SIGBUS, &before, nullptr);  // the store is tried again, and ends the program
}

void Install() {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_sigaction = OnBusError;
        action.sa_flags = SA_SIGINFO;
        ::sigemptyset(&action.sa_mask);
        return ::sigaction(SIGBUS, &action, &before) == 0;
    }();
    (void)installed;
}

}  // namespace

MappingGuard::MappingGuard(std::span<std::uint8_t> bytes) : slot_(-1) {
    Install();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (slots[i].begin != 0) continue;
        slots[i].lost = false;
        slots[i].size = bytes.size();
        slots[i].begin = reinterpret_cast<std::uintptr_t>(bytes.data());
        slot_ = static_cast<int>(i);
        return;
    }
}

void MappingGuard::Release() {
    if (slot_ >= 0) slots[static_cast<std::size_t>(slot_)].begin = 0;
    slot_ = -1;
}

bool MappingGuard::IsLost() const {
    return slot_ >= 0 && slots[static_cast<std::size_t>(slot_)].lost;
}

}  // namespace orma
