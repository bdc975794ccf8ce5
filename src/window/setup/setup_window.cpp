#include "window/setup/setup_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <fstream>

#include "publish/dialogs/current_accounts.h"
#include "stream/file_replacement.h"
#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/qt_text.h"
#include "window/setup/account_page.h"
#include "window/setup/connection_wait.h"
#include "window/setup/equalizer_page.h"

namespace orma {
namespace {

const QString kTitle = QStringLiteral("Orma Edit set-up");
constexpr int kTitlesWidth = 150;  // pixels
constexpr int kTitleHeight = 34;
constexpr int kTwoLines = 36;

constexpr const char* kLook = R"(
QListWidget#pages { background: transparent; border: none; outline: none; }
QListWidget#pages::item { padding-left: 10px; border-radius: 6px; color: #211f1b; }
QListWidget#pages::item:selected { background: #211f1b; color: #fff4dc; }
QPushButton { outline: none; }
QScrollBar:vertical { background: transparent; border: none; width: 12px; margin: 0; }
QScrollBar::handle:vertical { background: #c8c0ae; border-radius: 4px; margin: 2px; min-height: 36px; }
QScrollBar::handle:vertical:hover { background: #7a7161; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
QListWidget#pages::item:selected:focus { border: 2px solid #ff6f0f; padding-left: 8px; }
)";

const char* const kJsonFiles = "Settings (*.json);;All files (*)";

}  // namespace

SetupWindow::SetupWindow(SetupServices services)
    : services_(std::move(services)), document_(services_.files, services_.programFolder) {
    setWindowTitle(QStringLiteral("Orma Edit set-up[*]"));
    setStyleSheet(QString::fromLatin1(kLook));
    titles_ = new QListWidget;
    titles_->setObjectName(QStringLiteral("pages"));
    titles_->setAccessibleName(QStringLiteral("Pages"));
    titles_->setFixedWidth(kTitlesWidth);
    titles_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    stack_ = new QStackedWidget;

    const SetupContext context = Context();
    AddPage("Recording", new FormPage(context, SetupFields::kRecording));
    AddPage("Input", new EqualizerPage(context));
    AddPage("Publishing", new FormPage(context, SetupFields::kPublishing));
    AddPage("FTP accounts", new AccountPage(context, document_.Ftp(), SetupFields::kFtpAccount,
                                            [this](std::size_t entry, Patience& patience) {
                                                return CheckFtpAccount(
                                                    FtpAccountOf(document_.Record(), entry),
                                                    services_.network, services_.files, patience);
                                            }));
    AddPage("Mail accounts", new AccountPage(context, document_.Mail(), SetupFields::kMailAccount,
                                             [this](std::size_t entry, Patience& patience) {
                                                 return CheckMailAccount(
                                                     SmtpAccountOf(document_.Record(), entry),
                                                     services_.network, services_.files, patience);
                                             }));
    AddPage("Interface", new FormPage(context, SetupFields::kInterface));

    auto* middle = new QHBoxLayout;
    middle->setSpacing(kDialogMargin);
    middle->addWidget(titles_);
    middle->addWidget(stack_, 1);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(kDialogMargin - 4, kDialogMargin, kDialogMargin - 4, kDialogMargin);
    page->setSpacing(kDialogGap);
    page->addLayout(middle, 1);
    page->addWidget(NewHairline());
    page->addWidget(MakeButtons());

    connect(titles_, &QListWidget::currentRowChanged, this, [this](int row) { ShowPage(row); });
    titles_->setCurrentRow(0);
    titles_->setFocus();
    const auto turn = [this](int by) {
        const int row = titles_->currentRow() + by;
        if (row >= 0 && row < titles_->count()) titles_->setCurrentRow(row);
    };
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown), this, [turn] { turn(1); });
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp), this, [turn] { turn(-1); });
    new QShortcut(QKeySequence::Save, this, [this] { (void)Apply(); });
    ShowState();
    LookAround();
    FitToDisplay(*this);
}

SetupContext SetupWindow::Context() {
    FieldChoices choices = services_.devices;
    choices.equalizerSets = [this] {
        QStringList names;
        for (const EqualizerSet& set : document_.Record().Preset)
            if (!set.name.empty()) names.append(ToQt(set.name));
        return names;
    };
    return {.document = document_,
            .choices = std::move(choices),
            .edited = [this](const std::string& setting) { Edited(setting); }};
}

void SetupWindow::AddPage(const char* title, SetupPage* page) {
    auto* item = new QListWidgetItem(QString::fromLatin1(title), titles_);
    item->setData(Qt::UserRole, item->text());  // without a mark of faults
    item->setSizeHint({kTitlesWidth, kTitleHeight});
    stack_->addWidget(page);
    pages_.push_back(page);
}

