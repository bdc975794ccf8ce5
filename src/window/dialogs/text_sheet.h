#pragma once

#include <QPlainTextEdit>
#include <functional>

#include "base/text.h"

namespace orma {

/// A sheet to write on that covers its parent, whatever size that takes.
class TextSheet : public QPlainTextEdit {
  public:
    TextSheet(const Text& text, QWidget* parent);

    /// The text as it is written, to the letter; line ends are those of the text that it was made
    /// with, where that had none CR LF, which the receivers of publications are used to.
    [[nodiscard]] Text Written() const;

    std::function<void()> onEscape;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Files are the window's: it opens those that are its own. Texts are taken.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Cover();

    QString lineEnd_;
};

}  // namespace orma
