#include "window/dialogs/input_options_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSlider>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/equalizer_view.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

constexpr int kMostGain = 40;  // dB

QString GainText(int db) {
    return QStringLiteral("%1%2 dB").arg(db > 0 ? QStringLiteral("+") : QString()).arg(db);
}

}  // namespace

InputOptionsDialog::InputOptionsDialog(InputOptions options, QWidget* parent)
    : QDialog(parent), options_(std::move(options)) {
    setWindowTitle(QStringLiteral("Input options"));
    QVBoxLayout* const page = NewPage(*this);
    const auto newGrid = [] {
        auto* grid = new QGridLayout;
        grid->setHorizontalSpacing(kDialogMargin);
        grid->setColumnStretch(1, 1);
        return grid;
    };
    const auto add = [](QGridLayout& grid, const char* name, QWidget* field) {
        QLabel* const label = NewLegend(QString::fromLatin1(name));
        label->setBuddy(field);
        field->setAccessibleName(label->text());
        grid.addWidget(label, 0, 0);
        grid.addWidget(field, 0, 1);
    };
    QGridLayout* const above = newGrid();
    QGridLayout* const below = newGrid();

    sets_ = new QComboBox;
    sets_->addItem(QStringLiteral("(Off)"));
    for (const EqualizerSet& set : options_.sets)
        sets_->addItem(ToQt(set.name));
    sets_->setCurrentIndex(options_.set ? static_cast<int>(*options_.set) + 1 : 0);
    add(*above, "Equaliser", sets_);
    page->addLayout(above);

    view_ = new EqualizerView(options_.sampleRate);
    page->addWidget(view_, 1);
    connect(sets_, &QComboBox::currentIndexChanged, this, [this] { ShowSet(); });
    ShowSet();

    if (options_.gainControl) {
        gain_ = new QSlider(Qt::Horizontal);
        gain_->setRange(0, kMostGain);
        gain_->setPageStep(6);
        gain_->setValue(options_.gainDb);
        add(*below, "Input gain", gain_);
        auto* shown = new QLabel(GainText(options_.gainDb));
        shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance(GainText(kMostGain)));
        shown->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        connect(gain_, &QSlider::valueChanged, shown,
                [shown](int db) { shown->setText(GainText(db)); });
        below->addWidget(shown, 0, 2);
    }
    if (options_.liveFtpAllowed) {
        liveFtp_ = new QCheckBox(QStringLiteral("This project records straight to FTP"));
        liveFtp_->setChecked(options_.liveFtp);
        below->addWidget(liveFtp_, 1, 0, 1, 3);
    }
    page->addLayout(below);
    AddOkAndCancel(*this, *page);
    FitToDisplay(*this);
}

void InputOptionsDialog::ShowSet() {
    const int line = sets_->currentIndex();
    view_->Show(line > 0 ? options_.sets[static_cast<std::size_t>(line - 1)] : EqualizerSet{});
}

InputOptions InputOptionsDialog::Chosen() const {
    InputOptions chosen = options_;
    const int line = sets_->currentIndex();
    chosen.set = line > 0 ? std::optional(static_cast<std::size_t>(line - 1)) : std::nullopt;
    if (gain_ != nullptr) chosen.gainDb = gain_->value();
    if (liveFtp_ != nullptr) chosen.liveFtp = liveFtp_->isChecked();
    return chosen;
}

void AskInputOptions(Application& app) {
    InputOptionsDialog dialog(InputOptionsOf(app), QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted) return;
    (void)ApplyInputOptions(app, dialog.Chosen());  // reported
}

}  // namespace orma
