#pragma once

#include "setup/connection_check.h"
#include "window/setup/setup_page.h"

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QScrollArea;

namespace orma {

/// A table of accounts: the list, the account that is marked there, and a button that tries it.
class AccountPage : public SetupPage {
  public:
    /// Tries an entry of the list; blocking.
    using Try = std::function<ConnectionVerdict(std::size_t entry, Patience& patience)>;

    /// `accounts` belongs to the context's document.
    AccountPage(const SetupContext& context, AccountList& accounts, SetupFields rows,
                Try connection);

    void ShowValues() override;
    bool ShowFaults(std::span<const SettingsFault> faults) override;
    bool FocusOn(const std::string& setting) override;

  private:
    QWidget* MakeList();
    QWidget* MakeAccount(SetupFields rows);
    void ShowList();
    void ShowAccount();
    void ShowInUse();
    void ShowVerdict(const ConnectionVerdict& verdict);
    void Add();
    void Remove();
    void Move(int by);
    void UseLine(int line);
    void Edited(const std::string& setting);
    void Test();

    SetupContext context_;
    AccountList& accounts_;
    Try try_;
    std::size_t entry_ = 0;  // marked, when there is any

    QComboBox* inUse_;
    QLabel* useFault_;
    QListWidget* list_;
    QPushButton* add_;
    QPushButton* remove_;
    QPushButton* up_;
    QPushButton* down_;
    QLabel* none_;
    QScrollArea* account_;
    SetupForm* form_;
    QPushButton* test_;
    QLabel* verdict_;
};

}  // namespace orma
