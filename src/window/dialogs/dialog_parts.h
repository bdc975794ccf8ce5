#pragma once

class QColor;
class QDialog;
class QFrame;
class QLabel;
class QString;
class QVBoxLayout;
class QWidget;

namespace orma {

/// Distances within every dialog, pixels.
inline constexpr int kDialogMargin = 16;
inline constexpr int kDialogGap = 10;

/// The page of a dialog: one thing below the other.
[[nodiscard]] QVBoxLayout* NewPage(QDialog& dialog);

/// A quiet text: the name of a field, a remark.
[[nodiscard]] QLabel* NewLegend(const QString& text);

[[nodiscard]] QFrame* NewHairline();

/// The colour of a widget's letters, or of a line.
void SetColour(QWidget& widget, const QColor& colour);

/// Ends the page with "OK", the default, and "Cancel".
void AddOkAndCancel(QDialog& dialog, QVBoxLayout& page);

}  // namespace orma
