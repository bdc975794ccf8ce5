#pragma once

#include "platform/posix/posix_storage.h"
#include "report/error_reporter.h"
#include "stream/jstream_file.h"
#include "support/fake_boxes.h"
#include "support/temp_folder.h"

namespace orma::test {

/// Real files in a folder of their own, with every error box on record: what most tests stand on.
struct TestFiles {
    TempFolder folder;
    PosixStorage storage;
    FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices services{storage, report};
};

}  // namespace orma::test
