#include "ui/screens/progress_w_win.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace orma {
namespace {

/// "0:07", "12:34", "1:02:03".
Text TimeText(std::uint32_t seconds) {
    const auto part = [](std::uint32_t value) { return static_cast<unsigned>(value); };
    if (seconds < 3600) return FormatText("%u:%02u", part(seconds / 60), part(seconds % 60));
    return FormatText("%u:%02u:%02u", part(seconds / 3600), part(seconds / 60 % 60),
                      part(seconds % 60));
}

/// A size as people read it: "512 KB", "12.3 MB".
Text SizeText(std::uint64_t bytes) {
    constexpr std::uint64_t kMega = 1000000;
    if (bytes < kMega) return FormatText("%u KB", static_cast<unsigned>((bytes + 999) / 1000));
    return FormatText("%.1f MB", static_cast<double>(bytes) / kMega);
}

}  // namespace

ProgressWWin::ProgressWWin(const Scene& scene, ScreenHost& host, Clock& clock,
                           std::function<void()> letPointerIn)
    : WWin(ScreenIndex::kProgress, scene, host),
      clock_(clock),
      letPointerIn_(std::move(letPointerIn)) {
    cancel_ = Add(
        std::make_unique<PushButtonWin>(OwnScene(), Element::ProgressCancel, [this] { Cancel(); }));
    cancel_->SetLabel({ControlRole::kButton,
                       u"Cancel",
                       u"Break off; what has arrived by then is incomplete",
                       {}});
    bar_ = Add(std::make_unique<PrgBarWin>(OwnScene(), Element::ProgressBar));
    bar_->SetLabel({ControlRole::kProgress, u"Progress", u"How much of it is done", {}});
    text_ = AddLine(0, SkinFont::kName, u"Publishing", u"What is being done");
    bytes_ = AddLine(1, SkinFont::kText, u"Sent", u"How much of the file is written or sent");
}

StaticTextWin* ProgressWWin::AddLine(int index, SkinFont font, const char16_t* name,
                                     const char16_t* hint) {
    const Skin& skin = OwnScene().skin;
    Rect rect = skin.RectOf(Element::ProgressText);
    rect.y += skin.Scaled(index * kLinePitch);
    StaticTextWin* const line = Add(
        std::make_unique<StaticTextWin>(OwnScene(), rect, skin.FontOf(font), TextGround::kPage));
    line->SetLabel({ControlRole::kText, name, hint, {}});
    return line;
}

void ProgressWWin::Entered() {
    cancelled_ = false;
    done_ = 0;
    range_ = 0;
    totalBytes_ = 0;
    shownAt_.reset();
    text_->SetText({});
    bytes_->SetText({});
    WWin::Entered();
    bar_->SetProgress(done_, range_);
}

void ProgressWWin::Cancel() {
    if (std::exchange(cancelled_, true)) return;
    text_->SetText(u"  Cancelling...  ");
    Host().Announce(u"Cancelling");
}

// The job's next steps do not take the answer to the button away.
void ProgressWWin::SetText(const Text& text) {
    bytes_->SetText({});
    totalBytes_ = 0;
    estimate_.Restart();
    if (!cancelled_) text_->SetText(text);
    shownAt_.reset();
}

void ProgressWWin::SetRange(std::uint32_t steps) {
    range_ = steps;
    done_ = 0;
    shownAt_.reset();
}

void ProgressWWin::Step(std::uint32_t steps) {
    done_ += std::min(steps, range_ - std::min(done_, range_));
}

void ProgressWWin::SetBytes(std::uint64_t done, std::uint64_t total) {
    doneBytes_ = done;
    totalBytes_ = total;
}

bool ProgressWWin::IsCancelled() {
    const std::uint32_t now = clock_.Ticks();
    if (shownAt_ && now - *shownAt_ < kFrameMs) return cancelled_;
    bar_->SetProgress(done_, range_);
    ShowBytes(now);
    if (letPointerIn_) letPointerIn_();
    shownAt_ = clock_.Ticks();
    return cancelled_;
}

// Also without news: in a transfer that stands still the time that is left grows.
void ProgressWWin::ShowBytes(std::uint32_t now) {
    if (totalBytes_ == 0) return;
    Text text = SizeText(doneBytes_) + u" of " + SizeText(totalBytes_);
    if (const auto left = estimate_.SecondsLeft(now, doneBytes_, totalBytes_))
        text += u", " + TimeText(*left) + u" left";
    bytes_->SetText(text);
}

}  // namespace orma
