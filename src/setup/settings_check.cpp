#include "setup/settings_check.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "audio/files/mp2_bitrate.h"
#include "base/number.h"
#include "setup/account_list.h"

namespace orma {
namespace {

constexpr int kLargestPort = 65535;

/// Collects the faults of one record.
class Check {
  public:
    explicit Check(const SettingsRecord& settings) : s_(settings) {}

    std::vector<SettingsFault> Run() {
        Recording();
        Publishing();
        for (std::size_t i = 0; i < s_.Ftp.size(); ++i)
            Ftp("Ftp[" + std::to_string(i) + "].", s_.Ftp[i]);
        const bool needsFtp =
            s_.FtpPublishing != 0 && s_.PublishMethod == 0 && s_.ServerChoice == 0;
        if (needsFtp && !ftpNames_.empty() && s_.CurrentFtpName.empty() && s_.FtpServer.empty())
            Add("CurrentFtpName", "Choose the account that publications go to.");
        for (std::size_t i = 0; i < s_.Smtp.size(); ++i)
            Mail("Smtp[" + std::to_string(i) + "].", s_.Smtp[i]);
        Equalizer();
        return std::move(faults_);
    }

  private:
    void Add(std::string setting, std::string text) {
        faults_.push_back({std::move(setting), std::move(text)});
    }

    void BitRate(const char* setting, std::uint32_t index, bool stereo) {
        const auto& rates = Mp2Bitrate::kBitsPerSecond;
        if (index >= rates.size()) {
            Add(setting, "Choose a bit rate.");
        } else if (!Mp2Bitrate::IsLegal(index, stereo)) {
            const std::string rate = std::to_string(rates[index] / 1000) + " kbit/s";
            Add(setting, stereo ? "Layer II has no " + rate + " in stereo: take 64, 96 or more."
                                : "Layer II has no " + rate + " in mono: take 192 or less.");
        }
    }

    void Recording() {
        if (s_.RecordMp2 != 0) BitRate("Mp2BitrateIndex", s_.Mp2BitrateIndex, s_.Stereo != 0);
        Folder("ProjectsFolder", s_.ProjectsFolder);
        if (s_.CurrentProjectName.empty())
            Add("CurrentProjectName", "A project needs a name.");
        else if (s_.CurrentProjectName.find_first_of(u"/\\") != Text::npos)
            Add("CurrentProjectName", "A name has no slashes: the folder stands above.");
        if (s_.UseProjectTextFile != 0 && s_.ProjectTextFile.empty())
            Add("ProjectTextFile", "Choose the file.");
        if (s_.PostCreateStep != 0 && s_.PostCreateCommand.empty())
            Add("PostCreateCommand", "Type the command.");
    }

    void Publishing() {
        if (s_.FastPublishing != 0) BitRate("FastBitrateIndex", s_.FastBitrateIndex, false);
        const bool isWord = std::ranges::all_of(s_.PublishExtension, [](char16_t unit) {
            return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
                   (unit >= u'a' && unit <= u'z');
        });
        if (s_.PublishExtension.empty() || !isWord)
            Add("PublishExtension", "Letters and digits alone, as in wav.");
        std::error_code error;
        if (!s_.CaFile.empty() && !std::filesystem::is_regular_file(ToUtf8(s_.CaFile), error))
            Add("CaFile", "There is no such file.");
    }

    /// Whether it is there or can be made, as far as looking tells.
    void Folder(const char* setting, const Text& folder) {
        std::filesystem::path path = ToUtf8(folder);
        if (!path.is_absolute()) {
            Add(setting, "The whole path, from / on.");
            return;
        }
        std::error_code error;
        while (!std::filesystem::exists(path, error) && path.has_relative_path())
            path = path.parent_path();
        if (!std::filesystem::is_directory(path, error))
            Add(setting, path.string() + " is a file, not a folder.");
    }

    /// True when the text can be a host.
    bool Host(const std::string& setting, const Text& server) {
        if (server.empty())
            Add(setting, "Type the server's name.");
        else if (server.find(u"//") != Text::npos)
            Add(setting, "The server's name alone, without ftp:// and the like.");
        else if (server.find_first_of(u" \t/") != Text::npos)
            Add(setting, "A server's name has no blanks and slashes.");
        else
            return true;
        return false;
    }

    void Ftp(const std::string& prefix, const FtpDestination& entry) {
        if (!IsUsed(entry)) return;
        Name(prefix, entry.Name, ftpNames_);
        if (entry.Name.empty()) Add(prefix + "Name", "Reporters choose accounts by their names.");
        if (!Host(prefix + "Server", entry.Server)) return;
        const std::size_t colon = entry.Server.rfind(u':');
        if (colon == Text::npos || colon == 0) return;
        const int port = ParseNumber<int>(ToUtf8(entry.Server.substr(colon + 1))).value_or(0);
        if (port < 1 || port > kLargestPort)
            Add(prefix + "Server", "Behind the colon stands a port from 1 to 65535.");
    }

    void Mail(const std::string& prefix, const SmtpDestination& entry) {
        if (!IsUsed(entry)) return;
        Name(prefix, entry.ShownName(), mailNames_);
        if (Host(prefix + "Server", entry.Server) && entry.Server.find(u':') != Text::npos)
            Add(prefix + "Server", "The port has a field of its own.");
        if (entry.Port < 1 || entry.Port > kLargestPort)
            Add(prefix + "Port", "A port is a number from 1 to 65535.");
        if (entry.Auth != 0 && entry.User.empty()) Add(prefix + "User", "A log-in needs a user.");
    }

    void Name(const std::string& prefix, const Text& name, std::set<Text>& names) {
        if (!name.empty() && !names.insert(name).second)
            Add(prefix + "Name", "There is another one of that name.");
    }

    void Equalizer() {
        std::size_t named = 0;  // sets up to the last with a name
        for (std::size_t i = 0; i < s_.Preset.size(); ++i)
            if (!s_.Preset[i].name.empty()) named = i + 1;
        for (std::size_t i = 0; i < s_.Preset.size(); ++i) {
            const EqualizerSet& set = s_.Preset[i];
            const std::string prefix = "Preset[" + std::to_string(i) + "].";
            Name(prefix, set.name, setNames_);
            if (set.name.empty() && i < named)
                Add(prefix + "Name", "Sets behind one without a name are not found.");
            for (std::size_t band = 0; band < set.bands.size(); ++band)
                Band(prefix + "Band[" + std::to_string(band) + "].", set.bands[band]);
        }
    }

    void Band(const std::string& prefix, const EqualizerBand& band) {
        constexpr int kLowest = 20;
        constexpr int kHighest = 20000;  // below half of any sample rate
        constexpr int kLargestGain = 300;
        if (band.enabled == 0) return;
        if (band.frequency < kLowest || band.frequency > kHighest)
            Add(prefix + "Frequency", "20 to 20000 Hz.");
        if (std::abs(band.gain) > kLargestGain) Add(prefix + "Gain", "-30 to 30 dB.");
        if (band.q == 0) Add(prefix + "Q", "Q is more than 0.");
    }

    const SettingsRecord& s_;
    std::vector<SettingsFault> faults_;
    std::set<Text> ftpNames_;
    std::set<Text> mailNames_;
    std::set<Text> setNames_;
};

}  // namespace

std::vector<SettingsFault> CheckSettings(const SettingsRecord& settings) {
    return Check(settings).Run();
}

}  // namespace orma
