#pragma once

#include <QProxyStyle>

namespace orma {

/// The desktop's style with the icons of message boxes in the page's manner: flat, in its colours,
/// sharp in every size; and with keys that bear words alone, in every dialog.
class DialogStyle : public QProxyStyle {
  public:
    [[nodiscard]] QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                                     const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
};

}  // namespace orma
