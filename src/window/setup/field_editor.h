#pragma once

#include <QStringList>
#include <functional>
#include <string>

#include "settings/settings_table.h"
#include "setup/setup_field.h"

class QWidget;

namespace orma {

/// What some fields offer, asked for whenever they are shown.
struct FieldChoices {
    std::function<QStringList()> inputs;         // names of recording devices
    std::function<QStringList()> outputs;        // names of playback devices
    std::function<QStringList()> equalizerSets;  // names of the sets
};

/// The widget of one field. Values are texts as Setting::Get and Set have them.
struct FieldEditor {
    QWidget* widget = nullptr;  // what stands in the form
    QWidget* focus = nullptr;   // the part of it that is typed into
    std::function<void(const std::string& value)> show;
};

/// Tells a value that the user made; it is never called by `show`.
using FieldEdited = std::function<void(const std::string& value)>;

/// The widget for a field; `range` is a setting of that kind and range.
[[nodiscard]] FieldEditor MakeFieldEditor(const SetupField& field, const Setting& range,
                                          const FieldChoices& choices, FieldEdited edited);

}  // namespace orma
