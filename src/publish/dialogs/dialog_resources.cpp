#include "publish/dialogs/dialog_resources.h"

#include <algorithm>

namespace orma {
namespace {

constexpr DialogControl kInfo{DialogRole::kInfo, 1021, u""};
constexpr DialogControl kSmtpServer{DialogRole::kServer, 1020, u"Server"};
constexpr DialogControl kFtpServer{DialogRole::kServer, 1030, u"Server"};
constexpr DialogControl kRecipient{DialogRole::kRecipient, 1019, u"To"};
constexpr DialogControl kSubject{DialogRole::kSubject, 1022, u"Subject"};
constexpr DialogControl kAttach{DialogRole::kAttach, 1027, u""};
constexpr DialogControl kAdd{DialogRole::kAdd, 1026, u"Add"};
constexpr DialogControl kImages{DialogRole::kImages, 1035, u""};
constexpr DialogControl kStart{DialogRole::kStart, 1, u"Start"};
constexpr DialogControl kCancel{DialogRole::kCancel, 2, u"Cancel"};

constexpr DialogControl Remove(int id, TextView label = u"Remove") {
    return {DialogRole::kRemove, id, label};
}
constexpr DialogControl Clear(int id) {
    return {DialogRole::kClear, id, u"Clear List"};
}
constexpr DialogControl KeepNames(int id, TextView label = u"Keep\nnames") {
    return {DialogRole::kKeepNames, id, label};
}

// Start and Cancel end every list, so that a twin's is the same one, two shorter.
constexpr DialogControl k105[] = {kInfo, kRecipient, kSubject, kStart, kCancel};
constexpr DialogControl k107[] = {kInfo, kSmtpServer, kRecipient, kSubject, kStart, kCancel};
constexpr DialogControl k109[] = {kInfo,     kSmtpServer, kRecipient, kSubject, kAttach, kAdd,
                                  Remove(6), Clear(5),    kImages,    kStart,   kCancel};
constexpr DialogControl k111[] = {kInfo,     kRecipient, kSubject, kAttach, kAdd,
                                  Remove(6), Clear(5),   kImages,  kStart,  kCancel};
constexpr DialogControl k113[] = {kAttach,
                                  {DialogRole::kAdd, 1026, u"Choose Image or Video:"},
                                  kImages,
                                  Clear(3),
                                  Remove(4, u"Remove Selected"),
                                  kStart,
                                  kCancel};
constexpr DialogControl k115[] = {{DialogRole::kServer, 1030, u"FTP Server:"}, kStart, kCancel};
constexpr DialogControl k117[] = {kFtpServer, kAdd, Remove(4), Clear(3), kImages, kStart, kCancel};
constexpr DialogControl k119[] = {kSmtpServer, kRecipient,      kSubject, kAdd,   Remove(5),
                                  Clear(4),    KeepNames(1038), kImages,  kStart, kCancel};
constexpr DialogControl k121[] = {kRecipient,      kSubject, kAdd,   Remove(5), Clear(4),
                                  KeepNames(1038), kImages,  kStart, kCancel};
constexpr DialogControl k123[] = {kAdd,     Remove(4), kImages, KeepNames(1037, u"Keep names"),
                                  Clear(3), kStart,    kCancel};
constexpr DialogControl k125[] = {kFtpServer, kImages,         Clear(3), Remove(4),
                                  kAdd,       KeepNames(1037), kStart,   kCancel};

constexpr DialogResource Twin(const DialogResource& dialog) {
    return {dialog.id + 1, dialog.title, dialog.controls.first(dialog.controls.size() - 2)};
}

constexpr DialogResource kDialogs[] = {
    {105, u"Publish through email via outbox", k105},
    {107, u"Publish through email direct", k107},
    {109, u"Publish through email direct", k109},
    {111, u"Publish through email via outbox", k111},
    {113, u"Publish through FTP", k113},
    {115, u"Publish through FTP", k115},
    {117, u"Publish through FTP", k117},
    {119, u"Publish images and video's", k119},
    {121, u"Publish images and video's", k121},
    {123, u"Publish images or video's", k123},
    {125, u"Publish images and video's", k125},
};
constexpr DialogResource kTwins[] = {
    Twin(kDialogs[0]), Twin(kDialogs[1]), Twin(kDialogs[2]),  Twin(kDialogs[3]),
    Twin(kDialogs[4]), Twin(kDialogs[5]), Twin(kDialogs[6]),  Twin(kDialogs[7]),
    Twin(kDialogs[8]), Twin(kDialogs[9]), Twin(kDialogs[10]),
};

/// The number of the dialog before a publication, 0 for none.
int DialogNumberBefore(const DialogSituation& situation) {
    const bool images = situation.imagePublishing;
    if (situation.method == 1) return situation.imagesOnly ? 121 : images ? 111 : 105;
    if (situation.method == 2) return situation.imagesOnly ? 119 : images ? 109 : 107;
    const bool servers = situation.serverChoice && situation.ftpServers > 1;
    if (situation.imagesOnly) return servers ? 125 : 123;
    if (images) return servers ? 117 : 113;
    return servers ? 115 : 0;
}

}  // namespace

bool DialogResource::Has(DialogRole role) const {
    return std::any_of(controls.begin(), controls.end(),
                       [role](const DialogControl& control) { return control.role == role; });
}

const DialogResource* FindDialogResource(int id) {
    for (const std::span<const DialogResource> list : {std::span(kDialogs), std::span(kTwins)})
        for (const DialogResource& dialog : list)
            if (dialog.id == id) return &dialog;
    return nullptr;
}

const DialogResource* DialogBefore(const DialogSituation& situation) {
    return FindDialogResource(DialogNumberBefore(situation));
}

}  // namespace orma