QWidget* SetupWindow::MakeButtons() {
    auto* part = new QWidget;
    part->setMinimumHeight(kTwoLines);  // whether the state is told in one or two
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kDialogGap);
    const auto button = [&](const char* text, void (*clicked)(SetupWindow&)) {
        auto* made = new QPushButton(QString::fromUtf8(text));
        connect(made, &QPushButton::clicked, this, [this, clicked] { clicked(*this); });
        row->addWidget(made);
        return made;
    };
    button("Import\u2026", [](SetupWindow& window) { window.Import(); });
    button("Export\u2026", [](SetupWindow& window) { window.Export(); });
    state_ = NewLegend({});
    state_->setWordWrap(true);
    row->addWidget(state_, 1);
    cancel_ = button("Cancel", [](SetupWindow& window) {
        window.document_.Load();
        window.close();
    });
    apply_ = button("Apply", [](SetupWindow& window) { (void)window.Apply(); });
    QPushButton* const save = button("Save", [](SetupWindow& window) {
        if (window.Apply()) window.close();
    });
    save->setDefault(true);  // its look: Enter in a field saves nothing
    return part;
}

void SetupWindow::ShowPage(int page) {
    pages_[static_cast<std::size_t>(page)]->ShowValues();
    stack_->setCurrentIndex(page);
    ShowFaults();
}

void SetupWindow::Edited(const std::string& setting) {
    if (!setting.empty()) touched_.insert(setting);
    state_->clear();
    ShowState();
}

void SetupWindow::ShowState() {
    const bool changed = document_.IsChanged();
    apply_->setEnabled(changed);
    setWindowModified(changed);
    cancel_->setText(changed ? QStringLiteral("Cancel") : QStringLiteral("Close"));
    ShowFaults();
}

/// Faults of an account that is just being typed wait until its field was edited.
void SetupWindow::ShowFaults() {
    faults_ = CheckSettings(document_.Record());
    std::vector<SettingsFault> shown;
    for (const SettingsFault& fault : faults_) {
        const bool account =
            fault.setting.starts_with("Ftp[") || fault.setting.starts_with("Smtp[");
        if (showAllFaults_ || !account || touched_.contains(fault.setting)) shown.push_back(fault);
    }
    if (faults_.empty()) showAllFaults_ = false;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const bool wrong = pages_[i]->ShowFaults(shown);
        QListWidgetItem* const item = titles_->item(static_cast<int>(i));
        const QString title = item->data(Qt::UserRole).toString();
        item->setText(wrong ? title + QStringLiteral("  \u26a0") : title);
    }
}

bool SetupWindow::GoToFirstFault() {
    showAllFaults_ = true;
    ShowFaults();
    const std::vector<SettingsFault> faults = faults_;  // they are looked for again on the way
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        for (const SettingsFault& fault : faults) {
            if (!pages_[i]->FocusOn(fault.setting)) continue;
            titles_->setCurrentRow(static_cast<int>(i));
            (void)pages_[i]->FocusOn(fault.setting);  // now that it is seen
            ShowFaults();
            return true;
        }
    }
    return false;
}

bool SetupWindow::Apply() {
    faults_ = CheckSettings(document_.Record());
    if (!faults_.empty()) {
        (void)GoToFirstFault();
        state_->setText(QStringLiteral("Not saved: something is not right yet."));
        return false;
    }
    if (!MayOverwrite()) return false;
    if (!document_.Save()) {
        state_->setText(QStringLiteral("Not saved."));
        return false;
    }
    touched_.clear();
    ShowState();
    state_->setText(services_.isEditorOpen()
                        ? QStringLiteral("Saved. Orma Edit is open: it reads the settings when it "
                                         "starts next.")
                        : QStringLiteral("Saved."));
    return true;
}

