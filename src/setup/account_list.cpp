#include "setup/account_list.h"

#include <algorithm>
#include <utility>

#include "publish/dialogs/account_choices.h"
#include "settings/mail_places.h"

namespace orma {
namespace {

/// Moves the used entries to the front, in their order; returns how many there are.
template <class Table>
std::size_t MoveTogether(Table& table) {
    const auto end = std::stable_partition(table.begin(), table.end(),
                                           [](const auto& entry) { return IsUsed(entry); });
    return static_cast<std::size_t>(end - table.begin());
}

}  // namespace

bool IsUsed(const FtpDestination& entry) {
    return !(entry.Name.empty() && entry.Server.empty() && entry.User.empty() &&
             entry.Password.empty() && entry.Folder.empty());
}

bool IsUsed(const SmtpDestination& entry) {
    return !(entry.Name.empty() && entry.Server.empty() && entry.User.empty() &&
             entry.Password.empty());
}

void AccountList::Add() {
    Clear(count_);
    Propose(count_);
    if (count_ == 0 && use_ == InUse::kNone) UseEntry(0);
    ++count_;
}

void AccountList::Remove(std::size_t entry) {
    for (std::size_t i = entry; i + 1 < count_; ++i)
        Exchange(i, i + 1);
    Clear(--count_);
    if (use_ != InUse::kEntry || entry_ < entry) return;
    if (entry_ == entry)
        use_ = InUse::kNone;
    else
        --entry_;
}

void AccountList::Swap(std::size_t entry, std::size_t other) {
    Exchange(entry, other);
    if (use_ != InUse::kEntry) return;
    if (entry_ == entry)
        entry_ = other;
    else if (entry_ == other)
        entry_ = entry;
}

void AccountList::UseEntry(std::size_t entry) {
    use_ = InUse::kEntry;
    entry_ = entry;
}

const Text& FtpAccountList::OtherTitle() const {
    return record_.FtpServer.empty() ? record_.CurrentFtpName : record_.FtpServer;
}

void FtpAccountList::Load() {
    count_ = MoveTogether(record_.Ftp);
    const SettingsRecord& r = record_;
    use_ = OtherTitle().empty() ? InUse::kNone : InUse::kOther;
    for (std::size_t i = 0; i < count_; ++i) {
        const FtpDestination& entry = r.Ftp[i];
        const bool isSame =
            r.FtpServer.empty() || (entry.Server == r.FtpServer && entry.User == r.FtpUser &&
                                    entry.Password == r.FtpPassword &&
                                    entry.Folder == r.FtpFolder && entry.Passive == r.FtpPassive);
        if (entry.Name.empty() || entry.Name != r.CurrentFtpName || !isSame) continue;
        UseEntry(i);
        break;
    }
}

void FtpAccountList::Store() {
    if (use_ == InUse::kEntry) {
        UseFtpEntry(record_, entry_);
    } else if (use_ == InUse::kNone) {
        record_.CurrentFtpName.clear();
        record_.FtpServer.clear();
        record_.FtpUser.clear();
        record_.FtpPassword.clear();
        record_.FtpFolder.clear();
        record_.FtpPassive = 0;
    }
}

const Text& MailAccountList::OtherTitle() const {
    return record_.CurrentSmtpName;
}

void MailAccountList::Load() {
    count_ = MoveTogether(record_.Smtp);
    use_ = OtherTitle().empty() ? InUse::kNone : InUse::kOther;
    // Without a name the first account is in use: its place in the file is that of the one in use.
    if (use_ == InUse::kNone && count_ > 0) UseEntry(0);
    for (std::size_t i = 0; i < count_; ++i) {
        if (use_ != InUse::kOther || Title(i) != record_.CurrentSmtpName) continue;
        UseEntry(i);
    }
}

/// The name alone tells the choice: the settings in use are those of account 0, which shares their
/// place, as account 1 has its place outside the table.
void MailAccountList::Store() {
    StoreMailPlaces(record_);
    if (use_ == InUse::kNone && count_ > 0) UseEntry(0);
    if (use_ == InUse::kEntry) record_.CurrentSmtpName = Title(entry_);
    if (use_ == InUse::kNone) record_.CurrentSmtpName.clear();
}

}  // namespace orma
