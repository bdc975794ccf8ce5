#pragma once

#include <QPointer>
#include <QTimer>
#include <functional>

#include "app/application.h"
#include "shell/text_editor.h"
#include "window/dialogs/text_sheet.h"

namespace orma {

/// The text editor as a sheet over the client area. What is typed reaches the project, and its file
/// or draft, within two seconds: a crash or a power cut loses no more than the last words.
class QtTextEditor : public TextEditor {
  public:
    static constexpr int kSaveMs = 2000;  // from a change until it is saved

    struct Host {
        std::function<QWidget*()> clientArea;  // null without a window: nothing opens
        std::function<void()> close;           // Escape: the shell is to close the editor
    };

    /// `app` outlives it; it may be built later.
    QtTextEditor(Application& app, Host host, int saveMs = kSaveMs);
    ~QtTextEditor() override;

    [[nodiscard]] bool IsOpen() const override { return sheet_ != nullptr; }
    void Open() override;
    void Close() override;

  private:
    void HandOver();

    Application& app_;
    Host host_;
    QPointer<TextSheet> sheet_;
    QTimer changed_;     // runs since the first change that is not saved
    bool saves_ = true;  // false once it failed: no second box for the same reason
};

}  // namespace orma
