// Stands in for the fuzzer where its compiler is not: tries every input of a corpus once.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** arguments) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[i]))
            if (entry.is_regular_file()) files.push_back(entry.path());
    if (files.empty()) {
        std::fprintf(stderr, "no inputs; usage: %s FOLDER...\n", arguments[0]);
        return 1;
    }
    std::ranges::sort(files);
    for (const auto& path : files) {
        std::fprintf(stderr, "%s\n", path.filename().c_str());
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::fprintf(stderr, "%zu inputs\n", files.size());
    return 0;
}
