#include "publish/publish_settings.h"

#include "base/path.h"
#include "publish/dialogs/current_accounts.h"

namespace orma {

PublishSettings PublishSettingsOf(const SettingsRecord& settings) {
    PublishSettings publish;
    publish.publishToFile = settings.PublishToFile != 0;
    publish.publishExtension = settings.PublishExtension;
    publish.originator = {settings.OriginatorCountry, settings.OriginatorOrganisation,
                          settings.OriginatorUser};
    publish.method = settings.PublishMethod == 1   ? PublishMethod::kOutbox
                     : settings.PublishMethod == 2 ? PublishMethod::kMail
                                                   : PublishMethod::kFtp;
    publish.ftpPublishing = settings.FtpPublishing != 0;
    publish.ftp = CurrentFtpAccount(settings);
    publish.broadcastWave = settings.BwfHeader != 0;
    publish.autoResume = settings.AutoResume != 0;
    publish.serverChoice = settings.ServerChoice != 0;
    publish.smtp = CurrentSmtpAccount(settings);
    publish.recipient = settings.Recipient;
    publish.subject = settings.Subject;
    publish.fastBitrateIndex = settings.FastBitrateIndex;
    publish.imagePublishing = settings.ImagePublishing != 0;
    publish.keepImageNames = settings.KeepImageNames != 0;
    publish.publishText = settings.PublishText != 0;
    const Text extension = SplitPath(settings.ProjectTextFile).extension;
    if (settings.UseProjectTextFile != 0 && !extension.empty()) publish.textExtension = extension;
    return publish;
}

}  // namespace orma
