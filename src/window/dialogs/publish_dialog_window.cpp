#include "window/dialogs/publish_dialog_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStandardItemModel>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/image_list_view.h"
#include "window/dialogs/qt_text.h"
#include "window/dialogs/thumbnail.h"

namespace orma {
namespace {

constexpr int kMaxCharacters = static_cast<int>(EmailDialog::kMaxCharacters);
constexpr int kWidth = 440;

/// The order of the tab key: down the dialog, whatever the order of its table is.
constexpr DialogRole kTabOrder[] = {
    DialogRole::kServer,    DialogRole::kRecipient, DialogRole::kSubject, DialogRole::kAttach,
    DialogRole::kImages,    DialogRole::kAdd,       DialogRole::kRemove,  DialogRole::kClear,
    DialogRole::kKeepNames, DialogRole::kStart,     DialogRole::kCancel};

/// What a screen reader calls a control whose table has no word for it.
QString NameOf(DialogRole role) {
    switch (role) {
        case DialogRole::kInfo:
            return QStringLiteral("Size of the mail");
        case DialogRole::kAttach:
            return QStringLiteral("Send images and videos");
        case DialogRole::kImages:
            return QStringLiteral("Images and videos");
        default:
            return {};
    }
}

}  // namespace

PublishDialogWindow::PublishDialogWindow(EmailDialog& model, QWidget* parent)
    : PublishDialogWindow(
          {.resource = model.Resource(),
           .images = model.Images(),
           .servers = model.Servers(),
           .recipients = model.Recipients(),
           .initial = model.Initial(),
           .info = [&model] { return model.InfoText(); },
           .start = [&model](const EmailFields& fields) { return model.Start(fields); }},
          parent) {}

PublishDialogWindow::PublishDialogWindow(FtpDialog& model, QWidget* parent)
    : PublishDialogWindow(
          {.resource = model.Resource(),
           .images = model.Images(),
           .servers = model.Servers(),
           .recipients = {},
           .initial = {.server = model.Initial().server, .keepNames = model.Initial().keepNames},
           .info = {},
           .start =
               [&model](const EmailFields& fields) {
                   model.Start({.server = fields.server, .keepNames = fields.keepNames});
                   return true;
               }},
          parent) {}

PublishDialogWindow::PublishDialogWindow(PublishDialogParts parts, QWidget* parent)
    : QDialog(parent), parts_(std::move(parts)) {
    setWindowTitle(ToQt(parts_.resource.title));
    for (const DialogControl& control : parts_.resource.controls) {
        QWidget* const widget = Make(control);
        const QString label = ToQt(control.label);
        widget->setParent(this);
        widget->setObjectName(QString::number(control.id));
        widget->setAccessibleName(label.isEmpty() ? NameOf(control.role)
                                                  : QString(label).replace('\n', ' '));
    }
    Arrange();
    OrderTabs();
    if (images_ != nullptr) ShowImages();
    if (info_ != nullptr) info_->setText(ToQt(parts_.info()));
    FitToDisplay(*this);
}

// Controls

QWidget* PublishDialogWindow::Make(const DialogControl& control) {
    const QString label = ToQt(control.label);
    switch (control.role) {
        case DialogRole::kInfo:
            return info_ = NewLegend({});
        case DialogRole::kServer:
            return MakeServers();
        case DialogRole::kRecipient:
            return MakeRecipients();
        case DialogRole::kSubject:
            subject_ = new QLineEdit(ToQt(parts_.initial.subject));
            subject_->setMaxLength(kMaxCharacters);
            subject_->setCursorPosition(0);
            return subject_;
        case DialogRole::kAttach:
            attach_ = new QCheckBox(label.isEmpty() ? NameOf(control.role) : label);
            connect(attach_, &QCheckBox::clicked, this, [this](bool on) {
                parts_.images.Attach(on);
                ShowImages();
            });
            return attach_;
        case DialogRole::kAdd:
            return MakeButton(control, &PublishDialogWindow::ChooseImages);
        case DialogRole::kRemove:
            return remove_ = MakeButton(control, &PublishDialogWindow::RemoveImage);
        case DialogRole::kClear:
            return clear_ = MakeButton(control, &PublishDialogWindow::ClearImages);
        case DialogRole::kKeepNames:
            keepNames_ = new QCheckBox(label);
            keepNames_->setChecked(parts_.initial.keepNames);
            return keepNames_;
        case DialogRole::kImages:
            return MakeImages();
        case DialogRole::kStart: {
            QPushButton* const start = MakeButton(control, &PublishDialogWindow::Start);
            start->setDefault(true);
            return start;
        }
        case DialogRole::kCancel: {
            auto* cancel = new QPushButton(label);
            connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
            return cancel;
        }
    }
    return new QWidget;
}

/// A line without an account cannot be chosen. Where no line is selected the box shows the name in
/// use, and Start keeps that account.
QWidget* PublishDialogWindow::MakeServers() {
    servers_ = new QComboBox;
    const AccountChoices& choices = parts_.servers;
    auto* model = new QStandardItemModel(servers_);
    for (const AccountChoice& line : choices.lines) {
        auto* item = new QStandardItem(ToQt(line.name));
        item->setEnabled(line.entry.has_value());
        model->appendRow(item);
    }
    servers_->setModel(model);
    servers_->setPlaceholderText(ToQt(choices.text));
    servers_->setCurrentIndex(choices.selected ? static_cast<int>(*choices.selected) : -1);
    servers_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return servers_;
}

QWidget* PublishDialogWindow::MakeRecipients() {
    recipients_ = new QComboBox;
    recipients_->setEditable(true);
    recipients_->setInsertPolicy(QComboBox::NoInsert);
    recipients_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    QStringList addresses;
    for (const Text& recipient : parts_.recipients) {
        recipients_->addItem(ToQt(recipient));
        if (IsMailAddress(recipient)) addresses.append(ToQt(recipient));
    }
    // Without the lines that only stand for an address.
    auto* completer = new QCompleter(addresses, recipients_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    recipients_->setCompleter(completer);
    recipients_->lineEdit()->setMaxLength(kMaxCharacters);
    recipients_->setEditText(ToQt(parts_.initial.recipient));
    recipients_->lineEdit()->selectAll();
    return recipients_;
}

QWidget* PublishDialogWindow::MakeImages() {
    images_ = new ImageListView;
    images_->onDropped = [this](const QStringList& paths) { AddImages(paths); };
    images_->onDelete = [this] { RemoveImage(); };
    connect(images_, &QListWidget::itemSelectionChanged, this, [this] { ShowMarked(); });
    return images_;
}

QPushButton* PublishDialogWindow::MakeButton(const DialogControl& control,
                                             void (PublishDialogWindow::*clicked)()) {
    auto* button = new QPushButton(ToQt(control.label));
    button->setAutoDefault(false);  // the Enter key is Start's, whichever was pressed last
    connect(button, &QPushButton::clicked, this, clicked);
    return button;
}

QWidget* PublishDialogWindow::Of(DialogRole role) const {
    for (const DialogControl& control : parts_.resource.controls)
        if (control.role == role) return findChild<QWidget*>(QString::number(control.id));
    return nullptr;
}

// Arrangement: fields, images with their buttons beside them, and a last line with the size of the
// mail and the buttons that end the dialog.

void PublishDialogWindow::Arrange() {
    QVBoxLayout* const page = NewPage(*this);

    auto* fields = new QFormLayout;
    fields->setHorizontalSpacing(kDialogMargin);
    fields->setVerticalSpacing(kDialogGap);
    fields->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    fields->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (const DialogControl& control : parts_.resource.controls) {
        const bool field = control.role == DialogRole::kServer ||
                           control.role == DialogRole::kRecipient ||
                           control.role == DialogRole::kSubject;
        if (!field) continue;
        QLabel* const label = NewLegend(ToQt(control.label));
        label->setBuddy(Of(control.role));
        fields->addRow(label, Of(control.role));
    }
    const bool hasFields = fields->rowCount() > 0;
    page->addLayout(fields);

    if (images_ != nullptr) {
        if (hasFields) page->addWidget(NewHairline());
        if (attach_ != nullptr) page->addWidget(attach_);
        auto* buttons = new QVBoxLayout;
        buttons->setSpacing(kDialogGap - 2);
        for (const DialogRole role : {DialogRole::kAdd, DialogRole::kRemove, DialogRole::kClear})
            if (QWidget* button = Of(role)) buttons->addWidget(button);
        buttons->addStretch();
        if (keepNames_ != nullptr) buttons->addWidget(keepNames_);
        auto* list = new QHBoxLayout;
        list->setSpacing(kDialogGap);
        list->addWidget(images_, 1);
        list->addLayout(buttons);
        page->addLayout(list, 1);
    } else {
        page->addStretch(1);
    }

    auto* last = new QHBoxLayout;
    last->setSpacing(kDialogGap);
    if (info_ != nullptr) last->addWidget(info_);
    last->addStretch(1);
    for (const DialogRole role : {DialogRole::kStart, DialogRole::kCancel})
        if (QWidget* button = Of(role)) last->addWidget(button);
    page->addSpacing(kDialogGap / 2);
    page->addLayout(last);
    setMinimumWidth(std::min(kWidth, screen()->availableSize().width()));
}

void PublishDialogWindow::OrderTabs() {
    QWidget* before = nullptr;
    for (const DialogRole role : kTabOrder) {
        QWidget* const widget = Of(role);
        if (widget == nullptr) continue;
        if (before != nullptr)
            setTabOrder(before, widget);
        else
            widget->setFocus();
        before = widget;
    }
    if (recipients_ != nullptr) recipients_->setFocus();
}

// Images

void PublishDialogWindow::ChooseImages() {
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, QStringLiteral("Open image/video"), PathToQt(parts_.images.Folder()), ImageFilters());
    AddImages(paths);
}

void PublishDialogWindow::AddImages(const QStringList& paths) {
    if (images_ == nullptr) return;
    for (const QString& path : paths) {
        const bool added = parts_.images.Add(PathFromQt(path));
        // A full list says so once.
        if (!added && parts_.images.List().Count() >= ImageList::kCapacity) break;
    }
    ShowImages();
    images_->setCurrentRow(images_->count() - 1);
}

void PublishDialogWindow::RemoveImage() {
    if (images_->Marked() < 0) return;
    parts_.images.Remove(static_cast<std::size_t>(images_->Marked()));
    ShowImages();
}

void PublishDialogWindow::ClearImages() {
    parts_.images.Clear();
    ShowImages();
}

void PublishDialogWindow::ShowImages() {
    images_->ShowImages(parts_.images.List().Images());
    if (attach_ != nullptr) attach_->setChecked(parts_.images.Attached());
    if (info_ != nullptr) info_->setText(ToQt(parts_.info()));
    ShowMarked();
}

void PublishDialogWindow::ShowMarked() {
    // The key that was just used keeps the keyboard's focus in its neighbourhood when it goes out.
    const bool any = images_->count() > 0;
    const bool marked = images_->Marked() >= 0;
    if ((!marked && remove_->hasFocus()) || (!any && clear_->hasFocus())) images_->setFocus();
    remove_->setEnabled(marked);
    clear_->setEnabled(any);
}

// Start

EmailFields PublishDialogWindow::Fields() const {
    EmailFields fields = parts_.initial;
    if (recipients_ != nullptr) fields.recipient = FromQt(recipients_->currentText());
    if (subject_ != nullptr) fields.subject = FromQt(subject_->text());
    if (keepNames_ != nullptr) fields.keepNames = keepNames_->isChecked();
    if (servers_ != nullptr) {
        fields.server.reset();
        if (servers_->currentIndex() >= 0)
            fields.server = static_cast<std::size_t>(servers_->currentIndex());
    }
    return fields;
}

void PublishDialogWindow::Start() {
    if (parts_.start(Fields())) {
        accept();
    } else if (recipients_ != nullptr) {
        recipients_->setFocus();
        recipients_->lineEdit()->selectAll();
    }
}

}  // namespace orma
