#include <map>
#include <optional>

#include <CLI/CLI.hpp>

#include "app/options.h"
#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/option_dialogs.h"
#include "cli/output.h"
#include "cli/progress_line.h"
#include "cli/project_path.h"
#include "platform/posix/console.h"
#include "publish/dialogs/current_accounts.h"
#include "stream/jstream_wr_ftp.h"

namespace orma::cli {
namespace {

struct PublishOptions {
    std::string project;
    bool cliplist = false;
    std::optional<std::int32_t> clip;  // from 1
    std::string take;
    std::string from;
    std::vector<std::string> to;  // the destination, and with --take the range's end
    bool fast = false;
    std::string onBreak;
    DialogOptions dialogs;
};

enum class Destination : std::uint32_t { kFtp = 0, kOutbox = 1, kMail = 2, kFile };

const std::map<std::string, Destination> kDestinations = {{"file", Destination::kFile},
                                                          {"ftp", Destination::kFtp},
                                                          {"mail", Destination::kMail},
                                                          {"outbox", Destination::kOutbox}};

/// Takes the destination and the range's end apart: both are told with --to.
struct Targets {
    std::string end;
    std::optional<Destination> destination;

    [[nodiscard]] bool ToFile() const { return destination == Destination::kFile; }
};

Targets TargetsOf(const PublishOptions& options) {
    Targets targets;
    for (const std::string& value : options.to) {
        const auto known = kDestinations.find(value);
        if (known != kDestinations.end() && !targets.destination)
            targets.destination = known->second;
        else if (known == kDestinations.end() && targets.end.empty())
            targets.end = value;
        else
            throw UsageError("--to names one destination and one end of the range");
    }
    if (!targets.destination)
        throw UsageError("--to names the destination: file, ftp, mail or outbox");
    if (!targets.end.empty() && options.take.empty())
        throw UsageError("not a destination: --to " + targets.end);
    return targets;
}

/// Makes the asked clip or take and its range the current selection.
void Select(const PublishOptions& options, const Targets& targets, Application& app) {
    if (options.clip && !app.project.SelectClip(*options.clip - 1))
        throw std::runtime_error(Format("the project has no clip %d", *options.clip));
    if (options.clip && app.recording.selectionStart >= app.recording.selectionEnd)
        app.recording.selectionEnd = app.recording.length;  // a clip of the whole recording
    if (options.clip && app.recording.selectionStart >= app.recording.selectionEnd)
        throw std::runtime_error(Format("clip %d has no sound", *options.clip));
    if (options.take.empty()) return;
    const Text file = app.project.Folder() + FromUtf8(options.take);
    const Text path = file + (app.audio.mp2 ? u".mp2" : u".wav");
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the project has no take " + options.take);
    if (!app.project.OpenRecording(path))
        throw std::runtime_error("the take cannot be read: " + options.take);
    SelectRange(app, options.from.empty() ? "#0" : options.from,
                targets.end.empty() ? Format("#%u", app.recording.length) : targets.end);
}

/// True when there is sound to publish, false for images alone; refused before anything is opened.
bool HasSound(const PublishOptions& options, const Targets& targets) {
    const int choices =
        (options.cliplist ? 1 : 0) + (options.clip ? 1 : 0) + (options.take.empty() ? 0 : 1);
    const bool images = !options.dialogs.images.empty();
    if (choices > 1 || (choices == 0 && !images))
        throw UsageError("choose one of --cliplist, --clip and --take");
    if (images && (targets.ToFile() || options.fast))
        throw UsageError("--image goes neither with --to file nor with --fast");
    if (options.fast && (targets.ToFile() || choices == 0))
        throw UsageError("--fast sends sound to ftp, mail or outbox");
    return choices == 1;
}

/// What was asked for in so many words needs no option in the settings; nothing of it is saved.
void Apply(const PublishOptions& options, const Targets& targets, Environment& environment) {
    SettingsRecord& settings = environment.App().settings;
    settings.PublishToFile = 1;
    settings.FtpPublishing = 1;
    settings.ImagePublishing = options.dialogs.images.empty() ? 0 : 1;
    if (!targets.ToFile())
        settings.PublishMethod = static_cast<std::uint32_t>(*targets.destination);
    if (!targets.ToFile()) UseAccount(options.dialogs, settings);
    if (!options.dialogs.recipient.empty())
        settings.Recipient = FromUtf8(options.dialogs.recipient);
    if (!options.dialogs.subject.empty()) settings.Subject = FromUtf8(options.dialogs.subject);
    if (!options.onBreak.empty()) settings.AutoResume = options.onBreak == "resume" ? 1 : 0;
    if (options.onBreak != "stop") environment.Boxes().AskAtTerminal();
}

/// Nothing is published before the user, or the mail program, has sent it.
Json Posted(const Application& app) {
    Json messages = Json::array();
    for (const PostedMessage& message : app.posted)
        messages.push_back({{"message", ToJson(message.path)},
                            {"state", message.handedOver ? "handed to the mail program, unsent"
                                                         : "lies in the outbox, unsent"}});
    return {{"recipient", ToJson(app.publishChoices.recipient)}, {"outbox", messages}};
}

/// A file without a byte was not meant to be sent; one that cannot be read is reported later.
void RequireContent(Storage& storage, const std::string& image) {
    std::unique_ptr<StorageFile> file;
    std::uint64_t bytes = 1;
    if (storage.Open(FromUtf8(image), {}, file) == 0 && file->Size(bytes) == 0 && bytes == 0)
        throw std::runtime_error("the image is empty: " + image);
}

/// Where the publication is now.
Json Place(const Application& app, const PublishJob& job, const Targets& targets, bool sound) {
    if (targets.ToFile()) return {{"published", ToJson(job.PublishedPath())}};
    if (targets.destination == Destination::kOutbox) return Posted(app);
    if (targets.destination != Destination::kFtp)
        return {{"published", ToJson(app.publishChoices.recipient)}};
    if (!sound) return {{"published", ToJson(CurrentFtpAccount(app.settings).server)}};
    const FtpAccount& account = app.writerContext.remote.account;
    return {{"published", ToJson(account.server + u"/" +
                                 RemotePath(account.folder, app.project.Name(),
                                            app.writerContext.remote.extension))}};
}

PublishOutcome Run(PublishJob& job, const PublishOptions& options, const Targets& targets,
                   bool sound) {
    if (!sound) return job.MenuPublishImage(false);
    if (targets.ToFile())
        return options.cliplist ? job.MenuPublishCliplistToFile(false)
                                : job.MenuPublishClipToFile(false);
    if (options.fast)
        return options.cliplist ? job.MenuPublishFastCliplist(false)
                                : job.MenuPublishFastClip(false);
    return options.cliplist ? job.MenuPublishCliplist(false) : job.MenuPublishClip(false);
}

int Publish(const Globals& globals, PublishOptions options) {
    const Targets targets = TargetsOf(options);
    const bool sound = HasSound(options, targets);
    const Text path = ProjectPath(options.project);
    for (std::string& image : options.dialogs.images)  // before the program's folder is current
        image = ToUtf8(CallerPath(image));

    ProgressLine progress(ErrorsAreTerminal());
    Environment environment(globals, progress);
    Application& app = environment.App();
    LoadSettings(app);
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the project does not exist: " + options.project);
    if (!OpenProject(app, path)) return kFailed;
    for (const std::string& image : options.dialogs.images)
        RequireContent(app.ports.storage, image);
    Select(options, targets, app);
    Apply(options, targets, environment);

    OptionDialogs dialogs(options.dialogs, app.settings);
    PublishJob job(app.Publishing(dialogs));
    if (Run(job, options, targets, sound) != PublishOutcome::kPublished) return kFailed;
    Print(Place(app, job, targets, sound), globals.json);
    // The file is there; an error on the way (a level file that could not be written) still counts.
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddPublishCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<PublishOptions>();
    CLI::App* command =
        app.add_subcommand("publish", "Publish a clip or the clip list as Broadcast-Wave");
    command->add_option("PROJECT", options->project, "Project file (.opr)")->required();
    command->add_flag("--cliplist", options->cliplist, "The whole clip list");
    command->add_option("--clip", options->clip, "One clip, counted from 1")
        ->check(CLI::PositiveNumber);
    auto* take = command->add_option("--take", options->take, "One take by its name");
    command->add_option("--from", options->from, "Where the take begins: m:ss.hh, seconds or #N")
        ->needs(take);
    command
        ->add_option("--to", options->to,
                     "Where to: file, ftp, mail or outbox; given twice, also where the take ends")
        ->required()
        ->take_all();
    command->add_flag(
        "--fast", options->fast,
        "One channel at the bit rate for fast publications, to the stored destination");
    AddDialogOptions(*command, options->dialogs);
    command
        ->add_option("--on-break", options->onBreak,
                     "When an FTP connection breaks: ask at the terminal, resume, or stop")
        ->check(CLI::IsMember({"ask", "resume", "stop"}));
    command->footer(
        "A file lies beside the project, its name begins with pub_. By FTP and mail it bears the\n"
        "project's name; images are numbered after it. --image without a clip sends images alone.\n"
        "An MP2 project's upload goes on where it broke off; a WAV project's cannot. Ctrl-C ends\n"
        "the publication properly and says that it is incomplete.");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Publish(globals, *options); };
    });
}

}  // namespace orma::cli
