#pragma once

#include <QDialog>

#include "app/input_options.h"

class QCheckBox;
class QComboBox;
class QSlider;

namespace orma {

class EqualizerView;

/// "Input options": the equaliser's set with its curve, the input gain, and whether this project
/// records straight to FTP. It changes nothing; once it is accepted, its owner applies Chosen().
class InputOptionsDialog : public QDialog {
  public:
    InputOptionsDialog(InputOptions options, QWidget* parent);

    /// The options as the user set them; those that cannot be chosen are as they were.
    [[nodiscard]] InputOptions Chosen() const;

  private:
    void ShowSet();

    InputOptions options_;
    QComboBox* sets_;
    EqualizerView* view_;
    QSlider* gain_ = nullptr;
    QCheckBox* liveFtp_ = nullptr;
};

/// Shows it over the active window and applies what was chosen, see ApplyInputOptions.
void AskInputOptions(Application& app);

}  // namespace orma
