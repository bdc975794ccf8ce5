#pragma once

#include "platform/message_boxes.h"

namespace orma::cli {

/// Boxes as lines on standard error. A question is answered by the given answer and never waited
/// for, unless somebody at a terminal is to be asked.
class ConsoleBoxes : public MessageBoxes {
  public:
    explicit ConsoleBoxes(BoxAnswer answerToQuestions = BoxAnswer::kNo)
        : answer_(answerToQuestions) {}

    BoxAnswer Show(const MessageBox& box) override;

    /// What the user decided beforehand.
    void AnswerQuestionsWith(BoxAnswer answer) { answer_ = answer; }

    /// Yes-or-no questions are asked at the terminal, if there is one: "y" is Yes, all else No.
    void AskAtTerminal() { asks_ = true; }

    /// How many error boxes were shown: a command that reported one has not succeeded. Those before
    /// a Yes of the user at the terminal do not count, for he saw them and made it go on.
    [[nodiscard]] int Errors() const { return errors_; }

  private:
    BoxAnswer answer_;
    bool asks_ = false;
    int errors_ = 0;
};

}  // namespace orma::cli