/// Somebody else may have written the configuration in between.
bool SetupWindow::MayOverwrite() {
    if (!document_.IsChangedOnDisk()) return true;
    const QScopedValueRollback asking(asking_, true);
    QMessageBox box(QMessageBox::Question, kTitle,
                    QStringLiteral("The settings were changed by another program meanwhile."),
                    QMessageBox::NoButton, this);
    box.setInformativeText(
        QStringLiteral("Replace them by yours, or load them and lose your changes?"));
    const auto* replace = box.addButton(QStringLiteral("Replace"), QMessageBox::AcceptRole);
    const auto* load = box.addButton(QStringLiteral("Load"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    if (box.clickedButton() == load) Reload();
    return box.clickedButton() == replace;
}

void SetupWindow::Reload() {
    document_.Load();
    touched_.clear();
    showAllFaults_ = false;
    for (SetupPage* page : pages_)
        page->ShowValues();
    ShowState();
}

/// Sees what others did while this window was not looked at.
void SetupWindow::LookAround() {
    if (asking_ || QApplication::activeModalWidget() != nullptr) return;
    if (document_.IsChangedOnDisk()) {
        if (document_.IsChanged()) {
            state_->setText(QStringLiteral("Another program changed the settings meanwhile."));
            return;
        }
        Reload();
        state_->setText(QStringLiteral("Loaded again: another program changed the settings."));
    } else if (state_->text().isEmpty() && services_.isEditorOpen()) {
        state_->setText(
            QStringLiteral("Orma Edit is open: it reads the settings when it starts next."));
    }
}

/// `patienceMs`: how long an answer is waited for; 0: for ever.
SetupWindow::Fate SetupWindow::AskForChanges(const QString& text, int patienceMs) {
    const QScopedValueRollback asking(asking_, true);
    QMessageBox box(QMessageBox::Question, kTitle, text, QMessageBox::NoButton, this);
    const auto* save = box.addButton(QStringLiteral("Save"), QMessageBox::AcceptRole);
    const auto* drop = box.addButton(QStringLiteral("Don't save"), QMessageBox::DestructiveRole);
    QPushButton* const keep =
        box.addButton(QStringLiteral("Go on editing"), QMessageBox::RejectRole);
    box.setDefaultButton(keep);
    box.setEscapeButton(keep);
    bool answered = true;
    if (patienceMs > 0)
        QTimer::singleShot(patienceMs, &box, [&] {
            answered = false;
            box.done(QMessageBox::NoButton);
        });
    box.exec();
    if (!answered) return Fate::kUnanswered;
    if (box.clickedButton() == save) return Apply() ? Fate::kSaved : Fate::kKept;
    if (box.clickedButton() != drop) return Fate::kKept;
    document_.Load();
    return Fate::kDropped;
}

void SetupWindow::closeEvent(QCloseEvent* event) {
    if (!document_.IsChanged() ||
        AskForChanges(QStringLiteral("Save the changes?")) != Fate::kKept) {
        event->accept();
        return;
    }
    event->ignore();
}

bool SetupWindow::EndOnRequest(int patienceMs) {
    if (!document_.IsChanged()) return true;
    if (ending_) return false;  // the question stands already, and will end by itself
    Fate fate = Fate::kUnanswered;
    if (auto* const test = dynamic_cast<ConnectionWait*>(QApplication::activeModalWidget()))
        test->reject();
    if (!asking_ && QApplication::activeModalWidget() == nullptr) {
        const QScopedValueRollback ending(ending_, true);
        Raise();
        fate =
            AskForChanges(QStringLiteral("The program is to end. Save the changes?"), patienceMs);
    }
    if (fate == Fate::kUnanswered) SaveUnasked();
    return fate != Fate::kKept;
}

void SetupWindow::SaveUnasked() {
    if (CheckSettings(document_.Record()).empty() && !document_.IsChangedOnDisk())
        (void)document_.Save();
}

void SetupWindow::CloseOnRequest() {
    const bool busy = asking_ || QApplication::activeModalWidget() != nullptr;
    if (!busy && !document_.IsChanged()) {
        close();
        return;
    }
    Raise();
    const QString told = QStringLiteral(
        "Orma Edit has started with the settings as they were "
        "saved last.");
    state_->setText(told);
    if (busy) return;
    const Fate fate = AskForChanges(told + QStringLiteral("\nSave your changes, for its next "
                                                          "start?"));
    if (fate != Fate::kKept) close();
}

void SetupWindow::Raise() {
    if (isMinimized()) showNormal();
    raise();
    activateWindow();
    QApplication::alert(this);  // the window that asked may open above this one
}

void SetupWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) LookAround();
}

void SetupWindow::Tell(const QString& text) const {
    services_.files.report.ShowError(FromQt(text));
}

void SetupWindow::Import() {
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Import settings"), {},
                                                      QString::fromLatin1(kJsonFiles));
    if (path.isEmpty()) return;
    std::ifstream file(QFile::encodeName(path).toStdString());
    if (!file) {
        Tell(QStringLiteral("Cannot read %1").arg(path));
        return;
    }
    if (const std::string refusal = document_.Import(file); !refusal.empty()) {
        Tell(QStringLiteral("Nothing was imported: %1").arg(QString::fromStdString(refusal)));
        return;
    }
    for (SetupPage* page : pages_)
        page->ShowValues();
    ShowState();
    state_->setText(QStringLiteral("Imported, not saved yet."));
}

void SetupWindow::Export() {
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export settings"),
                                                      QStringLiteral("settings.json"),
                                                      QString::fromLatin1(kJsonFiles));
    if (path.isEmpty()) return;
    const auto secrets = QMessageBox::question(
        this, kTitle, QStringLiteral("Export the passwords as well, readable as they are?"),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
    if (secrets == QMessageBox::Cancel) return;
    const std::string json = document_.Export(secrets == QMessageBox::Yes) + "\n";
    FileReplacement replacement(services_.files, PathFromQt(path));
    replacement.Stream().Write(json.data(), static_cast<std::uint32_t>(json.size()));
    if (replacement.Commit()) state_->setText(QStringLiteral("Exported."));
}

}  // namespace orma
