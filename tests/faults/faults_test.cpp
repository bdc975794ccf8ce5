// Every call that a working day makes of the storage fails once, and the medium dies at every call:
// nothing recorded is lost, no file is half, and nothing is claimed that is not so.

#include <cerrno>
#include <cstdio>

#include <gtest/gtest.h>

#include "inspection.h"

namespace orma::test {
namespace {

using Extent = FaultyStorage::Extent;

// Where a sanitizer or a measurement makes a day slow, only every so many-th call fails.
#if defined(__OPTIMIZE__)
constexpr std::size_t kStride = 1;
#else
constexpr std::size_t kStride = 7;
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
    unsigned operations = FaultyStorage::kAll | FaultyStorage::kLook;
};

void Inject(const Injection& injection) {
    const auto& [recording, extent, error, stride, operations] = injection;
    Medium medium;
    Workday day(medium, recording);
    day.Prepare();
    ASSERT_FALSE(testing::Test::HasFailure());
    const Snapshot before = medium.Look();
    Inspection inspection(medium, day, recording, before);
    ASSERT_FALSE(testing::Test::HasFailure());

    std::size_t first = 1;
    if (error == FaultyStorage::kCutShort) {
        // Settings are the exception: what is missing there counts as zeros.
        FaultyStorage storage(medium.storage);
        FakeBoxes boxes;
        storage.FailAt(operations, 0);
        (void)day.Start(storage, boxes);
        first += storage.Count();
    }
    std::size_t faults = 0;
    std::size_t bad = 0;
    for (std::size_t n = first;; n += stride) {
        medium.SetBack(before);
        FaultyStorage storage(medium.storage);
        storage.FailAt(operations, n, extent, error);
        const Account account = day.Live(storage);
        if (!storage.HasFailed()) break;
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
    EXPECT_GT(faults, 0U);
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

constexpr Recording kEdited[] = {
    {"WAV, edited", false, false, true},
    {"MP2, append per block, edited", true, true, true},
};

INSTANTIATE_TEST_SUITE_P(Edited, FaultEverywhere,
                         testing::Combine(testing::ValuesIn(kEdited),
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

// What was measured a moment ago ends early, as on a share whose file somebody else cuts.
TEST(ReadCutShort, PassesForNothingWhole) {
    const auto inject = [](const Recording& recording, Extent extent) {
        Inject({recording, extent, FaultyStorage::kCutShort, kStride, FaultyStorage::kRead});
    };
    inject(kEdited[0], Extent::kOnce);
    inject(kEdited[0], Extent::kFromThenOn);
    // Where no MP2 take can be read for good, nobody knows the bit rate that the next one should
    // have.
    inject(kEdited[1], Extent::kOnce);
}

}  // namespace
}  // namespace orma::test
