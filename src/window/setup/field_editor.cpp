#include "window/setup/field_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <cmath>

#include "setup/originator_code.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

QString Shown(const std::string& value) {
    return QString::fromStdString(value);
}

/// Lets a form scroll on when the pointer happens to be over a field that the wheel would change.
class WheelGuard : public QObject {
  public:
    explicit WheelGuard(QWidget* field) : QObject(field), field_(field) {
        field->setFocusPolicy(Qt::StrongFocus);
        field->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel || field_->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }

  private:
    QWidget* field_;
};

FieldEditor Check(const SetupField& field, FieldEdited edited) {
    auto* box = new QCheckBox(QString::fromUtf8(field.label));
    QObject::connect(box, &QCheckBox::toggled, box,
                     [edited = std::move(edited)](bool on) { edited(on ? "1" : "0"); });
    return {box, box, [box](const std::string& value) {
                const QSignalBlocker quiet(box);
                box->setChecked(value != "0");
            }};
}

FieldEditor Number(const SetupField& field, const Setting& range, FieldEdited edited) {
    const bool tenths = field.kind == SetupField::Kind::kTenths;
    const double scale = tenths ? 10 : 1;
    auto* box = new QDoubleSpinBox;
    box->setDecimals(tenths ? 1 : 0);
    box->setRange(static_cast<double>(range.smallest) / scale,
                  static_cast<double>(range.largest) / scale);
    box->setSuffix(QString::fromUtf8(field.unit));
    box->setSingleStep(tenths ? 0.5 : 1);
    constexpr double kShort = 99'999;
    box->setFixedWidth(static_cast<double>(range.largest) > kShort ? 150 : 92);
    new WheelGuard(box);
    QObject::connect(box, &QDoubleSpinBox::valueChanged, box,
                     [edited = std::move(edited), scale](double value) {
                         edited(std::to_string(std::llround(value * scale)));
                     });
    return {box, box, [box, scale](const std::string& value) {
                const QSignalBlocker quiet(box);
                box->setValue(Shown(value).toDouble() / scale);
            }};
}

/// A box of lines that stand for values.
QComboBox* Lines(FieldEdited edited) {
    auto* box = new QComboBox;
    new WheelGuard(box);
    QObject::connect(box, &QComboBox::activated, box, [box, edited = std::move(edited)](int line) {
        edited(box->itemData(line).toString().toStdString());
    });
    return box;
}

/// Chooses the line of a value; where there is none it gets one, as `missing` says.
void Choose(QComboBox& box, const QString& value, const QString& missing) {
    if (box.findData(value) < 0) box.addItem(missing.arg(value), value);
    box.setCurrentIndex(box.findData(value));
}

FieldEditor Choice(const SetupField& field, FieldEdited edited) {
    QComboBox* const box = Lines(std::move(edited));
    for (const SetupField::Choice& choice : field.choices)
        box->addItem(QString::fromUtf8(choice.label), QString::number(choice.value));
    const int offered = box->count();
    return {box, box, [box, offered](const std::string& value) {
                const QSignalBlocker quiet(box);
                while (box->count() > offered)
                    box->removeItem(offered);
                // What an older program stored stays until another choice is made.
                Choose(*box, Shown(value), QStringLiteral("Other (%1)"));
            }};
}

/// A name out of a list, which may lack the one that is set. `none` stands for no name.
FieldEditor Name(const QString& none, std::function<QStringList()> names, FieldEdited edited) {
    QComboBox* const box = Lines(std::move(edited));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return {box, box, [box, none, names = std::move(names)](const std::string& value) {
                const QSignalBlocker quiet(box);
                box->clear();
                box->addItem(none, QString());
                for (const QString& name : names ? names() : QStringList())
                    box->addItem(name, name);
                Choose(*box, Shown(value), QStringLiteral("%1 (not there)"));
            }};
}

QLineEdit* Line(const FieldEdited& edited) {
    auto* line = new QLineEdit;
    QObject::connect(line, &QLineEdit::textEdited, line,
                     [edited](const QString& text) { edited(ToUtf8(FromQt(text))); });
    return line;
}

auto ShowIn(QLineEdit* line) {
    // The same text keeps cursor and undo.
    return [line](const std::string& value) {
        if (line->text() != Shown(value)) line->setText(Shown(value));
    };
}

QWidget* Beside(QLineEdit* line, QWidget* other) {
    auto* both = new QWidget;
    auto* row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kDialogGap);
    row->addWidget(line, 1);
    row->addWidget(other);
    return both;
}

FieldEditor Password(const FieldEdited& edited) {
    QLineEdit* const line = Line(edited);
    line->setEchoMode(QLineEdit::Password);
    auto* show = new QCheckBox(QStringLiteral("Show"));
    QObject::connect(show, &QCheckBox::toggled, line, [line](bool on) {
        line->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password);
    });
    return {Beside(line, show), line, ShowIn(line)};
}

FieldEditor Path(const SetupField& field, const FieldEdited& edited) {
    QLineEdit* const line = Line(edited);
    const bool folder = field.kind == SetupField::Kind::kFolder;
    const QString title = QString::fromUtf8(field.label);
    auto* browse = new QPushButton(QStringLiteral("Browse\u2026"));
    browse->setAccessibleName(QStringLiteral("Browse for: %1").arg(title));
    QObject::connect(browse, &QPushButton::clicked, line, [line, folder, title, edited] {
        const QString chosen =
            folder ? QFileDialog::getExistingDirectory(line->window(), title, line->text())
                   : QFileDialog::getOpenFileName(line->window(), title, line->text());
        if (chosen.isEmpty()) return;
        line->setText(chosen);
        edited(ToUtf8(FromQt(chosen)));
    });
    return {Beside(line, browse), line, ShowIn(line)};
}

FieldEditor Code(FieldEdited edited) {
    auto* line = new QLineEdit;
    line->setMaximumWidth(160);
    line->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[!-\"$-~][ -~]{0,3}|#\\d{0,10}")), line));
    QObject::connect(line, &QLineEdit::textEdited, line,
                     [edited = std::move(edited)](const QString& text) {
                         if (const auto code = CodeOf(text.toStdString()))
                             edited(std::to_string(*code));
                     });
    return {line, line, [line](const std::string& value) {
                const auto code = static_cast<std::uint32_t>(Shown(value).toUInt());
                // While it is typed the letters stay as they are.
                if (CodeOf(line->text().toStdString()) != code)
                    line->setText(Shown(CodeText(code)));
            }};
}

}  // namespace

FieldEditor MakeFieldEditor(const SetupField& field, const Setting& range,
                            const FieldChoices& choices, FieldEdited edited) {
    using enum SetupField::Kind;
    switch (field.kind) {
        case kCheck:
            return Check(field, std::move(edited));
        case kNumber:
        case kTenths:
            return Number(field, range, std::move(edited));
        case kChoice:
            return Choice(field, std::move(edited));
        case kPassword:
            return Password(edited);
        case kFolder:
        case kFile:
            return Path(field, edited);
        case kCode:
            return Code(std::move(edited));
        case kInputDevice:
            return Name(QStringLiteral("The system's default"), choices.inputs, std::move(edited));
        case kOutputDevice:
            return Name(QStringLiteral("The system's default"), choices.outputs, std::move(edited));
        case kSetName:
            return Name(QStringLiteral("None: the equaliser is off"), choices.equalizerSets,
                        std::move(edited));
        case kText:
            break;
    }
    QLineEdit* const line = Line(edited);
    return {line, line, ShowIn(line)};
}

}  // namespace orma
