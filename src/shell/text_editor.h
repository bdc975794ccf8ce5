#pragma once

namespace orma {

/// The editor of the project's text, which lies over the client area while it is open. UI thread.
class TextEditor {
  public:
    virtual ~TextEditor() = default;

    [[nodiscard]] virtual bool IsOpen() const = 0;

    /// Shows the text of the current project.
    virtual void Open() = 0;

    /// Hands the text to the project and disappears; nothing while it is closed.
    virtual void Close() = 0;
};

}  // namespace orma
