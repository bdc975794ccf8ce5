#pragma once

#include <QWidget>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "setup/connection_check.h"
#include "setup/setup_document.h"
#include "window/setup/setup_page.h"

class QLabel;
class QListWidget;
class QPushButton;
class QStackedWidget;

namespace orma {

/// What the set-up window asks of the program around it; all of it outlives the window.
struct SetupServices {
    FileServices files;
    const NetworkPorts& network;
    Text programFolder;
    FieldChoices devices;                // without equalizerSets
    std::function<bool()> isEditorOpen;  // the editor's window
};

/// The window of the set-up program: pages on the left, the chosen one beside them, and below what
/// happens to the changes. UI thread.
class SetupWindow : public QWidget {
  public:
    explicit SetupWindow(SetupServices services);

    /// Another program asks it to close. Without changes it does; with changes it comes to the
    /// front and asks what becomes of them, for whoever asked does not wait for the answer.
    void CloseOnRequest();

    /// The desktop's session ends, or somebody ends the program: true when it may end now. With
    /// changes it asks first, and takes no answer within `patienceMs` for a Save where nothing
    /// forbids one: nothing is wrong with them and nobody else changed the file. False when the
    /// user goes on editing. What stands behind an open dialog is dealt with without asking.
    [[nodiscard]] bool EndOnRequest(int patienceMs = kPatienceMs);
    static constexpr int kPatienceMs = 8000;  // desktops kill what has not ended a little later

    /// Comes to the front.
    void Raise();

    /// Saves what was changed. False when something is wrong with it, or it could not be written.
    bool Apply();

    [[nodiscard]] SetupDocument& Document() { return document_; }

    [[nodiscard]] QSize sizeHint() const override { return {792, 560}; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    enum class Fate { kSaved, kDropped, kKept, kUnanswered };

    void AddPage(const char* title, SetupPage* page);
    QWidget* MakeButtons();
    [[nodiscard]] SetupContext Context();
    void Reload();
    void ShowPage(int page);
    void Edited(const std::string& setting);
    void ShowState();
    void ShowFaults();
    bool GoToFirstFault();
    void LookAround();
    [[nodiscard]] Fate AskForChanges(const QString& text, int patienceMs = 0);
    void SaveUnasked();
    [[nodiscard]] bool MayOverwrite();
    void Import();
    void Export();
    void Tell(const QString& text) const;

    SetupServices services_;
    SetupDocument document_;
    std::vector<SettingsFault> faults_;
    std::set<std::string> touched_;  // settings that were edited: their faults are shown at once
    bool showAllFaults_ = false;     // after an attempt to save
    bool asking_ = false;
    bool ending_ = false;  // the question that the end of the session asks is open

    QListWidget* titles_;
    QStackedWidget* stack_;
    std::vector<SetupPage*> pages_;
    QLabel* state_;
    QPushButton* apply_;
    QPushButton* cancel_;
};

}  // namespace orma
