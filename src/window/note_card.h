#pragma once

#include <QTextLayout>
#include <QWidget>

#include "shell/note.h"

namespace orma {

/// A card at the upper edge of the page that tells how something ended well. It goes when
/// the user presses a key or a button anywhere in the program, which does what it does all the
/// same: it never stands in the way. UI thread.
class NoteCard : public QWidget {
  public:
    /// Shows the note over the page in place of one that is still shown.
    static void ShowOver(QWidget& page, const Note& note);

    ~NoteCard() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    NoteCard(QWidget& page, const Note& note);

    QTextLayout headline_;
    QTextLayout detail_;
    int detailTop_ = 0;
};

}  // namespace orma
