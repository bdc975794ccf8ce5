#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "settings/settings_record.h"

namespace orma {

/// Whether a place of the settings' table holds an account: something was typed into it.
[[nodiscard]] bool IsUsed(const FtpDestination& entry);
[[nodiscard]] bool IsUsed(const SmtpDestination& entry);

/// A table of accounts as a list without gaps, and which of them is in use, whose name and data the
/// record also keeps on their own. UI thread.
class AccountList {
  public:
    enum class InUse {
        kNone,
        kEntry,  // one of the list
        kOther,  // what the record keeps is in no entry; it stays as it is
    };

    virtual ~AccountList() = default;

    /// How many accounts there are, and can be.
    [[nodiscard]] std::size_t Count() const { return count_; }
    [[nodiscard]] virtual std::size_t Capacity() const = 0;

    /// What the settings of an account begin with: "Ftp[3].".
    [[nodiscard]] virtual std::string Prefix(std::size_t entry) const = 0;

    /// Under what name an account is known; its server where it has none.
    [[nodiscard]] virtual const Text& Title(std::size_t entry) const = 0;

    /// The setting that names the account in use.
    [[nodiscard]] virtual std::string_view NameInUse() const = 0;

    [[nodiscard]] InUse Use() const { return use_; }
    [[nodiscard]] std::size_t EntryInUse() const { return entry_; }

    /// What is in use without being in the list.
    [[nodiscard]] virtual const Text& OtherTitle() const = 0;

    /// Appends an empty account, the first of which is in use; below Capacity.
    void Add();

    /// Removes an account. Of FTP the one in use leaves none in use; of mail the first is then.
    void Remove(std::size_t entry);

    /// Exchanges neighbours.
    void Swap(std::size_t entry, std::size_t other);

    void UseEntry(std::size_t entry);

    /// Reads the record: moves accounts together and finds the one in use.
    virtual void Load() = 0;

    /// Brings what the record keeps of the account in use up to date with the list.
    virtual void Store() = 0;

  protected:
    virtual void Clear(std::size_t entry) = 0;
    virtual void Propose(std::size_t /*entry*/) {}  // what a new account begins with
    virtual void Exchange(std::size_t entry, std::size_t other) = 0;

    std::size_t count_ = 0;
    InUse use_ = InUse::kNone;
    std::size_t entry_ = 0;
};

/// What the lists of both kinds do alike with their table of the record.
template <class Table>
class TableAccountList : public AccountList {
  public:
    [[nodiscard]] std::size_t Capacity() const override { return table_.size(); }
    [[nodiscard]] std::string Prefix(std::size_t entry) const override {
        return std::string(name_) + "[" + std::to_string(entry) + "].";
    }
    [[nodiscard]] const Text& Title(std::size_t entry) const override {
        return table_[entry].ShownName();
    }

  protected:
    TableAccountList(SettingsRecord& record, Table& table, std::string_view name)
        : record_(record), table_(table), name_(name) {}

    void Clear(std::size_t entry) override { table_[entry] = {}; }
    void Exchange(std::size_t entry, std::size_t other) override {
        std::swap(table_[entry], table_[other]);
    }

    SettingsRecord& record_;
    Table& table_;

  private:
    std::string_view name_;
};

/// The FTP destinations.
class FtpAccountList : public TableAccountList<decltype(SettingsRecord::Ftp)> {
  public:
    /// `record` outlives the list.
    explicit FtpAccountList(SettingsRecord& record) : TableAccountList(record, record.Ftp, "Ftp") {}

    [[nodiscard]] std::string_view NameInUse() const override { return "CurrentFtpName"; }
    [[nodiscard]] const Text& OtherTitle() const override;
    void Load() override;
    void Store() override;

  private:
    void Propose(std::size_t entry) override { table_[entry].Passive = 1; }
};

/// The mail accounts.
class MailAccountList : public TableAccountList<decltype(SettingsRecord::Smtp)> {
  public:
    /// `record` outlives the list.
    explicit MailAccountList(SettingsRecord& record)
        : TableAccountList(record, record.Smtp, "Smtp") {}

    [[nodiscard]] std::string_view NameInUse() const override { return "CurrentSmtpName"; }
    [[nodiscard]] const Text& OtherTitle() const override;
    void Load() override;
    void Store() override;
};

}  // namespace orma
