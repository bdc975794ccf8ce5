#pragma once

#include <map>
#include <vector>

#include "app/application.h"
#include "support/fake_boxes.h"

namespace orma::test {

/// What a recording's level file holds of the user's work.
struct Sheet {
    std::vector<std::uint32_t> marks;
    std::vector<RemovedRange> cuts;

    friend bool operator==(const Sheet&, const Sheet&) = default;
};

/// A clip as the user made it.
struct EditedClip {
    Text name;
    Text title;
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    friend bool operator==(const EditedClip&, const EditedClip&) = default;
};

/// What the user sees of the list.
struct ListState {
    std::vector<EditedClip> clips;
    Text text;

    friend bool operator==(const ListState&, const ListState&) = default;
};

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
