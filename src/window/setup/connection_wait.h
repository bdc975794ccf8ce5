#pragma once

#include <QDialog>

#include "platform/patience.h"

namespace orma {

/// A small dialog while a connection is tried: says what is waited for and offers Cancel. It is
/// shown as soon as it is made; whoever waits asks it, and that keeps all windows alive.
class ConnectionWait : public QDialog, public Patience {
  public:
    ConnectionWait(const QString& text, QWidget* parent);

    [[nodiscard]] bool GoOn() override;

  private:
    bool cancelled_ = false;
};

}  // namespace orma
