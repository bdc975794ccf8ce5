#pragma once

#include <set>
#include <string>
#include <vector>

#include "workday.h"

namespace orma::test {

/// Looks at what a day with a fault left, and at what the program makes of it when it starts again
/// on a medium that is well. The measure is the same day without a fault.
class Inspection {
  public:
    /// Runs that day once. `before`: the medium as every day finds it.
    Inspection(Medium& medium, Workday& day, Recording recording, Snapshot before);

    /// Everything that is lost, half or claimed without being true; empty: nothing. The medium is
    /// not the same afterwards.
    [[nodiscard]] std::vector<std::string> Faults(const Account& account,
                                                  FaultyStorage::Extent extent);

  private:
    void CheckFiles();
    void CheckClaims();
    void CheckNextStart();
    void CheckTake(Application& app, std::size_t index);
    void CheckMarks();
    void CheckEdits(const Application& app);
    void CheckNothingIsOverwritten(Application& app);
    [[nodiscard]] bool PublishWhatIsWhole(Application& app, FakeBoxes& boxes);

    [[nodiscard]] Bytes RecoveredSound(Application& app, const Text& take);
    [[nodiscard]] std::size_t LeastBytes(std::size_t index) const;
    [[nodiscard]] bool KeepsSettings(const Text& name);
    [[nodiscard]] bool IsSound(const Text& publication, const Bytes& bytes);
    void Require(bool holds, const std::string& text);

    Medium& medium_;
    Workday& day_;
    Recording recording_;
    Snapshot before_;
    Snapshot whole_;  // what the day without a fault leaves
    Account wholeAccount_;
    std::array<Bytes, 2> sound_;  // of its takes
    std::set<Bytes> verified_;    // publications; most runs end with one that is known

    // The day that is looked at now, and what it left.
    Account account_;
    FaultyStorage::Extent extent_ = FaultyStorage::Extent::kOnce;
    Snapshot after_;
    std::vector<std::string> faults_;
};

}  // namespace orma::test
