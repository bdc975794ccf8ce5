#pragma once

#include "report/error_reporter.h"
#include "stream/jstream_file.h"
#include "support/fake_boxes.h"
#include "support/memory_storage.h"

namespace orma::test {

// A fuzz target is one file NAME_fuzz.cpp that defines the two names below, and a folder
// corpus/NAME of inputs that is never empty. Everything else follows from that: the fuzzer's
// program, and the ordinary test that replays the corpus.

/// The memory that one input may hold at a time: so much whatever it says, and so much for each of
/// its bytes. A single allocation beyond that fails as well, however short it lives. What the
/// libraries allocate by themselves is not counted.
struct MemoryBudget {
    std::size_t fixedBytes = 0;
    std::size_t bytesPerInputByte = 0;
};

/// Defined by the target, with the reason for its figures.
extern const MemoryBudget kMemoryBudget;

/// Defined by the target: does with the input whatever the program does with such a file.
void TryInput(ByteSpan input);

/// Ends the process with the reason unless `holds`; whoever runs the target keeps the input.
void Require(bool holds, const char* reason);

/// While it lives, what is allocated is not counted: what a target makes once for all inputs.
class UncountedMemory {
  public:
    UncountedMemory();
    ~UncountedMemory();
    UncountedMemory(const UncountedMemory&) = delete;
    UncountedMemory& operator=(const UncountedMemory&) = delete;
};

/// Files in memory and boxes without anybody in front of them. Requires that no input costs an
/// unreasonable number of file operations or of boxes.
class FuzzFiles {
  public:
    /// `inputBytes` is what the work is measured by.
    explicit FuzzFiles(std::size_t inputBytes = 0) : inputBytes_(inputBytes) {}
    ~FuzzFiles() { Finish(0); }
    FuzzFiles(const FuzzFiles&) = delete;
    FuzzFiles& operator=(const FuzzFiles&) = delete;

    /// Checks what was done so far and goes on to an input of another size; for targets that keep
    /// their files.
    void Finish(std::size_t nextInputBytes);

  private:
    std::size_t inputBytes_;
    FakeBoxes boxes_;

  public:
    MemoryStorage storage;
    ErrorReporter report{boxes_, storage};
    FileServices services{storage, report};
};

}  // namespace orma::test
