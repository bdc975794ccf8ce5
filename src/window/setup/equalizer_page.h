#pragma once

#include <array>

#include "window/setup/setup_page.h"

class QComboBox;

namespace orma {

class EqualizerView;

/// The input: the set in use, and the five sets with their bands and what these do to the sound.
class EqualizerPage : public SetupPage {
  public:
    explicit EqualizerPage(const SetupContext& context);

    void ShowValues() override;
    bool ShowFaults(std::span<const SettingsFault> faults) override;
    bool FocusOn(const std::string& setting) override;

  private:
    [[nodiscard]] std::string Prefix() const;
    void ShowSet();
    void NameSets();
    void Edited(const std::string& setting);

    SetupContext context_;
    int set_ = 0;
    Text name_;  // of the set, as it was shown last
    SetupForm* options_;
    QComboBox* sets_;
    SetupForm* form_;
    std::array<SetupForm*, 3> bands_;
    EqualizerView* view_;
};

}  // namespace orma
