#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/text.h"
#include "ui/paint/ink.h"
#include "ui/skin/colours.h"

namespace orma {

/// News of the list, as the notification code of command 40029. The screen asks the view what
/// happened.
enum class ListNotification : std::uint32_t {
    kSelected = 1,  // the user marked another row: MarkedRow
    kPlayAlone,     // Shift with Return or Space: the marked clip is to be heard, none behind it
    kTitleTyped,    // editing ended with TypedTitle
    kMoveUp,        // the keys that move the marked clip
    kMoveDown,
    kDragged,  // the marked clip was dropped at DropRow
};

/// How the list looks; widths and insets in window pixels.
struct ClipListLook {
    Rect place;  // in the client area
    SkinColours colours;
    int rowHeight = 0;
    int inset = 0;      // of every text, from the left edge of its column
    int hairline = 1;   // thickness of dividing lines
    int scrollBar = 5;  // thickness
    bool header = false;
};

struct ClipListColumn {
    Text title;
    int width = 0;           // window pixels
    bool takesRest = false;  // wider, up to the list's right edge
};

/// All that the list shows: a row of cells for each clip, then rows that are none, of two cells,
/// the second of which may reach to the right edge.
struct ClipListContent {
    Font names;  // of the first column
    Font texts;  // of all others, and of the header
    std::vector<ClipListColumn> columns;
    std::vector<std::vector<Text>> rows;
    std::size_t clips = 0;     // rows that can be renamed and dragged
    std::int32_t marked = -1;  // which is scrolled into view; -1: none
};

/// The list control of the clip editor, a child of the window's page in report view: one row is
/// marked, the first cell of a row can be edited. It exists between Create and Destroy, and while
/// it does, it has the keyboard; keys that mean nothing to a list are the screen's. UI thread.
///
/// The user's doings arrive as notifications while the operation of the toolkit goes on, so every
/// operation but Destroy may be called from within. Show and Mark tell nothing of what they change.
class ClipListView {
  public:
    virtual ~ClipListView() = default;

    /// `mayEdit` is asked before the title of a clip is edited, by its row.
    virtual void Create(const ClipListLook& look,
                        std::function<bool(std::int32_t row)> mayEdit) = 0;

    /// Nothing when there is none.
    virtual void Destroy() = 0;

    /// Replaces what is shown and takes the keyboard.
    virtual void Show(const ClipListContent& content) = 0;

    /// Marks a row and scrolls it into view.
    virtual void Mark(std::int32_t row) = 0;

    [[nodiscard]] virtual std::int32_t MarkedRow() const = 0;  // -1: none
    [[nodiscard]] virtual Text TypedTitle() const = 0;
    [[nodiscard]] virtual std::int32_t DropRow() const = 0;  // what the clip's own row becomes
};

}  // namespace orma
