// Texts from outside: a project's text file, names of files, 8-bit fields.

#include "base/path.h"
#include "fuzz/project_desk.h"

namespace orma::test {

// The file, its text, and conversions of both that grow as they go.
const MemoryBudget kMemoryBudget{.fixedBytes = 4 * 1024, .bytesPerInputByte = 32};

void TryInput(ByteSpan bytes) {
    const std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const Text text = FromUtf8(raw);
    Require(ToUtf8(text) == raw, "every file name survives the way in and out");
    Require(ToWindows1252(FromWindows1252(raw)) == raw, "every 8-bit text does");
    (void)ToWindows1252(text);
    Text units(bytes.size() / 2, u'\0');
    if (!units.empty()) std::memcpy(units.data(), bytes.data(), 2 * units.size());
    const std::string utf8 = ToUtf8(units);
    Require(ToUtf8(FromUtf8(utf8)) == utf8, "whatever units it came from");
    const PathParts parts = SplitPath(text);
    Require(parts.folder + parts.name + parts.extension == text, "a path is the sum of its parts");

    FuzzFiles files(bytes.size());
    files.storage.Put(u"text.txt", bytes);
    ProjectDesk desk(files);
    Project& project = desk.project;
    project.SetOptions({.useTextFile = true, .textFile = u"text.txt"});
    project.SetPath(u"", u"talk");
    project.NewProject();
    Require(raw.empty() || raw.size() == 3 || !project.ProjectText().empty(), "the text is taken");
}

}  // namespace orma::test
