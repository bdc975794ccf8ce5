#include "window/setup/setup_form.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <algorithm>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/setup/setup_look.h"

namespace orma {
namespace {

/// A setting of the same kind and range, whichever entry the rows are shown for.
std::string FirstPrefix(SetupFields rows) {
    switch (rows) {
        case SetupFields::kFtpAccount:
            return "Ftp[0].";
        case SetupFields::kMailAccount:
            return "Smtp[0].";
        case SetupFields::kEqualizerSet:
            return "Preset[0].";
        case SetupFields::kBand:
            return "Preset[0].Band[0].";
        default:
            return {};
    }
}

}  // namespace

SetupForm::SetupForm(SetupDocument& document, SetupFields rows, const FieldChoices& choices,
                     const std::function<void(const std::string& setting)>& edited, Look look)
    : document_(document), prefix_(FirstPrefix(rows)) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(look.compact ? 6 : kDialogGap);
    grid->setVerticalSpacing(look.compact ? 4 : 5);
    grid->setColumnMinimumWidth(0, look.labelWidth);
    grid->setColumnStretch(1, 1);
    int line = 0;
    for (const SetupField& field : FieldsOf(rows)) {
        const std::string name(field.setting);
        const Setting* const range = document_.Find(prefix_ + name);
        if (range == nullptr) continue;  // a test holds the rows to the settings
        if (*field.heading != '\0') {
            if (line > 0) grid->setRowMinimumHeight(line++, kDialogGap);
            grid->addWidget(NewHeading(QString::fromUtf8(field.heading)), line++, 0, 1, 2);
        }
        Row row{.field = &field,
                .editor = MakeFieldEditor(field, *range, choices,
                                          [this, name, edited](const std::string& value) {
                                              const std::string setting = prefix_ + name;
                                              const Setting* const target = document_.Find(setting);
                                              if (target == nullptr) return;
                                              (void)target->Set(value);  // the widget has its range
                                              ShowNeeds();
                                              edited(setting);
                                          }),
                .label = nullptr,
                .fault = NewFault()};
        const bool isCheck = field.kind == SetupField::Kind::kCheck;
        if (!isCheck) {
            row.label = NewLegend(QString::fromUtf8(field.label));
            row.label->setBuddy(row.editor.focus);
            row.editor.focus->setAccessibleName(row.label->text());
            grid->addWidget(row.label, line, 0);
        }
        row.editor.focus->setAccessibleDescription(QString::fromUtf8(field.explanation));
        // A short field keeps its width, a long one takes what there is.
        const bool isShort = row.editor.widget->maximumWidth() < QWIDGETSIZE_MAX || isCheck;
        grid->addWidget(row.editor.widget, line++, 1, isShort ? Qt::AlignLeft : Qt::Alignment());
        grid->addWidget(row.fault, line++, 1);
        if (*field.explanation != '\0') {
            QLabel* const text = NewRemark(QString::fromUtf8(field.explanation));
            if (isCheck) text->setIndent(24);  // below the words, not the box
            grid->addWidget(text, line++, 1);
        }
        if (!look.compact) grid->setRowMinimumHeight(line++, 2);
        rows_.push_back(std::move(row));
    }
    ShowValues(prefix_);
}

void SetupForm::ShowValues(const std::string& prefix) {
    prefix_ = prefix;
    for (const Row& row : rows_) {
        const Setting* const setting = document_.Find(prefix_ + std::string(row.field->setting));
        if (setting != nullptr) row.editor.show(setting->Get());
    }
    ShowNeeds();
}

/// Fields whose check is off are kept, but out of reach.
void SetupForm::ShowNeeds() {
    for (const Row& row : rows_) {
        if (row.field->needs.empty()) continue;
        const Setting* const check = document_.Find(prefix_ + std::string(row.field->needs));
        const bool counts = check != nullptr && check->Get() != "0";
        row.editor.widget->setEnabled(counts);
        if (row.label != nullptr) row.label->setEnabled(counts);
    }
}

bool SetupForm::ShowFaults(std::span<const SettingsFault> faults) {
    bool any = false;
    for (const Row& row : rows_) {
        const std::string name = prefix_ + std::string(row.field->setting);
        const auto fault = std::find_if(faults.begin(), faults.end(),
                                        [&](const auto& one) { return one.setting == name; });
        row.fault->setVisible(fault != faults.end());
        if (fault == faults.end()) continue;
        row.fault->setText(QString::fromStdString(fault->text));
        any = true;
    }
    return any;
}

bool SetupForm::FocusOn(const std::string& setting) {
    for (const Row& row : rows_) {
        if (prefix_ + std::string(row.field->setting) != setting) continue;
        row.editor.focus->setFocus();
        for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget())
            if (auto* area = qobject_cast<QScrollArea*>(above))
                area->ensureWidgetVisible(row.editor.widget);
        return true;
    }
    return false;
}

void SetupForm::FocusOnFirst() {
    if (rows_.empty()) return;
    QWidget* const first = rows_.front().editor.focus;
    first->setFocus();
    if (auto* line = qobject_cast<QLineEdit*>(first)) line->selectAll();
}

}  // namespace orma
