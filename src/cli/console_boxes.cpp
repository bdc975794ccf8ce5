#include "cli/console_boxes.h"

#include <algorithm>
#include <cstdio>

namespace orma::cli {

BoxAnswer ConsoleBoxes::Show(const MessageBox& box) {
    if (box.icon == BoxIcon::kError) ++errors_;
    // Box texts are broken to fit a small window; on a terminal they are one line.
    std::string text = ToUtf8(box.text);
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", ToUtf8(box.title).c_str(), text.c_str());
    return box.buttons == BoxButtons::kOk ? BoxAnswer::kOk : answer_;
}

}  // namespace orma::cli
