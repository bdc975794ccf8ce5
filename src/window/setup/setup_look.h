#pragma once

class QLabel;
class QScrollArea;
class QString;
class QWidget;

namespace orma {

/// The title of a part of a page.
[[nodiscard]] QLabel* NewHeading(const QString& text);

/// A small text that explains a field, over as many lines as it needs.
[[nodiscard]] QLabel* NewRemark(const QString& text);

/// What is wrong with a field; hidden.
[[nodiscard]] QLabel* NewFault();

/// A page's contents, which may be taller than the window.
[[nodiscard]] QScrollArea* Scrolling(QWidget* contents);

}  // namespace orma
