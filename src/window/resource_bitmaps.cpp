#include "window/resource_bitmaps.h"

#include <QFile>

/// What is linked from a library registers itself only when it is asked to. Outside of all
/// namespaces, an unnamed one too: the call declares an operation of the global one.
static void RegisterBitmaps() {
    Q_INIT_RESOURCE(built_in_skin);
}

namespace orma {

ResourceBitmaps::ResourceBitmaps() {
    RegisterBitmaps();
}

std::vector<std::uint8_t> ResourceBitmaps::File(int number, bool doubled) {
    const QLatin1String ending(doubled ? "@2x.bmp" : ".bmp");
    QFile file(QStringLiteral(":/skin/%1%2").arg(number).arg(ending));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray bytes = file.readAll();
    return {bytes.begin(), bytes.end()};
}

}  // namespace orma
