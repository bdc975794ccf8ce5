#include "ui/screens/clip_editor_w_win.h"

#include <algorithm>
#include <utility>

#include "project/clip_operations.h"
#include "project/clip_texts.h"

namespace orma {
namespace {

constexpr int kLeastWidth = 20;  // of a column, design pixels

/// Heights of the letters, design pixels.
struct Letters {
    int names;
    int texts;
};
constexpr Letters kLetters[] = {{12, 11}, {12, 10}, {11, 10}, {11, 9}, {10, 9}};

}  // namespace

void ClipEditorWWin::RightDown(Point /*at*/) {
    s_.project.Readers().files.report.Boxes().Show(
        {.text = u"rbutton clip editor", .title = u"text", .icon = BoxIcon::kNone});
}

void ClipEditorWWin::OnListNotification(std::uint32_t code) {
    if (busy_ || !IsEntered()) return;
    switch (static_cast<ListNotification>(code)) {
        case ListNotification::kSelected:
            return Select(s_.list.MarkedRow());
        case ListNotification::kPlayAlone:
            return PlayFromCurrent(true);
        case ListNotification::kTitleTyped:
            return Rename(s_.list.MarkedRow(), s_.list.TypedTitle());
        case ListNotification::kMoveUp:
            return MoveUp();
        case ListNotification::kMoveDown:
            return MoveDown();
        case ListNotification::kDragged:
            return MoveTo(s_.list.DropRow());
    }
}

bool ClipEditorWWin::IsPlaying() const {
    const TransportState state = s_.transport.State();
    return state == TransportState::kPlaying || state == TransportState::kFastForward ||
           state == TransportState::kRewind;
}

bool ClipEditorWWin::IsIdle() const {
    return !IsPlaying() && !s_.transport.IsCapturing();
}

bool ClipEditorWWin::IsTotalMarked() const {
    return s_.list.MarkedRow() == s_.project.Clips().Count();
}

// Playing

void ClipEditorWWin::Stop() {
    if (IsPlaying()) s_.transport.Stop(true);
}

void ClipEditorWWin::PlayFromCurrent(bool alone) {
    if (!IsIdle()) return;
    ClipList& clips = s_.project.Clips();
    alone_ = alone;
    playing_.emplace(s_.project, clips.CurrentIndex(), alone ? 1 : clips.Count());
    const std::uint16_t channels = playing_->Channels();
    const auto range = channels != 0 ? playing_->Next() : std::nullopt;
    if (range) MarkCurrent();
    if (!range || !s_.transport.PlayRange(*range, channels)) playing_.reset();
}

std::optional<PeriodRange> ClipEditorWWin::NextRange() {
    const auto range = playing_ ? playing_->Next() : std::nullopt;
    if (range) MarkCurrent();
    return range;
}

void ClipEditorWWin::OnTransportState(TransportState state, const LitButtons& lit) {
    if (state == TransportState::kStopped) playing_.reset();
    Light(lit);
}

void ClipEditorWWin::Light(const LitButtons& lit) {
    stop_->SetState(lit.stop);
    play_->SetState(lit.play && !lit.record);
}

// Editing the list. Failures to save are reported, and the list shows what is true.

// A clip whose recording is missing is current all the same, so that it can be removed; nothing of
// the recording that was current before may then be taken for its own.
void ClipEditorWWin::Select(std::int32_t index) {
    ClipList& clips = s_.project.Clips();
    if (s_.transport.IsCapturing()) return MarkCurrent();
    if (index < 0 || index >= clips.Count()) return;
    Stop();
    if (!s_.project.SelectClip(index)) {
        (void)clips.SetCurrent(index);
        s_.project.ClearRecording();
    }
    s_.transport.MoveTo(0);
    Host().UpdateMenus();
}

// With the row of the total marked, the new clip goes to the end.
void ClipEditorWWin::Insert() {
    if (!IsIdle()) return;
    const std::optional<Text> path = s_.askClip();
    if (!path || !IsIdle()) return;  // a key of the device may have begun something
    ClipList& clips = s_.project.Clips();
    const std::int32_t current = clips.CurrentIndex();
    if (IsTotalMarked()) clips.ClearCurrent();
    if (!AddClip(s_.project, *path, false) && clips.CurrentIndex() < 0)
        (void)clips.SetCurrent(current);
    ListChanged();
}

void ClipEditorWWin::Remove() {
    if (!IsIdle() || IsTotalMarked()) return;
    (void)RemoveCurrentClip(s_.project, false);
    ListChanged();
}

void ClipEditorWWin::Rename(std::int32_t index, const Text& title) {
    const ClipList& clips = s_.project.Clips();
    if (!IsIdle() || index < 0 || index >= clips.Count()) return;
    if (title == clips.At(index).ShownName()) return;
    (void)RenameClip(s_.project, index, title, false);
    Fill();
}

void ClipEditorWWin::MoveUp() {
    MoveTo(s_.project.Clips().CurrentIndex() - 1);
}

void ClipEditorWWin::MoveDown() {
    MoveTo(s_.project.Clips().CurrentIndex() + 1);
}

// What follows the clip that is heard may be another one now.
void ClipEditorWWin::MoveTo(std::int32_t index) {
    const ClipList& clips = s_.project.Clips();
    if (s_.transport.IsCapturing() || IsTotalMarked() || index < 0 || index >= clips.Count())
        return;
    (void)MoveClipTo(s_.project, index);
    if (playing_ && !alone_) playing_.emplace(s_.project, clips.CurrentIndex() + 1, clips.Count());
    Fill();
}

void ClipEditorWWin::Renew() {
    if (IsIdle()) CheckAllClips(s_.project);
    Fill();
}

void ClipEditorWWin::ListChanged() {
    s_.transport.MoveTo(0);
    Fill();
    Host().UpdateMenus();
}

// What the list shows

void ClipEditorWWin::Refresh() {
    Light(ButtonsOf(s_.transport.State()));
    if (IsEntered()) Renew();
}

void ClipEditorWWin::Entered() {
    WWin::Entered();
    s_.list.Create(look_, [this](std::int32_t row) {
        return row >= 0 && row < s_.project.Clips().Count() && IsIdle();
    });
    Refresh();
    Host().UpdateMenus();
}

void ClipEditorWWin::Left() {
    Stop();
    s_.list.Destroy();
    WWin::Left();
    Host().UpdateMenus();
}

// A take has become a clip.
void ClipEditorWWin::OnClosed() {
    if (IsEntered()) Fill();
}

void ClipEditorWWin::MarkCurrent() {
    if (!IsEntered()) return;
    busy_ = true;
    s_.list.Mark(s_.project.Clips().CurrentIndex());
    busy_ = false;
}

void ClipEditorWWin::Fill() {
    if (!IsEntered()) return;
    const ClipListContent content = Content();
    busy_ = true;
    s_.list.Show(content);
    busy_ = false;
}

std::vector<Text> ClipEditorWWin::RowOf(const ClipEntry& clip) const {
    if (detailed_) return {clip.ShownName(), clip.lengthText, clip.timeDateText, clip.location};
    return {clip.ShownName(), clip.description};
}

ClipListContent ClipEditorWWin::Content() const {
    const ClipList& clips = s_.project.Clips();
    ClipListContent content;
    if (detailed_)
        content.columns = {{u"Name"}, {u"Min."}, {u"Time/Date"}, {u"Location"}};
    else
        content.columns = {{u"Name"}, {u"Description"}};
    for (std::int32_t i = 0; i < clips.Count(); ++i)
        content.rows.push_back(RowOf(clips.At(i)));
    content.clips = content.rows.size();
    content.rows.push_back(
        {u"length:",
         TotalLengthText(clips.TotalLength(), s_.project.Readers().audio.PeriodsPerSecond())});
    content.marked = clips.CurrentIndex();
    const Skin& skin = OwnScene().skin;
    content.names = skin.FontOf(SkinFont::kLabel);
    content.texts = skin.FontOf(SkinFont::kText);
    const auto fits = [&](const Letters& letters) {
        content.names.height = skin.Scaled(letters.names);
        content.texts.height = skin.Scaled(letters.texts);
        SetWidths(content);
        return ShowsDates(content);
    };
    // Small letters only where they help.
    if (std::ranges::none_of(kLetters, fits)) (void)fits(kLetters[0]);
    return content;
}

/// Is the year to be read beside the names, without scrolling?
bool ClipEditorWWin::ShowsDates(const ClipListContent& content) const {
    const std::size_t dates = detailed_ ? 2 : 1;
    int needed = look_.inset;
    for (std::size_t i = 0; i < dates; ++i)
        needed += content.columns[i].width;
    Canvas& canvas = OwnScene().canvas;
    int widest = 0;
    for (std::size_t row = 0; row < content.clips; ++row) {
        const DateTime& made = s_.project.Clips().At(static_cast<std::int32_t>(row)).fileTime;
        const Text year = FormatText("/%02d/%04d", made.month, made.year);
        const Text& text = content.rows[row][dates];
        const std::size_t at = text.find(year);
        if (at == Text::npos) continue;  // the setting leaves dates out
        const Text dated = text.substr(0, at + year.size());
        widest = std::max(widest, canvas.Measure(dated, content.texts).width);
    }
    const int header = detailed_ ? look_.rowHeight + look_.scrollBar : 0;
    const auto visible = static_cast<std::size_t>((look_.place.h - header) / look_.rowHeight);
    const int bar = content.rows.size() > visible ? look_.scrollBar : 0;
    return needed + widest + bar <= look_.place.w;
}

// Two digits more than a text leave room between the columns. The total may reach beyond its
// column. Beside a very long title the description keeps a third of the list, and one scrolls.
void ClipEditorWWin::SetWidths(ClipListContent& content) const {
    Canvas& canvas = OwnScene().canvas;
    for (std::size_t i = 0; i < content.columns.size(); ++i) {
        ClipListColumn& column = content.columns[i];
        const Font& font = i == 0 ? content.names : content.texts;
        const auto widen = [&](const Text& text) {
            column.width = std::max(column.width, canvas.Measure(text + u"00", font).width);
        };
        column.width = OwnScene().skin.Scaled(kLeastWidth);
        if (look_.header) widen(column.title);
        const std::size_t rows = i == 0 ? content.rows.size() : content.clips;
        for (std::size_t row = 0; row < rows; ++row)
            widen(content.rows[row][i]);
    }
    if (detailed_) return;
    ClipListColumn& description = content.columns.back();
    description.width = std::min(description.width, look_.place.w / 3);
    description.takesRest = true;
}

}  // namespace orma
