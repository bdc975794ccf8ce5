#pragma once

#include <QPointer>
#include <functional>

#include "ui/screens/clip_list_view.h"

namespace orma {

class ClipTree;
class PageWidget;

/// The clip editor's list as a widget on the page. It has the page's keyboard while it exists, and
/// leaves to the page what it does not use.
class QtClipList : public ClipListView {
  public:
    /// `page` tells the present page, null without a window; `ink` outlives the list; `tell`
    /// carries the news on.
    QtClipList(std::function<PageWidget*()> page, Ink& ink,
               std::function<void(ListNotification)> tell);
    ~QtClipList() override;
    QtClipList(const QtClipList&) = delete;
    QtClipList& operator=(const QtClipList&) = delete;

    void Create(const ClipListLook& look, std::function<bool(std::int32_t row)> mayEdit) override;
    void Destroy() override;
    void Show(const ClipListContent& content) override;
    void Mark(std::int32_t row) override;
    [[nodiscard]] std::int32_t MarkedRow() const override;
    [[nodiscard]] Text TypedTitle() const override;
    [[nodiscard]] std::int32_t DropRow() const override;

  private:
    std::function<PageWidget*()> page_;
    Ink& ink_;
    std::function<void(ListNotification)> tell_;
    QPointer<ClipTree> tree_;  // the page's child
};

}  // namespace orma
