#pragma once

#include <QDialog>
#include <functional>
#include <span>

#include "publish/dialogs/email_dialog.h"
#include "publish/dialogs/ftp_dialog.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orma {

class ImageListView;

/// What the window of a publish dialog shows, and what it tells; all of it outlives the window. An
/// FTP dialog has no more fields than an e-mail dialog.
struct PublishDialogParts {
    const DialogResource& resource;
    DialogImages& images;
    const AccountChoices& servers;
    std::span<const Text> recipients;  // of the "To" box
    EmailFields initial;
    std::function<Text()> info;                     // the info line
    std::function<bool(const EmailFields&)> start;  // false: the dialog stays open
};

/// The window of any publish dialog, built from its table of controls: each control is named by its
/// number, bears its label and does what its role is. Accepted once Start succeeded; Cancel, Escape
/// and closing it reject it.
class PublishDialogWindow : public QDialog {
  public:
    /// Over the dialog's model, which outlives it.
    PublishDialogWindow(EmailDialog& model, QWidget* parent);
    PublishDialogWindow(FtpDialog& model, QWidget* parent);

    /// Adds files to the image list, one after the other; each that is refused is reported.
    void AddImages(const QStringList& paths);

  private:
    PublishDialogWindow(PublishDialogParts parts, QWidget* parent);
    QWidget* Make(const DialogControl& control);
    QWidget* MakeServers();
    QWidget* MakeRecipients();
    QWidget* MakeImages();
    QPushButton* MakeButton(const DialogControl& control, void (PublishDialogWindow::*clicked)());
    void Arrange();
    void OrderTabs();
    [[nodiscard]] QWidget* Of(DialogRole role) const;

    void ChooseImages();
    void RemoveImage();
    void ClearImages();
    void ShowImages();
    void ShowMarked();
    void Start();
    [[nodiscard]] EmailFields Fields() const;

    PublishDialogParts parts_;
    QLabel* info_ = nullptr;
    QComboBox* servers_ = nullptr;
    QComboBox* recipients_ = nullptr;
    QLineEdit* subject_ = nullptr;
    QCheckBox* attach_ = nullptr;
    QCheckBox* keepNames_ = nullptr;
    ImageListView* images_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* clear_ = nullptr;
};

}  // namespace orma
