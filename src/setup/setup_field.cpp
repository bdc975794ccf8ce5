#include "setup/setup_field.h"

namespace orma {
namespace {

using enum SetupField::Kind;
using Choice = SetupField::Choice;

constexpr Choice kFormats[] = {{0, "WAV, uncompressed"}, {1, "MPEG Layer II"}};
constexpr Choice kChannels[] = {{0, "One (mono)"}, {1, "Two (stereo)"}};
constexpr Choice kRates[] = {{1, "44.1 kHz"}, {0, "48 kHz"}};
// Layer II has low rates for one channel and high ones for two only (ISO/IEC 11172-3, 2.4.2.3).
constexpr Choice kBitRates[] = {{0, "32 kbit/s, mono only"},
                                {1, "48 kbit/s, mono only"},
                                {2, "56 kbit/s, mono only"},
                                {3, "64 kbit/s"},
                                {4, "80 kbit/s, mono only"},
                                {5, "96 kbit/s"},
                                {6, "112 kbit/s"},
                                {7, "128 kbit/s"},
                                {8, "160 kbit/s"},
                                {9, "192 kbit/s"},
                                {10, "224 kbit/s, stereo only"},
                                {11, "256 kbit/s, stereo only"}};
constexpr Choice kMonoBitRates[] = {
    {0, "32 kbit/s"}, {1, "48 kbit/s"},  {2, "56 kbit/s"},  {3, "64 kbit/s"},  {4, "80 kbit/s"},
    {5, "96 kbit/s"}, {6, "112 kbit/s"}, {7, "128 kbit/s"}, {8, "160 kbit/s"}, {9, "192 kbit/s"}};
constexpr Choice kResolutions[] = {{0, "5 a second"}, {1, "10 a second"}, {2, "20 a second"}};
constexpr Choice kStartModes[] = {{1, "Reopen the current project"},
                                  {2, "Begin a new, numbered project"},
                                  {3, "Reopen the last project"},
                                  {0, "Open none"}};
constexpr Choice kToolModes[] = {{0, "First command, then second"},
                                 {1, "Second command, then first"}};
constexpr Choice kMethods[] = {
    {0, "By FTP"}, {1, "By e-mail, through the mail program"}, {2, "By e-mail, directly"}};
constexpr Choice kShapes[] = {{0, "Portrait"}, {1, "Landscape"}, {2, "Square"}};
constexpr Choice kOrientations[] = {{0, "Upright"}, {2, "Upside down"}};
constexpr Choice kDescriptions[] = {
    {0, "Length, time and date"}, {1, "Time and date"}, {2, "Date and folder"}, {3, "Folder"}};
constexpr Choice kLabels[] = {
    {0, "Length, time and date"}, {1, "Time and date"}, {2, "Date and name"}, {3, "Name"}};
constexpr Choice kFtpSecurities[] = {
    {0, "None: clear text"}, {1, "Explicit TLS (AUTH TLS)"}, {2, "Implicit TLS (port 990)"}};
constexpr Choice kMailSecurities[] = {
    {0, "None: clear text"}, {1, "STARTTLS (port 587)"}, {2, "Implicit TLS (port 465)"}};

constexpr SetupField kRecording[] = {
    {.setting = "RecordMp2",
     .kind = kChoice,
     .label = "Format",
     .explanation = "Of new projects; what is recorded keeps its format.",
     .choices = kFormats,
     .heading = "New projects"},
    {.setting = "Stereo", .kind = kChoice, .label = "Channels", .choices = kChannels},
    {.setting = "SampleRateCode", .kind = kChoice, .label = "Sample rate", .choices = kRates},
    {.setting = "Mp2BitrateIndex",
     .kind = kChoice,
     .label = "Bit rate",
     .explanation = "Of MPEG Layer II.",
     .choices = kBitRates},
    {.setting = "ResolutionShift",
     .kind = kChoice,
     .label = "Levels",
     .explanation = "How finely takes can be marked and cut.",
     .choices = kResolutions},
    {.setting = "ProjectsFolder",
     .kind = kFolder,
     .label = "Projects folder",
     .explanation = "Where projects lie. It is made when it is missing."},
    {.setting = "UseProjectTextFile",
     .kind = kCheck,
     .label = "Fill the text of new projects from a file"},
    {.setting = "ProjectTextFile",
     .kind = kFile,
     .label = "Text file",
     .explanation = "Its extension also names the text that is published.",
     .needs = "UseProjectTextFile"},
    {.setting = "PostCreateStep", .kind = kCheck, .label = "Run a command when a project was made"},
    {.setting = "PostCreateCommand",
     .kind = kText,
     .label = "Command",
     .explanation = "A line for the shell; $1 is the path of the project.",
     .needs = "PostCreateStep"},
    {.setting = "StartMode",
     .kind = kChoice,
     .label = "Project",
     .explanation = "What is open after the start.",
     .choices = kStartModes,
     .heading = "Start"},
    {.setting = "CurrentProjectName",
     .kind = kText,
     .label = "Current project",
     .explanation = "Reopened, or the beginning of the numbered names."},
    {.setting = "RecordingFormat",
     .kind = kChoice,
     .label = "Format until then",
     .explanation = "What is recorded before any project is open.",
     .choices = kFormats},
    {.setting = "AudioInputDevice",
     .kind = kInputDevice,
     .label = "Microphone",
     .heading = "Devices"},
    {.setting = "AudioOutputDevice", .kind = kOutputDevice, .label = "Loudspeaker"},
    {.setting = "SpdifInput",
     .kind = kCheck,
     .label = "Record from the S/PDIF card",
     .explanation = "Digital input is recorded as it is, without gain and equaliser."},
    {.setting = "SpdifInputSelect",
     .kind = kNumber,
     .label = "Its input",
     .explanation = "The number that the card knows it by.",
     .needs = "SpdifInput"},
    {.setting = "AltEarjackKey",
     .kind = kCheck,
     .label = "Look for the headset in the alternative place"},
    {.setting = "RecorderConfig1",
     .kind = kNumber,
     .label = "Recorder value 1",
     .explanation = "What an external recorder is told when it is found.",
     .heading = "External recorder"},
    {.setting = "RecorderConfig2", .kind = kNumber, .label = "Recorder value 2"},
    {.setting = "RecorderConfig3", .kind = kNumber, .label = "Recorder value 3"},
    {.setting = "AppendPerBlock",
     .kind = kCheck,
     .label = "Close the file after every block",
     .explanation = "For media that may be pulled out; slower.",
     .heading = "While recording"},
    {.setting = "LiveFtpAllowed",
     .kind = kCheck,
     .label = "Projects may record straight to FTP",
     .explanation = "The take is uploaded meanwhile; it never waits for the network."},
    {.setting = "LiveFtpNewProjects",
     .kind = kCheck,
     .label = "New projects do so",
     .needs = "LiveFtpAllowed"},
    {.setting = "CloseSync", .kind = kCheck, .label = "Close the desktop's synchronisation window"},
    {.setting = "MicGainTool",
     .kind = kCheck,
     .label = "Run the microphone-gain tool before recording"},
    {.setting = "MicGainToolMode",
     .kind = kChoice,
     .label = "Its commands",
     .choices = kToolModes,
     .needs = "MicGainTool"},
};

constexpr SetupField kInput[] = {
    {.setting = "InputOptions", .kind = kCheck, .label = "Reporters may choose the equaliser set"},
    {.setting = "CurrentPresetName",
     .kind = kSetName,
     .label = "Set in use",
     .explanation = "A name that ends in _ext or _int changes to the other one with a headset."},
};

constexpr SetupField kEqualizerSet[] = {
    {.setting = "Name", .kind = kText, .label = "Name"},
    {.setting = "EqOn", .kind = kCheck, .label = "Equaliser on"},
    {.setting = "GainOffset", .kind = kNumber, .label = "Gain offset", .unit = " dB"},
};

constexpr SetupField kBand[] = {
    {.setting = "Enabled", .kind = kCheck, .label = "On"},
    {.setting = "Frequency",
     .kind = kNumber,
     .label = "Frequency",
     .unit = " Hz",
     .needs = "Enabled"},
    {.setting = "Gain", .kind = kTenths, .label = "Gain", .unit = " dB", .needs = "Enabled"},
    {.setting = "Q", .kind = kTenths, .label = "Q", .needs = "Enabled"},
};

constexpr SetupField kPublishing[] = {
    {.setting = "FtpPublishing",
     .kind = kCheck,
     .label = "Clips and clip lists may be published",
     .heading = "Delivery"},
    {.setting = "PublishMethod", .kind = kChoice, .label = "Way", .choices = kMethods},
    {.setting = "ServerChoice",
     .kind = kCheck,
     .label = "Reporters may choose the FTP account",
     .explanation = "Otherwise the one in use counts."},
    {.setting = "AutoResume",
     .kind = kCheck,
     .label = "Go on after a break without asking",
     .explanation = "Until the upload succeeds or the reporter cancels it."},
    {.setting = "Recipient",
     .kind = kText,
     .label = "To",
     .explanation = "The mail address that is proposed."},
    {.setting = "Subject", .kind = kText, .label = "Subject"},
    {.setting = "PublishToFile",
     .kind = kCheck,
     .label = "Publish to a file as well",
     .explanation = "Adds the commands that publish beside the project.",
     .heading = "Commands"},
    {.setting = "FastPublishing",
     .kind = kCheck,
     .label = "Publish fast as well",
     .explanation = "Adds the commands without a dialog: one channel, small."},
    {.setting = "FastBitrateIndex",
     .kind = kChoice,
     .label = "Fast bit rate",
     .choices = kMonoBitRates,
     .needs = "FastPublishing"},
    {.setting = "ImagePublishing", .kind = kCheck, .label = "Images and videos may go along"},
    {.setting = "PublishText",
     .kind = kCheck,
     .label = "The project's text goes along",
     .heading = "What is published"},
    {.setting = "BwfHeader",
     .kind = kCheck,
     .label = "Uploads are Broadcast-Wave files",
     .explanation = "Otherwise bare MPEG sound without the head."},
    {.setting = "PublishExtension",
     .kind = kText,
     .label = "Extension",
     .explanation = "Of a published file of MPEG Layer II, without a dot."},
    {.setting = "OriginatorCountry",
     .kind = kCode,
     .label = "Country",
     .explanation = "Up to four letters each, as in SMPTE 330M.",
     .heading = "Identity in the material identifier (UMID)"},
    {.setting = "OriginatorOrganisation", .kind = kCode, .label = "Organisation"},
    {.setting = "OriginatorUser", .kind = kCode, .label = "User"},
    {.setting = "CaFile",
     .kind = kFile,
     .label = "Authorities",
     .explanation = "Certificates that TLS trusts (PEM); empty: those of the system.",
     .heading = "Protected connections"},
};

constexpr SetupField kInterface[] = {
    {.setting = kWindowShape,
     .kind = kChoice,
     .label = "Shape",
     .choices = kShapes,
     .heading = "Window"},
    {.setting = kWindowBig, .kind = kCheck, .label = "Double size"},
    {.setting = "LandscapeSkin",
     .kind = kCheck,
     .label = "Background for upright displays turned sideways",
     .explanation = "Without effect on displays wider than tall."},
    {.setting = "Orientation", .kind = kChoice, .label = "Record screen", .choices = kOrientations},
    {.setting = "FullBarRedraw",
     .kind = kCheck,
     .label = "Draw level bars whole",
     .explanation = "For displays that leave parts of them behind; slower."},
    {.setting = "MarkButtons",
     .kind = kCheck,
     .label = "Mark buttons",
     .heading = "On the record screen"},
    {.setting = "ShowMaxTime", .kind = kCheck, .label = "Time left to record"},
    {.setting = "ShowBattery", .kind = kCheck, .label = "State of the battery"},
    {.setting = "GainControl", .kind = kCheck, .label = "Input gain can be changed"},
    {.setting = "VolumeControl", .kind = kCheck, .label = "Output volume can be changed"},
    {.setting = "PublishClipButton",
     .kind = kCheck,
     .label = "Publish button in the menu bar",
     .heading = "Editing"},
    {.setting = "OneSecondCut", .kind = kCheck, .label = "Cuts are one second long"},
    {.setting = "DetailedView", .kind = kCheck, .label = "The editor starts in its detailed view"},
    {.setting = "DescriptionMode",
     .kind = kChoice,
     .label = "Clips are called",
     .choices = kDescriptions},
    {.setting = "ListDisplay",
     .kind = kChoice,
     .label = "Recordings are called",
     .choices = kLabels},
};

constexpr SetupField kFtpAccount[] = {
    {.setting = "Name", .kind = kText, .label = "Name", .explanation = "What reporters see."},
    {.setting = "Server",
     .kind = kText,
     .label = "Server",
     .explanation = "A host, with :port where it is not 21 (implicit TLS: 990)."},
    {.setting = "User", .kind = kText, .label = "User"},
    {.setting = "Password", .kind = kPassword, .label = "Password"},
    {.setting = "Folder",
     .kind = kText,
     .label = "Folder",
     .explanation = "On the server; empty: where the log-in leads."},
    {.setting = "Security",
     .kind = kChoice,
     .label = "Protection",
     .explanation = "With TLS nothing is sent in clear, and the certificate is verified.",
     .choices = kFtpSecurities},
    {.setting = "Passive",
     .kind = kCheck,
     .label = "Passive data connections",
     .explanation = "Suit nearly every network."},
};

constexpr SetupField kMailAccount[] = {
    {.setting = "Name",
     .kind = kText,
     .label = "Name",
     .explanation = "What reporters see; empty: the server."},
    {.setting = "Server", .kind = kText, .label = "Server"},
    {.setting = "Port", .kind = kNumber, .label = "Port"},
    {.setting = "Security",
     .kind = kChoice,
     .label = "Protection",
     .explanation = "With TLS nothing is sent in clear, and the certificate is verified.",
     .choices = kMailSecurities},
    {.setting = "Auth", .kind = kCheck, .label = "Log in before sending"},
    {.setting = "User", .kind = kText, .label = "User", .needs = "Auth"},
    {.setting = "Password", .kind = kPassword, .label = "Password", .needs = "Auth"},
};

}  // namespace

std::span<const SetupField> FieldsOf(SetupFields rows) {
    switch (rows) {
        case SetupFields::kRecording:
            return kRecording;
        case SetupFields::kInput:
            return kInput;
        case SetupFields::kPublishing:
            return kPublishing;
        case SetupFields::kInterface:
            return kInterface;
        case SetupFields::kFtpAccount:
            return kFtpAccount;
        case SetupFields::kMailAccount:
            return kMailAccount;
        case SetupFields::kEqualizerSet:
            return kEqualizerSet;
        case SetupFields::kBand:
            return kBand;
    }
    return {};
}

}  // namespace orma
