#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "app/application.h"
#include "support/fake_boxes.h"

namespace orma::test {

/// What a recording's level file holds of the user's work: marks and cuts.
using Sheet = std::pair<std::vector<std::uint32_t>, std::vector<RemovedRange>>;

/// What the user sees of the list: each clip's name, title, begin and end, and the project's text.
using EditedClip = std::tuple<Text, Text, std::uint32_t, std::uint32_t>;
using ListState = std::pair<std::vector<EditedClip>, Text>;

/// Editing as the program told of it.
struct EditAccount {
    std::vector<std::string> silent;  // refused without a box
    std::size_t done = 0;             // edits that were said to be done
    // What may be found at the next start: what was there when a change of the list was last said
    // to be saved, and all that came after it.
    std::vector<ListState> lists;
    std::map<Text, Sheet> sheets;  // as last said to be saved, by recording

    static constexpr std::size_t kAll = 13;
};

[[nodiscard]] ListState ListOf(const Project& project);

/// Edits the newest clip of the current project (mark, cut, crop, title, copy, undo) and then the
/// first one, as a user does: a refused step is not tried again.
[[nodiscard]] EditAccount Edit(Application& app, FakeBoxes& boxes);

}  // namespace orma::test
