#include "window/dialogs/text_sheet.h"

#include <QDragEnterEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

constexpr int kLetters = 17;  // pixels
constexpr int kMargin = 12;   // pixels around the text

}  // namespace

TextSheet::TextSheet(const Text& text, QWidget* parent) : QPlainTextEdit(parent) {
    const bool bare = text.find(u'\n') != Text::npos && text.find(u"\r\n") == Text::npos;
    lineEnd_ = bare ? QStringLiteral("\n") : QStringLiteral("\r\n");
    QFont letters = font();
    letters.setPixelSize(kLetters);
    setFont(letters);
    setFrameShape(NoFrame);
    document()->setDocumentMargin(kMargin);
    setPlaceholderText(QStringLiteral("The text that goes with this project"));
    setAccessibleName(QStringLiteral("Project text"));
    setPlainText(ToQt(text));
    document()->setModified(false);
    parent->installEventFilter(this);
    Cover();
}

Text TextSheet::Written() const {
    // The other ways to read a document turn protected blanks into common ones.
    QString text = document()->toRawText();
    text.replace(QChar::LineSeparator, QChar::LineFeed);
    text.replace(QChar::ParagraphSeparator, QChar::LineFeed);
    if (lineEnd_ != QStringLiteral("\n")) text.replace(QStringLiteral("\n"), lineEnd_);
    return FromQt(text);
}

void TextSheet::Cover() {
    setGeometry(parentWidget()->rect());
}

bool TextSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) Cover();
    return QPlainTextEdit::eventFilter(watched, event);
}

void TextSheet::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().front().isLocalFile())
        event->ignore();
    else
        QPlainTextEdit::dragEnterEvent(event);
}

void TextSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && onEscape)
        onEscape();
    else
        QPlainTextEdit::keyPressEvent(event);
}

}  // namespace orma
