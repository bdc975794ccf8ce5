#pragma once

#include "base/text.h"
#include "platform/message_boxes.h"
#include "platform/storage.h"

namespace orma {

/// Turns failures into modal boxes titled "Error" with the error icon, and into trace lines. Never
/// fails itself. UI thread; blocks until the box is dismissed.
class ErrorReporter {
  public:
    /// Both outlive the reporter; `storage` supplies the system's own message texts.
    ErrorReporter(MessageBoxes& boxes, Storage& storage);

    /// Traces "ERROR\t" and the text, then shows it.
    void ShowError(const Text& text);

    /// Reports the failure of a named system operation: its name, the number and the system's text;
    /// the codes 12000 to 12174, which belong to internet operations, have fixed texts that stand
    /// alone or, where none is fixed, the name and the number.
    void ReportSystemFailure(const Text& operation, SystemError code);

    /// Reports the failure of a named internet operation, unless these are silenced. The code 12003
    /// says that the server itself refused: its name, the number and the first 799 characters of
    /// `serverReply`. Every other code is reported as a system failure.
    void ReportInternetFailure(const Text& operation, SystemError code, TextView serverReply);

    /// Silences ReportInternetFailure while a job deals with such failures itself; off at start.
    void SilenceInternetFailures(bool silent) { internetSilent_ = silent; }

    /// The boxes themselves, for questions and boxes with another title.
    [[nodiscard]] MessageBoxes& Boxes() { return boxes_; }

  private:
    void TraceAndShow(const Text& text);

    MessageBoxes& boxes_;
    Storage& storage_;
    bool internetSilent_ = false;
};

}  // namespace orma
