#include "shell/publish_note.h"

#include "publish/publish_settings.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {

std::optional<Note> NoteOf(const PublishJob& job, const Application& app) {
    const bool withSound = job.HasSentSound();
    if (withSound && !job.PublishedPath().empty())
        return Note{u"Published to a file", job.PublishedPath()};
    switch (PublishSettingsOf(app.settings).method) {
        case PublishMethod::kOutbox:
            return std::nullopt;
        case PublishMethod::kMail:
            return Note{withSound ? u"Published by mail" : u"Images published by mail",
                        u"To " + app.publishChoices.recipient};
        case PublishMethod::kFtp:
            break;
    }
    const RemoteDestination& remote = app.writerContext.remote;
    if (!withSound) return Note{u"Images published by FTP", app.settings.FtpServer};
    return Note{u"Published by FTP",
                remote.account.server + u"/" +
                    RemotePath(remote.account.folder, app.project.Name(), remote.extension)};
}

}  // namespace orma
