#pragma once

#include <QWidget>
#include <span>
#include <string>
#include <vector>

#include "setup/settings_check.h"
#include "setup/setup_document.h"
#include "window/setup/field_editor.h"

class QLabel;

namespace orma {

/// The fields of some rows, one below the other, each with its explanation and with what is wrong
/// with it. What is typed stands in the document at once.
class SetupForm : public QWidget {
  public:
    struct Look {
        int labelWidth = 130;  // pixels
        bool compact = false;  // closer together
    };

    /// `document` outlives the form; `edited` hears the setting that the user changed.
    SetupForm(SetupDocument& document, SetupFields rows, const FieldChoices& choices,
              const std::function<void(const std::string& setting)>& edited, Look look);
    SetupForm(SetupDocument& document, SetupFields rows, const FieldChoices& choices,
              const std::function<void(const std::string& setting)>& edited)
        : SetupForm(document, rows, choices, edited, Look{}) {}

    /// Shows the settings whose names begin with `prefix`.
    void ShowValues(const std::string& prefix = {});

    /// Shows the faults that are this form's, and hides earlier ones. True when there are any.
    bool ShowFaults(std::span<const SettingsFault> faults);

    /// Brings the keyboard to a setting's field; false when it has none here.
    bool FocusOn(const std::string& setting);

    /// ... to the first field.
    void FocusOnFirst();

  private:
    void ShowNeeds();

    struct Row {
        const SetupField* field;
        FieldEditor editor;
        QLabel* label;  // null: the widget bears it
        QLabel* fault;
    };

    SetupDocument& document_;
    std::string prefix_;
    std::vector<Row> rows_;
};

}  // namespace orma
