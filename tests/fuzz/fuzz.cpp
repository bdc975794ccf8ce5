#include "fuzz/fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#include <malloc.h>

#include "base/trace.h"

namespace orma::test {
namespace {

/// What is allocated while an input is tried. Plain values: operator new uses it before and after
/// everything else exists.
struct Ledger {
    bool counting = false;
    std::size_t allowed = 0;
    std::size_t held = 0;
};
Ledger ledger;

void* Allocate(std::size_t bytes) {
    void* const block = std::malloc(bytes == 0 ? 1 : bytes);
    if (block == nullptr) std::abort();
    if (!ledger.counting) return block;
    ledger.held += malloc_usable_size(block);
    if (ledger.held > ledger.allowed) {
        ledger.counting = false;
        std::fprintf(stderr, "memory: %zu bytes more make %zu, %zu are allowed\n", bytes,
                     ledger.held, ledger.allowed);
        std::abort();
    }
    return block;
}

void Release(void* block) {
    if (ledger.counting && block != nullptr) {
        // What an earlier input allocated may end in this one.
        const std::size_t bytes = malloc_usable_size(block);
        ledger.held -= ledger.held < bytes ? ledger.held : bytes;
    }
    std::free(block);
}

}  // namespace

void Require(bool holds, const char* reason) {
    if (holds) return;
    std::fprintf(stderr, "requirement broken: %s\n", reason);
    std::abort();
}

UncountedMemory::UncountedMemory() {
    ledger.counting = false;
}

UncountedMemory::~UncountedMemory() {
    ledger.counting = true;
}

void FuzzFiles::Finish(std::size_t nextInputBytes) {
    // A file is read a few times over by various readers, in fields of a byte or more.
    Require(storage.Calls() <= 4000 + 16 * inputBytes_, "file operations in keeping with the size");
    Require(storage.BytesMoved() <= 100'000 + 256 * inputBytes_, "bytes moved in keeping with it");
    Require(boxes_.shown.size() <= 16, "a handful of boxes");
    storage.ResetCounts();
    boxes_.shown.clear();
    inputBytes_ = nextInputBytes;
}

}  // namespace orma::test

// Every form that the sanitizers' own library would otherwise serve, so that what one allocates the
// other is never asked to release. Over-aligned objects do not occur.
void* operator new(std::size_t bytes) {
    return orma::test::Allocate(bytes);
}
void* operator new[](std::size_t bytes) {
    return orma::test::Allocate(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return orma::test::Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return orma::test::Allocate(bytes);
}
void operator delete(void* block) noexcept {
    orma::test::Release(block);
}
void operator delete[](void* block) noexcept {
    orma::test::Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    orma::test::Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    orma::test::Release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    orma::test::Release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    orma::test::Release(block);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orma::test;
    orma::SetTraceSink([](std::string_view) {});  // so that trace lines are really formatted
    ledger = {.counting = true,
              .allowed = kMemoryBudget.fixedBytes + kMemoryBudget.bytesPerInputByte * size};
    TryInput({data, size});
    ledger.counting = false;
    return 0;
}
