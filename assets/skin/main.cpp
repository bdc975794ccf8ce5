#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <cstdio>

#include "platform/posix/posix_storage.h"
#include "preview.h"
#include "skin_set.h"

namespace orma::art {
namespace {

/// The set that `source` ("pos.txt", "Colors.txt") describes; the built-in one without a source.
SkinSet Load(const QString& source) {
    SkinSet set;
    if (source.isEmpty()) return set;
    PosixStorage storage;
    set.builtIn = false;
    set.layout.Read(storage, QDir(source).filePath("pos.txt").toStdU16String());
    set.colours.Read(storage, QDir(source).filePath("Colors.txt").toStdU16String());
    return set;
}

int Run(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Draws a set of bitmaps of the window into a folder.");
    parser.addHelpOption();
    parser.addOption(
        {"source", "Folder with pos.txt and Colors.txt; without it the built-in set.", "folder"});
    parser.addOption({"preview", "Writes contact sheets of all screens besides.", "folder"});
    parser.addPositionalArgument("folder", "Where the bitmaps go.");
    parser.process(arguments);
    if (parser.positionalArguments().size() != 1) parser.showHelp(2);

    const QDir folder(parser.positionalArguments().constFirst());
    const SkinSet set = Load(parser.value("source"));
    if (!set.Write(folder)) {
        std::fprintf(stderr, "orma_skin_art: %s cannot be written\n", qPrintable(folder.path()));
        return 1;
    }
    if (!parser.isSet("preview")) return 0;
    return WritePreviews(set, folder, QDir(parser.value("preview"))) ? 0 : 1;
}

}  // namespace
}  // namespace orma::art

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_FONT_DPI");
    const QGuiApplication application(argc, argv);
    return orma::art::Run(application.arguments());
}
