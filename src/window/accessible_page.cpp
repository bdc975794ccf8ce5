#include "window/accessible_page.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QAccessibleWidget>
#include <algorithm>
#include <map>

#include "window/announcer.h"
#include "window/dialogs/qt_text.h"
#include "window/page_widget.h"

namespace orma {
namespace {

QAccessible::Role RoleOf(ControlRole role) {
    switch (role) {
        case ControlRole::kButton:
        case ControlRole::kToggle:
            return QAccessible::Button;
        case ControlRole::kKnob:
            return QAccessible::Dial;
        case ControlRole::kMeter:
        case ControlRole::kLamp:
            return QAccessible::Indicator;
        case ControlRole::kGraph:
            return QAccessible::Chart;
        case ControlRole::kScrollBar:
            return QAccessible::ScrollBar;
        case ControlRole::kProgress:
            return QAccessible::ProgressBar;
        case ControlRole::kText:
        case ControlRole::kNone:
            break;
    }
    return QAccessible::StaticText;
}

/// One control. It may outlive the control or its turn on the page: it is invalid then.
class AccessibleControl : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    AccessibleControl(PageWidget& page, Win& control) : page_(page), control_(control) {}

    [[nodiscard]] bool isValid() const override {
        const auto controls = page_.Controls();
        return std::ranges::count(controls, &control_) != 0;
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&page_);
    }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    void setText(QAccessible::Text /*what*/, const QString& /*text*/) override {}

    [[nodiscard]] QString text(QAccessible::Text what) const override {
        if (!isValid()) return {};
        switch (what) {
            case QAccessible::Name:
                return ToQt(control_.Label().name);
            case QAccessible::Description:
                return ToQt(control_.Label().hint);
            case QAccessible::Accelerator:
                return ToQt(control_.Label().shortcut);
            case QAccessible::Value:
                return ToQt(control_.Value());
            default:
                return {};
        }
    }
    [[nodiscard]] QRect rect() const override {
        if (!isValid()) return {};
        const Rect& bounds = control_.Bounds();
        return {page_.mapToGlobal(QPoint(bounds.x, bounds.y)), QSize(bounds.w, bounds.h)};
    }
    [[nodiscard]] QAccessible::Role role() const override {
        return isValid() ? RoleOf(control_.Label().role) : QAccessible::NoRole;
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = PageWidget::CanPress(control_) || PageWidget::CanStep(control_);
        state.focused = page_.hasFocus() && page_.Focused() == &control_;
        state.checkable = control_.Label().role == ControlRole::kToggle;
        state.checked = state.checkable && control_.IsOn();
        state.readOnly = !state.focusable;
        state.disabled = !control_.IsEnabled();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type != QAccessible::ActionInterface) return nullptr;
        return static_cast<QAccessibleActionInterface*>(this);
    }

    [[nodiscard]] QStringList actionNames() const override {
        if (!isValid()) return {};
        if (PageWidget::CanPress(control_)) return {pressAction()};
        if (PageWidget::CanStep(control_)) return {increaseAction(), decreaseAction()};
        return {};
    }
    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) return;
        if (name == pressAction()) page_.PressControl(control_);
        if (name == increaseAction()) page_.StepControl(control_, 1);
        if (name == decreaseAction()) page_.StepControl(control_, -1);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override {
        if (name != pressAction() || !isValid() || control_.Label().shortcut.empty()) return {};
        return {ToQt(control_.Label().shortcut)};
    }

  private:
    PageWidget& page_;
    Win& control_;
};

/// The page: its children are the controls of the present screen, then the widgets on it.
class AccessiblePage : public QAccessibleWidget {
  public:
    explicit AccessiblePage(PageWidget& page)
        : QAccessibleWidget(&page, QAccessible::Grouping), page_(page) {}
    ~AccessiblePage() override {
        for (const auto& [control, id] : ids_)
            QAccessible::deleteAccessibleInterface(id);
    }

    [[nodiscard]] int childCount() const override {
        return static_cast<int>(page_.Controls().size()) + QAccessibleWidget::childCount();
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const auto controls = page_.Controls();
        const auto count = static_cast<int>(controls.size());
        if (index < 0) return nullptr;
        if (index >= count) return QAccessibleWidget::child(index - count);
        return Of(*controls[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < childCount(); ++i)
            if (this->child(i) == child) return i;
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint at = page_.mapFromGlobal(QPoint(x, y));
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
            QAccessibleInterface* const widget = QAccessibleWidget::child(i);
            if (widget != nullptr && widget->rect().contains(x, y)) return widget;
        }
        Win* const control = page_.ControlAt({at.x(), at.y()});
        return control == nullptr ? nullptr : Of(*control);
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        Win* const control = page_.hasFocus() ? page_.Focused() : nullptr;
        return control == nullptr ? QAccessibleWidget::focusChild() : Of(*control);
    }

  private:
    [[nodiscard]] QAccessibleInterface* Of(Win& control) const {
        const auto [known, isNew] = ids_.try_emplace(&control, 0);
        if (isNew)
            known->second =
                QAccessible::registerAccessibleInterface(new AccessibleControl(page_, control));
        return QAccessible::accessibleInterface(known->second);
    }

    PageWidget& page_;
    mutable std::map<const Win*, QAccessible::Id> ids_;
};

QAccessibleInterface* MakeInterface(const QString& /*className*/, QObject* object) {
    if (auto* const page = dynamic_cast<PageWidget*>(object)) return new AccessiblePage(*page);
    if (auto* const announcer = dynamic_cast<Announcer*>(object))
        return AccessibleAnnouncer(*announcer);
    return nullptr;
}

}  // namespace

void InstallAccessiblePage() {
    QAccessible::installFactory(MakeInterface);
}

}  // namespace orma
