#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/clock.h"
#include "publish/progress.h"
#include "ui/controls/prg_bar_win.h"
#include "ui/controls/push_button_win.h"
#include "ui/controls/static_text_win.h"
#include "ui/screens/transfer_estimate.h"
#include "ui/screens/w_win.h"

namespace orma {

/// The progress of a publish job, which blocks the window until its end: what it does, how far it
/// is, how long it will take, and a button to cancel it. It starts anew whenever it is entered. A
/// job may tell and ask as often as it likes: news are shown, and the pointer is let in, at most
/// every kFrameMs, and always within IsCancelled. UI thread.
class ProgressWWin : public WWin, public PublishProgress {
  public:
    static constexpr std::uint32_t kFrameMs = 50;

    /// `letPointerIn` is called from within the job by IsCancelled: it shows what was painted and
    /// passes on what the left pointer button has done since, and nothing else. `clock` outlives
    /// the screen.
    ProgressWWin(const Scene& scene, ScreenHost& host, Clock& clock,
                 std::function<void()> letPointerIn);

    void Entered() override;

    /// What the Cancel button does.
    void Cancel();

    // PublishProgress
    void SetText(const Text& text) override;
    void SetRange(std::uint32_t steps) override;
    void Step(std::uint32_t steps) override;
    void SetBytes(std::uint64_t done, std::uint64_t total) override;
    [[nodiscard]] bool IsCancelled() override;

  private:
    static constexpr int kLinePitch = 26;  // design pixels

    [[nodiscard]] StaticTextWin* AddLine(int index, SkinFont font, const char16_t* name,
                                         const char16_t* hint);
    void ShowBytes(std::uint32_t now);

    Clock& clock_;
    std::function<void()> letPointerIn_;
    bool cancelled_ = false;
    std::optional<std::uint32_t> shownAt_;  // ticks; none: what is new is shown at once
    std::uint32_t done_ = 0;                // steps
    std::uint32_t range_ = 0;
    std::uint64_t doneBytes_ = 0;
    std::uint64_t totalBytes_ = 0;  // 0: no bytes were told of
    TransferEstimate estimate_;
    PushButtonWin* cancel_ = nullptr;
    PrgBarWin* bar_ = nullptr;
    StaticTextWin* text_ = nullptr;
    StaticTextWin* bytes_ = nullptr;
};

}  // namespace orma
