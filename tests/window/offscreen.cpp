// The toolkit's application object for all tests of this program, drawing into memory.

#include <QApplication>

#include <gtest/gtest.h>

#include "window/dialogs/dialog_look.h"

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(count, arguments);
    orma::InstallDialogLook();
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}

// What the font library keeps until the end is no leak of ours.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
