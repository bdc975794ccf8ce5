#include "ui/screens/about_w_win.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace orma {

AboutWWin::AboutWWin(const Scene& scene, ScreenHost& host, ProductVersion version,
                     std::function<AboutInfo()> ask)
    : WWin(ScreenIndex::kAbout, scene, host),
      ask_(std::move(ask)),
      font_(scene.skin.FontOf(SkinFont::kText)) {
    const Skin& skin = OwnScene().skin;
    font_.height = skin.Scaled(kFontHeight);  // the longest lines fill the display
    MakeButton(device_, Element::AboutDevice, Page::kDevice, u"Device",
               u"Memory, processor and battery of this machine");
    MakeButton(project_, Element::AboutProject, Page::kProject, u"Project",
               u"Place and format of the project");
    StaticTextWin* const name =
        Add(std::make_unique<StaticTextWin>(OwnScene(), skin.RectOf(Element::AboutName),
                                            skin.FontOf(SkinFont::kName), TextGround::kPage));
    name->SetText(u"Orma Edit");
    name->SetLabel({ControlRole::kText, u"Program", u"The name of this program", {}});
    for (int i = 0; i < kRequiredLines; ++i)
        MakeLine(i);
    StaticTextWin* const text = Add(std::make_unique<StaticTextWin>(
        OwnScene(), skin.RectOf(Element::AboutVersion), font_, TextGround::kPage));
    text->SetText(FormatText("Orma Edit V%d.%dR%d (c) 2003-2006", version.major, version.minor,
                             version.release));
    text->SetLabel({ControlRole::kText, u"Version", u"Tell it when you ask for help", {}});
    for (int i = kRequiredLines; i < kLines; ++i)
        MakeLine(i);
    Bind(Key::kLeft, u"The device", [this] { Choose(Page::kDevice); });
    Bind(Key::kRight, u"The project", [this] { Choose(Page::kProject); });
}

void AboutWWin::MakeButton(ToggleButtonWin*& place, Element element, Page page,
                           const char16_t* name, const char16_t* hint) {
    place = Add(std::make_unique<ToggleButtonWin>(OwnScene(), element,
                                                  [this, page](bool) { Choose(page); }));
    place->SetLabel({ControlRole::kToggle, name, hint, {}});
}

// The value's letters stand on the label's line, which is painted first.
void AboutWWin::MakeLine(int index) {
    const Skin& skin = OwnScene().skin;
    Rect rect = skin.RectOf(Element::AboutWindowText);
    rect.y += skin.Scaled(index * kLinePitch);
    rect.h = skin.Scaled(kLinePitch);
    labels_.push_back(
        Add(std::make_unique<StaticTextWin>(OwnScene(), rect, font_, TextGround::kPage)));
    values_.push_back(Add(std::make_unique<StaticTextWin>(
        OwnScene(), rect, font_, TextGround::kNothing, TextAlignment::kRight)));
}

void AboutWWin::Entered() {
    Choose(page_);
    WWin::Entered();
}

void AboutWWin::Tick() {
    if (++ticks_ % kTicksOfRefresh == 0) Gather();
}

void AboutWWin::Choose(Page page) {
    page_ = page;
    device_->SetState(page == Page::kDevice);
    project_->SetState(page == Page::kProject);
    shown_.clear();
    Gather();
}

// A label and its value share a line, so the screen is painted as a whole: only when one changed.
void AboutWWin::Gather() {
    const AboutInfo info = ask_();
    std::vector<Line> lines = page_ == Page::kDevice ? DeviceLines(info) : ProjectLines(info);
    lines.resize(kLines);
    if (lines == shown_) return;
    shown_ = std::move(lines);
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        const Line& line = shown_[i];
        labels_[i]->SetText(line.label);
        values_[i]->SetText(line.value);
        const ControlRole role = line.label.empty() ? ControlRole::kNone : ControlRole::kText;
        labels_[i]->SetLabel({role, line.label, line.value, {}});
    }
    if (IsEntered()) Paint();
}

// Of a folder that is too long, the end tells most.
Text AboutWWin::Location(Text folder) const {
    Text line = u"At: " + folder;
    while (!labels_.front()->Fits(line) && !folder.empty()) {
        folder.erase(0, 1);
        line = u"At: ..." + folder;
    }
    return line;
}

std::vector<AboutWWin::Line> AboutWWin::DeviceLines(const AboutInfo& info) const {
    std::vector<Line> lines;
    if (info.freeMemory) {
        constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
        const auto kilobytes = static_cast<int>(std::min(*info.freeMemory / 1024, kMost));
        lines.push_back({u"Main memory", info.memoryIsShort ? FormatText("%7d*", kilobytes)
                                                            : FormatText("%7d ", kilobytes)});
    }
    if (info.processorLoad)
        lines.push_back({u"Processor-load", FormatText("%d%%", *info.processorLoad)});
    if (info.battery) lines.push_back({u"Battery", FormatText("%d%%", *info.battery)});
    return lines;
}

std::vector<AboutWWin::Line> AboutWWin::ProjectLines(const AboutInfo& info) const {
    std::vector<Line> lines;
    lines.push_back({Location(info.projectLocation), {}});
    lines.push_back({u"Recording format",
                     Text(info.mp2 ? u"mp2" : u"wav") + (info.stereo ? u" stereo" : u" mono")});
    lines.push_back({u"MP2 bitrate (kbit/s)", FormatText("%u", info.bitrate)});
    lines.push_back({u"Input EQ", info.equalizerOn ? info.equalizerSet : Text{u"(Off)"}});
    const std::uint32_t left = info.secondsLeft;
    lines.push_back({u"Available recording time",
                     FormatText("%.2u:%.2u:%.2u", left / 3600, left / 60 % 60, left % 60)});
    return lines;
}

}  // namespace orma
