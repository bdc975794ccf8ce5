#include "cli/option_dialogs.h"

#include <algorithm>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "cli/globals.h"

namespace orma::cli {

void AddDialogOptions(CLI::App& command, DialogOptions& options) {
    command
        .add_option("--account", options.account,
                    "FTP destination or mail account by its name ('orma accounts list')")
        ->type_name("NAME");
    command.add_option("--recipient", options.recipient, "Mail address of the recipient")
        ->type_name("ADDRESS");
    command.add_option("--subject", options.subject, "Subject of the mail")->type_name("TEXT");
    command.add_option("--image", options.images, "Image or video to send; may be repeated")
        ->type_name("FILE");
    command.add_flag("--keep-names", options.keepNames, "Images sent alone keep their names");
}

void UseAccount(const DialogOptions& options, SettingsRecord& settings) {
    if (options.account.empty()) return;
    const Text name = FromUtf8(options.account);
    const bool mail = settings.PublishMethod != 0;
    const AccountChoices choices = mail ? SmtpChoices(settings) : FtpChoices(settings);
    const auto entry = choices.EntryAt(choices.Find(name));
    if (!entry)
        throw std::runtime_error(std::string("no ") + (mail ? "mail account" : "FTP destination") +
                                 " is named " + options.account);
    if (mail)
        UseSmtpEntry(settings, *entry);
    else
        UseFtpEntry(settings, *entry);
}

OptionDialogs::OptionDialogs(const DialogOptions& options, const SettingsRecord& settings)
    : options_(options), settings_(settings) {
    std::transform(options.images.begin(), options.images.end(), std::back_inserter(images_),
                   CallerPath);
}

bool OptionDialogs::AddImages(DialogImages& images) {
    return std::all_of(images_.begin(), images_.end(),
                       [&](const Text& path) { return images.Add(path); });
}

bool OptionDialogs::ShowEmailDialog(EmailDialog& dialog) {
    if (!AddImages(dialog.Images())) return false;
    EmailFields fields = dialog.Initial();
    // Not what a window would offer: nobody sees it, and the mail would go to whoever was last.
    fields.server.reset();
    fields.recipient =
        options_.recipient.empty() ? settings_.Recipient : FromUtf8(options_.recipient);
    if (!options_.subject.empty()) fields.subject = FromUtf8(options_.subject);
    fields.keepNames |= options_.keepNames;
    return dialog.Start(fields);
}

bool OptionDialogs::ShowFtpDialog(FtpDialog& dialog) {
    if (!AddImages(dialog.Images())) return false;
    FtpFields fields = dialog.Initial();
    fields.server.reset();  // the destination in use, which --account has chosen by now
    fields.keepNames |= options_.keepNames;
    dialog.Start(fields);
    return true;
}

}  // namespace orma::cli
