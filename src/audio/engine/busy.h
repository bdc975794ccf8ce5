#pragma once

namespace orma {

/// Marks a stretch in which others may show a box. Boxes are modal and let events through; what
/// comes in behind them must not call into those others again.
class Busy {
  public:
    explicit Busy(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~Busy() { flag_ = before_; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace orma
