#include "window/setup/account_page.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/qt_text.h"
#include "window/setup/connection_wait.h"
#include "window/setup/setup_look.h"

namespace orma {
namespace {

constexpr int kListWidth = 170;  // pixels
constexpr int kLineHeight = 26;

}  // namespace

AccountPage::AccountPage(const SetupContext& context, AccountList& accounts, SetupFields rows,
                         Try connection)
    : context_(context), accounts_(accounts), try_(std::move(connection)) {
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(2, 2, 0, 0);
    page->setSpacing(kDialogGap);
    inUse_ = new QComboBox;
    inUse_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    inUse_->setAccessibleName(QStringLiteral("Account in use"));
    connect(inUse_, &QComboBox::activated, this, [this](int line) { UseLine(line); });
    auto* use = new QHBoxLayout;
    use->setContentsMargins(0, 0, kDialogMargin, 0);
    use->setSpacing(kDialogGap);
    use->addWidget(NewLegend(QStringLiteral("Account in use")));
    use->addWidget(inUse_, 1);
    page->addLayout(use);
    useFault_ = NewFault();
    page->addWidget(useFault_);
    page->addWidget(NewHairline());

    auto* both = new QHBoxLayout;
    both->setSpacing(kDialogMargin);
    both->addWidget(MakeList());
    both->addWidget(MakeAccount(rows), 1);
    page->addLayout(both, 1);
    ShowValues();
}

QWidget* AccountPage::MakeList() {
    auto* part = new QWidget;
    part->setFixedWidth(kListWidth);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, kDialogGap);
    column->setSpacing(kDialogGap - 2);
    list_ = new QListWidget;
    list_->setAccessibleName(QStringLiteral("Accounts"));
    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row < 0) return;
        entry_ = static_cast<std::size_t>(row);
        ShowAccount();
        context_.edited({});  // its faults are to be seen
    });
    column->addWidget(list_, 1);

    const auto button = [this](const char* text, const char* told, void (*clicked)(AccountPage&)) {
        auto* made = new QPushButton(QString::fromUtf8(text));
        made->setAccessibleName(QString::fromUtf8(told));
        made->setStyleSheet(
            QStringLiteral("min-width: 30px; padding-left: 8px; padding-right: 8px"));
        connect(made, &QPushButton::clicked, this, [this, clicked] { clicked(*this); });
        return made;
    };
    add_ = button("Add", "Add an account", [](AccountPage& page) { page.Add(); });
    remove_ = button("Remove", "Remove this account", [](AccountPage& page) { page.Remove(); });
    up_ = button("Up", "Move this account up", [](AccountPage& page) { page.Move(-1); });
    down_ = button("Down", "Move this account down", [](AccountPage& page) { page.Move(1); });
    const std::pair<QPushButton*, QPushButton*> pairs[] = {{add_, remove_}, {up_, down_}};
    for (const auto& [left, right] : pairs) {
        auto* row = new QHBoxLayout;
        row->setSpacing(kDialogGap - 2);
        row->addWidget(left, 1);
        row->addWidget(right, 1);
        column->addLayout(row);
    }
    return part;
}

QWidget* AccountPage::MakeAccount(SetupFields rows) {
    auto* contents = new QWidget;
    auto* column = new QVBoxLayout(contents);
    column->setContentsMargins(0, 0, kDialogMargin, kDialogGap);
    column->setSpacing(kDialogGap);
    form_ =
        new SetupForm(context_.document, rows, context_.choices,
                      [this](const std::string& setting) { Edited(setting); }, {.labelWidth = 76});
    column->addWidget(form_);
    test_ = new QPushButton(QStringLiteral("Test"));
    test_->setAccessibleDescription(QStringLiteral("Tries to log in with what stands here."));
    connect(test_, &QPushButton::clicked, this, [this] { Test(); });
    verdict_ = new QLabel;
    verdict_->setTextFormat(Qt::PlainText);
    verdict_->setWordWrap(true);
    verdict_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* row = new QHBoxLayout;
    row->setSpacing(kDialogGap);
    row->addWidget(test_, 0, Qt::AlignTop);
    row->addWidget(verdict_, 1);
    column->addLayout(row);
    column->addStretch(1);
    account_ = Scrolling(contents);

    none_ = NewLegend(QStringLiteral("No account yet: \u201cAdd\u201d makes one."));
    none_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    none_->setMargin(kDialogMargin * 2);
    auto* part = new QWidget;
    auto* stack = new QVBoxLayout(part);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addWidget(none_);
    stack->addWidget(account_, 1);
    return part;
}

void AccountPage::ShowValues() {
    entry_ = accounts_.Count() == 0 ? 0 : std::min(entry_, accounts_.Count() - 1);
    ShowList();
    ShowAccount();
}

void AccountPage::ShowList() {
    const QSignalBlocker quiet(list_);
    list_->clear();
    for (std::size_t i = 0; i < accounts_.Count(); ++i) {
        const Text& title = accounts_.Title(i);
        auto* item =
            new QListWidgetItem(title.empty() ? QStringLiteral("(no name)") : ToQt(title), list_);
        item->setSizeHint({0, kLineHeight});
    }
    list_->setCurrentRow(accounts_.Count() == 0 ? -1 : static_cast<int>(entry_));
    ShowInUse();
}

