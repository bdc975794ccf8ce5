// Every call that a working day makes of the storage fails once, and the medium dies at every call:
// nothing recorded is lost, no file is half, and nothing is claimed that is not so.

#include <cerrno>
#include <cstdio>

#include <gtest/gtest.h>

#include "inspection.h"

namespace orma::test {
namespace {

using Extent = FaultyStorage::Extent;

// The sanitizers make a day slow; with them only every so many-th call fails.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kStride = 7;
#else
constexpr std::size_t kStride = 1;
#endif

constexpr Recording kRecordings[] = {
    {"WAV", false, false},
    {"WAV, append per block", false, true},
    {"MP2", true, false},
    {"MP2, append per block", true, true},
};

const char* ExtentName(Extent extent) {
    if (extent == Extent::kOnce) return "Once";
    return extent == Extent::kForAWhile ? "ForAWhile" : "DeadMedium";
}

/// One kind of fault, put at every `stride`-th call of a day.
struct Injection {
    Recording recording;
    Extent extent = Extent::kOnce;
    SystemError error = FaultyStorage::kNoSpace;
    std::size_t stride = kStride;
};

void Inject(const Injection& injection) {
    const auto& [recording, extent, error, stride] = injection;
    Medium medium;
    Workday day(medium, recording);
    day.Prepare();
    ASSERT_FALSE(testing::Test::HasFailure());
    const Snapshot before = medium.Look();
    Inspection inspection(medium, day, recording, before);
    ASSERT_FALSE(testing::Test::HasFailure());

    std::size_t faults = 0;
    std::size_t bad = 0;
    for (std::size_t n = 1; n <= inspection.Operations(); n += stride) {
        medium.SetBack(before);
        FaultyStorage storage(medium.storage);
        storage.FailAt(FaultyStorage::kAll | FaultyStorage::kLook, n, extent, error);
        const Account account = day.Live(storage);
        ASSERT_TRUE(storage.HasFailed());
        ++faults;
        std::string found;
        for (const std::string& fault : inspection.Faults(account, extent))
            found += "\n    " + fault;
        if (found.empty()) continue;
        ++bad;
        for (const Text& box : account.boxes)
            found += "\n    (box: " + ToUtf8(box) + ")";
        ADD_FAILURE() << recording.name << ", call " << storage.FailedCall() << " failed with "
                      << error << " (" << ExtentName(extent) << "):" << found;
    }
    std::printf("%s, %s, error %u: %zu faults injected: ", recording.name, ExtentName(extent),
                error, faults);
    std::puts(bad == 0 ? "nothing lost" : "see the failures");
}

class FaultEverywhere : public testing::TestWithParam<std::tuple<Recording, Extent>> {};

TEST_P(FaultEverywhere, LosesNothingAndClaimsNothing) {
    const auto [recording, extent] = GetParam();
    // A fault of many calls meets what lies between two of its beginnings.
    const std::size_t stride = extent == Extent::kForAWhile ? 4 * kStride : kStride;
    Inject({.recording = recording, .extent = extent, .stride = stride});
}

std::string NameOf(const testing::TestParamInfo<FaultEverywhere::ParamType>& info) {
    const auto [recording, extent] = info.param;
    return std::string(recording.mp2 ? "Mp2" : "Wav") +
           (recording.appendPerBlock ? "PerBlock" : "") + ExtentName(extent);
}

INSTANTIATE_TEST_SUITE_P(All, FaultEverywhere,
                         testing::Combine(testing::ValuesIn(kRecordings),
                                          testing::Values(Extent::kOnce, Extent::kForAWhile,
                                                          Extent::kFromThenOn)),
                         NameOf);

TEST(FaultOfAnotherKind, IsNoDifferentFromAFullMedium) {
    for (const SystemError error : {SystemError{EIO}, SystemError{EACCES}}) {
        for (const Recording& recording : {kRecordings[0], kRecordings[3]}) {
            for (const Extent extent : {Extent::kOnce, Extent::kFromThenOn})
                Inject({recording, extent, error, 31 * kStride});
        }
    }
}

}  // namespace
}  // namespace orma::test
