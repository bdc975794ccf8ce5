#include "support/fake_boxes.h"

namespace orma::test {

BoxAnswer FakeBoxes::Show(const MessageBox& box) {
    shown.push_back(box);
    if (answers.empty()) return box.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kOk;
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

std::vector<Text> FakeBoxes::Texts() const {
    std::vector<Text> texts;
    for (const MessageBox& box : shown)
        texts.push_back(box.text);
    return texts;
}

}  // namespace orma::test
