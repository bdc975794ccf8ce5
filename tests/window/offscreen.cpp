// The toolkit's application object for all tests of this program, drawing into memory.

#include <QApplication>
#include <memory>

#include <gtest/gtest.h>

#include "window/dialogs/dialog_look.h"

namespace orma::test {
namespace {

class Offscreen : public testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app_ = std::make_unique<QApplication>(count_, arguments_);
        InstallDialogLook();
    }
    void TearDown() override { app_.reset(); }

  private:
    char name_[12] = "test_window";
    char* arguments_[2] = {name_, nullptr};
    int count_ = 1;
    std::unique_ptr<QApplication> app_;
};

// Owned by the test framework.
[[maybe_unused]] auto* const kOffscreen = testing::AddGlobalTestEnvironment(new Offscreen);

}  // namespace
}  // namespace orma::test

// What the font library keeps until the end is no leak of ours.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
