#include "window/dialogs/qt_text_editor.h"

namespace orma {

QtTextEditor::QtTextEditor(Application& app, Host host, int saveMs)
    : app_(app), host_(std::move(host)) {
    changed_.setSingleShot(true);
    changed_.setInterval(saveMs);
    QObject::connect(&changed_, &QTimer::timeout, &changed_, [this] { HandOver(); });
}

QtTextEditor::~QtTextEditor() = default;

void QtTextEditor::Open() {
    QWidget* const area = host_.clientArea();
    if (IsOpen() || area == nullptr) return;
    app_.project.AdoptTextDraft();
    saves_ = true;
    sheet_ = new TextSheet(app_.project.ProjectText(), area);
    sheet_->onEscape = [this] { host_.close(); };
    QObject::connect(sheet_, &QPlainTextEdit::textChanged, &changed_, [this] {
        if (!changed_.isActive()) changed_.start();
    });
    sheet_->show();
    sheet_->raise();
    sheet_->setFocus();
}

void QtTextEditor::Close() {
    if (!IsOpen()) return;
    changed_.stop();
    HandOver();
    TextSheet* const sheet = sheet_;
    sheet_ = nullptr;
    sheet->onEscape = nullptr;
    sheet->hide();
    if (sheet->parentWidget() != nullptr) sheet->parentWidget()->setFocus();
    sheet->deleteLater();  // Escape comes from within it
}

/// A text that nobody touched stays as it is, to the last line end.
void QtTextEditor::HandOver() {
    if (!IsOpen() || !sheet_->document()->isModified()) return;
    sheet_->document()->setModified(false);
    app_.project.SetProjectText(sheet_->Written());
    if (saves_) saves_ = app_.project.SaveProjectFile();  // a failure is reported
}

}  // namespace orma
