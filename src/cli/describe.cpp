#include "cli/describe.h"

#include <array>
#include <stdexcept>

#include "audio/files/mp2_header.h"

namespace orma::cli {

Json DescribeFile(Application& app, const Text& path) {
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the file does not exist: " + ToUtf8(path));
    JStreamFile file(app.files, path, true);
    if (!file.IsOpen()) throw std::runtime_error("cannot read " + ToUtf8(path));
    std::array<std::uint8_t, 4> start{};
    file.Read(start.data(), 4);
    file.Close();
    if (IsTag(start.data(), "OSUP") || IsTag(start.data(), "OSUS"))
        return DescribeSettings(app, path);
    if (IsTag(start.data(), "JOPR")) return DescribeProject(app, path);
    if (IsTag(start.data(), "UVOJ")) return DescribeLevels(app, path);
    if (IsTag(start.data(), "RIFF")) return DescribeWave(app, path);
    if (Mp2Header{start}.IsLayer2()) return DescribeMp2(app, path);
    throw std::runtime_error("not a file of this program: " + ToUtf8(path));
}

}  // namespace orma::cli
