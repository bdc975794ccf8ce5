#include "window/qt_clip_list.h"

#include "window/clip_tree.h"
#include "window/page_widget.h"

namespace orma {

QtClipList::QtClipList(std::function<PageWidget*()> page, Ink& ink,
                       std::function<void(ListNotification)> tell)
    : page_(std::move(page)), ink_(ink), tell_(std::move(tell)) {}

QtClipList::~QtClipList() {
    delete tree_.data();
}

void QtClipList::Create(const ClipListLook& look, std::function<bool(std::int32_t row)> mayEdit) {
    Destroy();
    PageWidget* const page = page_();
    if (page == nullptr) return;
    tree_ = new ClipTree(*page, ink_, look, std::move(mayEdit), tell_);
    page->setFocusProxy(tree_);
    tree_->show();
}

// Maybe from within one of its own events.
void QtClipList::Destroy() {
    if (!tree_) return;
    tree_->EndEditing();
    tree_->Silence();
    if (PageWidget* const page = page_()) {
        const bool had = tree_->hasFocus();
        page->setFocusProxy(nullptr);
        if (had) page->setFocus();
    }
    tree_->hide();
    tree_->deleteLater();
    tree_.clear();
}

void QtClipList::Show(const ClipListContent& content) {
    if (tree_) tree_->Show(content);
}

void QtClipList::Mark(std::int32_t row) {
    if (tree_) tree_->Mark(row);
}

std::int32_t QtClipList::MarkedRow() const {
    return tree_ ? tree_->MarkedRow() : -1;
}

Text QtClipList::TypedTitle() const {
    return tree_ ? tree_->TypedTitle() : Text();
}

std::int32_t QtClipList::DropRow() const {
    return tree_ ? tree_->DropRow() : -1;
}

}  // namespace orma
