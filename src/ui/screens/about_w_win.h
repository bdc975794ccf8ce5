#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "ui/controls/static_text_win.h"
#include "ui/controls/toggle_button_win.h"
#include "ui/screens/w_win.h"

namespace orma {

/// What the About screen tells; what is unknown is left out.
struct AboutInfo {
    std::optional<std::uint64_t> freeMemory{};  // bytes
    bool memoryIsShort = false;                 // too little to work with
    std::optional<int> processorLoad{};         // percent
    std::optional<int> battery{};               // percent

    Text projectLocation{};
    bool mp2 = false;
    bool stereo = false;
    std::uint32_t bitrate = 0;  // kbit/s, of MP2
    bool equalizerOn = false;
    Text equalizerSet{};
    std::uint32_t secondsLeft = 0;  // that can be recorded
};

/// The product's version as the screen names it.
struct ProductVersion {
    int major = 0;
    int minor = 0;
    int release = 0;
};

/// About the program and what it runs on: a page for the device, one for the project. What it shows
/// is asked for anew with every page, and every second while it is open. UI thread.
class AboutWWin : public WWin {
  public:
    /// `ask` delivers what is to be shown.
    AboutWWin(const Scene& scene, ScreenHost& host, ProductVersion version,
              std::function<AboutInfo()> ask);

    void Refresh() override { Gather(); }
    void Entered() override;
    void Tick() override;

  private:
    enum class Page : std::uint8_t { kDevice, kProject };

    /// A label on the left and what it stands for on the right.
    struct Line {
        Text label;
        Text value;

        bool operator==(const Line&) const = default;
    };

    static constexpr int kLines = 5;
    static constexpr int kRequiredLines = 2;  // stand in the table before the version
    static constexpr int kLinePitch = 15;     // design pixels, as is:
    static constexpr int kFontHeight = 11;
    static constexpr std::uint32_t kTicksOfRefresh = 50;

    void MakeButton(ToggleButtonWin*& place, Element element, Page page, const char16_t* name,
                    const char16_t* hint);
    void MakeLine(int index);
    void Choose(Page page);
    void Gather();
    [[nodiscard]] Text Location(Text folder) const;
    [[nodiscard]] std::vector<Line> DeviceLines(const AboutInfo& info) const;
    [[nodiscard]] std::vector<Line> ProjectLines(const AboutInfo& info) const;

    std::function<AboutInfo()> ask_;
    Font font_;
    Page page_ = Page::kDevice;
    std::uint32_t ticks_ = 0;
    std::vector<Line> shown_;
    ToggleButtonWin* device_ = nullptr;
    ToggleButtonWin* project_ = nullptr;
    std::vector<StaticTextWin*> labels_;
    std::vector<StaticTextWin*> values_;
};

}  // namespace orma
