#include "window/setup/equalizer_page.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/equalizer_view.h"
#include "window/dialogs/qt_text.h"
#include "window/setup/setup_look.h"

namespace orma {
namespace {

std::string PrefixOf(int set) {
    return "Preset[" + std::to_string(set) + "].";
}

}  // namespace

EqualizerPage::EqualizerPage(const SetupContext& context) : context_(context) {
    SetupDocument& document = context_.document;
    const auto edited = [this](const std::string& setting) { Edited(setting); };

    auto* contents = new QWidget;
    auto* page = new QVBoxLayout(contents);
    page->setContentsMargins(2, 2, kDialogMargin, kDialogGap);
    page->setSpacing(kDialogGap);
    options_ =
        new SetupForm(document, SetupFields::kInput, context_.choices, edited, {.labelWidth = 90});
    page->addWidget(options_);
    page->addWidget(NewHairline());

    sets_ = new QComboBox;
    for (std::size_t i = 0; i < document.Record().Preset.size(); ++i)
        sets_->addItem(QString());
    sets_->setAccessibleName(QStringLiteral("Set to edit"));
    connect(sets_, &QComboBox::activated, this, [this](int line) {
        set_ = line;
        ShowSet();
        context_.edited({});  // other faults are to be seen
    });
    form_ = new SetupForm(document, SetupFields::kEqualizerSet, context_.choices, edited,
                          {.labelWidth = 76, .compact = true});
    constexpr std::uint32_t kRates[] = {48000, 44100};
    view_ = new EqualizerView(kRates[document.Record().SampleRateCode == 0 ? 0 : 1]);
    view_->setFixedHeight(170);

    auto* left = new QVBoxLayout;
    left->setSpacing(kDialogGap);
    left->addWidget(NewHeading(QStringLiteral("Set")));
    left->addWidget(sets_);
    left->addWidget(form_);
    left->addStretch(1);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(kDialogMargin);
    upper->addLayout(left, 4);
    upper->addWidget(view_, 7);
    page->addLayout(upper);

    auto* bands = new QHBoxLayout;
    bands->setSpacing(kDialogMargin);
    for (std::size_t i = 0; i < bands_.size(); ++i) {
        bands_[i] = new SetupForm(document, SetupFields::kBand, context_.choices, edited,
                                  {.labelWidth = 64, .compact = true});
        auto* band = new QVBoxLayout;
        band->setSpacing(4);
        band->addWidget(NewHeading(QStringLiteral("Band %1").arg(i + 1)));
        band->addWidget(bands_[i]);
        band->addStretch(1);
        bands->addLayout(band, 1);
    }
    page->addLayout(bands);
    page->addStretch(1);

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(Scrolling(contents));
    ShowValues();
}

std::string EqualizerPage::Prefix() const {
    return PrefixOf(set_);
}

void EqualizerPage::ShowValues() {
    options_->ShowValues();
    ShowSet();
}

void EqualizerPage::ShowSet() {
    form_->ShowValues(Prefix());
    for (std::size_t i = 0; i < bands_.size(); ++i)
        bands_[i]->ShowValues(Prefix() + "Band[" + std::to_string(i) + "].");
    const EqualizerSet& set = context_.document.Record().Preset[static_cast<std::size_t>(set_)];
    name_ = set.name;
    view_->Show(set);
    NameSets();
}

void EqualizerPage::NameSets() {
    const QSignalBlocker quiet(sets_);
    for (int i = 0; i < sets_->count(); ++i) {
        const Text& name = context_.document.Record().Preset[static_cast<std::size_t>(i)].name;
        sets_->setItemText(i, QStringLiteral("%1   %2").arg(i + 1).arg(
                                  name.empty() ? QStringLiteral("(no name)") : ToQt(name)));
    }
    sets_->setCurrentIndex(set_);
}

void EqualizerPage::Edited(const std::string& setting) {
    const SettingsRecord& record = context_.document.Record();
    const EqualizerSet& set = record.Preset[static_cast<std::size_t>(set_)];
    // The set in use is known by its name: it goes with the name.
    if (set.name != name_ && !name_.empty() && record.CurrentPresetName == name_)
        (void)context_.document.Find("CurrentPresetName")->Set(ToUtf8(set.name));
    name_ = set.name;
    options_->ShowValues();
    view_->Show(set);
    NameSets();
    context_.edited(setting);
}

bool EqualizerPage::ShowFaults(std::span<const SettingsFault> faults) {
    // Those of the other sets are seen as well: the window counts them by this page.
    bool any = std::any_of(faults.begin(), faults.end(), [](const SettingsFault& fault) {
        return fault.setting.starts_with("Preset[");
    });
    any = options_->ShowFaults(faults) || any;
    any = form_->ShowFaults(faults) || any;
    for (SetupForm* band : bands_)
        any = band->ShowFaults(faults) || any;
    return any;
}

bool EqualizerPage::FocusOn(const std::string& setting) {
    for (int i = 0; i < sets_->count(); ++i) {
        if (!setting.starts_with(PrefixOf(i))) continue;
        set_ = i;
        ShowSet();
    }
    return options_->FocusOn(setting) || form_->FocusOn(setting) ||
           std::any_of(bands_.begin(), bands_.end(),
                       [&](SetupForm* band) { return band->FocusOn(setting); });
}

}  // namespace orma
