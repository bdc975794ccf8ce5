#include "cli/console_boxes.h"

#include <algorithm>
#include <cstdio>

#include "platform/posix/console.h"

namespace orma::cli {

BoxAnswer ConsoleBoxes::Show(const MessageBox& box) {
    if (box.icon == BoxIcon::kError) ++errors_;
    // Box texts are broken to fit a small window; on a terminal they are one line.
    std::string text = ToUtf8(box.text);
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", ToUtf8(box.title).c_str(), text.c_str());
    if (box.buttons == BoxButtons::kOk) return BoxAnswer::kOk;
    if (box.buttons != BoxButtons::kYesNo || !asks_ || !InputIsTerminal()) return answer_;
    std::fputs("[y/N] ", stderr);
    std::fflush(stderr);
    const std::string line = ReadAnswer();
    if (!line.starts_with('y') && !line.starts_with('Y')) return BoxAnswer::kNo;
    errors_ = 0;
    return BoxAnswer::kYes;
}

}  // namespace orma::cli
