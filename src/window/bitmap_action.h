#pragma once

#include <QImage>
#include <QWidgetAction>

#include "ui/paint/picture.h"

namespace orma {

/// A menu's line that is a picture, in the middle of its width; in contrary colours while it is
/// selected.
class BitmapAction : public QWidgetAction {
  public:
    BitmapAction(const Picture& picture, QObject* parent);

  protected:
    QWidget* createWidget(QWidget* parent) override;

  private:
    QImage image_;
};

}  // namespace orma