void AccountPage::ShowInUse() {
    const QSignalBlocker quiet(inUse_);
    inUse_->clear();
    for (std::size_t i = 0; i < accounts_.Count(); ++i)
        inUse_->addItem(list_->item(static_cast<int>(i))->text());
    const AccountList::InUse use = accounts_.Use();
    if (use == AccountList::InUse::kOther)
        inUse_->addItem(QStringLiteral("%1 (not in this list)").arg(ToQt(accounts_.OtherTitle())));
    inUse_->setPlaceholderText(QStringLiteral("(none)"));
    inUse_->setEnabled(inUse_->count() > 0);
    inUse_->setCurrentIndex(use == AccountList::InUse::kNone ? -1
                            : use == AccountList::InUse::kEntry
                                ? static_cast<int>(accounts_.EntryInUse())
                                : inUse_->count() - 1);
}

void AccountPage::ShowAccount() {
    const bool any = accounts_.Count() > 0;
    if (any) form_->ShowValues(accounts_.Prefix(entry_));
    verdict_->clear();
    // A button that goes out while it has the keyboard leaves it in its neighbourhood.
    QWidget* const focus = focusWidget();
    add_->setEnabled(accounts_.Count() < accounts_.Capacity());
    remove_->setEnabled(any);
    up_->setEnabled(any && entry_ > 0);
    down_->setEnabled(any && entry_ + 1 < accounts_.Count());
    if (focus != nullptr && !focus->isEnabled()) list_->setFocus();
    none_->setVisible(!any);
    account_->setVisible(any);
}

void AccountPage::Add() {
    entry_ = accounts_.Count();
    accounts_.Add();
    ShowValues();
    form_->FocusOnFirst();
    context_.edited({});
}

void AccountPage::Remove() {
    const QString title = list_->item(static_cast<int>(entry_))->text();
    const auto answer = QMessageBox::question(
        this, QStringLiteral("Remove an account"),
        QStringLiteral("Remove the account \u201c%1\u201d?").arg(title.toHtmlEscaped()),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer != QMessageBox::Yes) return;
    accounts_.Remove(entry_);
    ShowValues();
    context_.edited({});
    ShowInUse();  // another one may be now
}

void AccountPage::Move(int by) {
    const std::size_t other = by < 0 ? entry_ - 1 : entry_ + 1;
    accounts_.Swap(entry_, other);
    entry_ = other;
    ShowValues();
    context_.edited({});
}

void AccountPage::UseLine(int line) {
    if (static_cast<std::size_t>(line) >= accounts_.Count()) return;  // the one outside the list
    accounts_.UseEntry(static_cast<std::size_t>(line));
    ShowInUse();
    context_.edited({});
}

void AccountPage::Edited(const std::string& setting) {
    verdict_->clear();  // it was about another account
    ShowList();
    context_.edited(setting);
}

bool AccountPage::ShowFaults(std::span<const SettingsFault> faults) {
    form_->ShowFaults(faults);
    const auto use = std::find_if(faults.begin(), faults.end(), [&](const SettingsFault& fault) {
        return fault.setting == accounts_.NameInUse();
    });
    useFault_->setVisible(use != faults.end());
    if (use != faults.end()) useFault_->setText(QString::fromStdString(use->text));
    const std::string prefix = accounts_.Prefix(0);
    const std::string table = prefix.substr(0, prefix.find('[') + 1);
    return use != faults.end() ||
           std::any_of(faults.begin(), faults.end(), [&](const SettingsFault& fault) {
               return fault.setting.starts_with(table);
           });
}

bool AccountPage::FocusOn(const std::string& setting) {
    if (setting == accounts_.NameInUse()) {
        inUse_->setFocus();
        return true;
    }
    for (std::size_t i = 0; i < accounts_.Count(); ++i) {
        if (!setting.starts_with(accounts_.Prefix(i))) continue;
        entry_ = i;
        ShowValues();
    }
    return accounts_.Count() > 0 && form_->FocusOn(setting);
}

void AccountPage::Test() {
    verdict_->clear();
    ConnectionWait wait(QStringLiteral("Logging in at %1 \u2026")
                            .arg(list_->item(static_cast<int>(entry_))->text()),
                        window());
    const ConnectionVerdict verdict = try_(entry_, wait);
    wait.hide();
    test_->setFocus();
    ShowVerdict(verdict);
}

void AccountPage::ShowVerdict(const ConnectionVerdict& verdict) {
    SetColour(*verdict_, verdict.end == ConnectionVerdict::End::kOk ? look::kRight : look::kWrong);
    verdict_->setText(ToQt(verdict.words));
    verdict_->setAccessibleName(verdict_->text());
    // It may have made the page longer.
    QTimer::singleShot(0, verdict_, [this] { account_->ensureWidgetVisible(verdict_); });
}

}  // namespace orma
