#pragma once

#include <QWidget>

#include "window/setup/setup_form.h"

namespace orma {

/// What every page works on; the document outlives the pages.
struct SetupContext {
    SetupDocument& document;
    FieldChoices choices;
    std::function<void(const std::string& setting)> edited;
};

/// One page of the set-up window.
class SetupPage : public QWidget {
  public:
    /// Shows what the document holds: after a load or an import, and when the page is entered.
    virtual void ShowValues() = 0;

    /// Shows the faults that belong to this page and hides earlier ones. True when there are any.
    virtual bool ShowFaults(std::span<const SettingsFault> faults) = 0;

    /// Brings the keyboard to a setting's field; false when it stands on another page.
    virtual bool FocusOn(const std::string& setting) = 0;
};

/// A page that is one form.
class FormPage : public SetupPage {
  public:
    FormPage(const SetupContext& context, SetupFields rows);

    void ShowValues() override { form_->ShowValues(); }
    bool ShowFaults(std::span<const SettingsFault> faults) override {
        return form_->ShowFaults(faults);
    }
    bool FocusOn(const std::string& setting) override { return form_->FocusOn(setting); }

  private:
    SetupForm* form_;
};

}  // namespace orma
