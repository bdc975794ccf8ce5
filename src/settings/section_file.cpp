#include "settings/section_file.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

// Far beyond any layout file; what is larger is no section file and is left alone.
constexpr std::uint64_t kLargestFile = 1U << 20;

/// Walks the tokens of a text.
class Tokens {
  public:
    explicit Tokens(std::string_view text) : text_(text) {}

    /// The next token; empty at the end.
    std::string_view Next() {
        start_ = std::min(text_.find_first_not_of(kWhiteSpace, end_), text_.size());
        end_ = std::min(text_.find_first_of(kWhiteSpace, start_), text_.size());
        return text_.substr(start_, end_ - start_);
    }

    /// Moves behind the header of `section`; false at the end of the text.
    bool FindSection(std::string_view section) {
        const std::string header = "[" + std::string(section) + "]";
        for (std::string_view token = Next(); !token.empty(); token = Next()) {
            if (token == header) return true;
        }
        return false;
    }

    /// The offsets of the last token; both are the text's length at its end.
    [[nodiscard]] std::size_t Start() const { return start_; }
    [[nodiscard]] std::size_t End() const { return end_; }

  private:
    static constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

    std::string_view text_;
    std::size_t start_ = 0;
    std::size_t end_ = 0;
};

std::optional<std::string> ReadAll(StorageFile& file) {
    std::uint64_t size = 0;
    if (file.Size(size) != 0 || size > kLargestFile) return std::nullopt;
    std::string text(size, '\0');
    std::size_t got = 0;
    if (file.Read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}, got) != 0)
        return std::nullopt;
    text.resize(got);
    return text;
}

std::optional<int> ParseNumber(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    int number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec != std::errc()) return std::nullopt;
    return number;
}

/// Copies the tokens of `old` one a line, with `line` in place of the key at `position` or, where
/// another token or the end stands there, before it.
std::string Rewritten(std::string_view old, std::size_t position, std::string_view key,
                      const std::string& line) {
    std::string out;
    Tokens tokens(old);
    for (std::string_view token = tokens.Next(); !token.empty(); token = tokens.Next()) {
        if (tokens.Start() == position) {
            out += line;
            if (token.starts_with(key)) continue;
        }
        if (token.starts_with('[')) out += "\r\n";
        out += token;
        out += "\r\n";
    }
    if (position == old.size()) out += line;
    return out;
}

std::string WithKey(const std::string& old, std::string_view section, std::string_view key,
                    int value) {
    const std::string line = std::string(key) + "=" + std::to_string(value) + "\r\n";
    Tokens tokens(old);
    if (!tokens.FindSection(section)) return old + "\r\n[" + std::string(section) + "]\r\n" + line;
    for (std::string_view token = tokens.Next(); !token.empty(); token = tokens.Next()) {
        Trace("found name %s", std::string(token).c_str());
        if (token.starts_with(key) || token.starts_with('[')) break;
    }
    return Rewritten(old, tokens.Start(), key, line);
}

void Replace(Storage& storage, const Text& path, std::string_view text) {
    const Text temporary = SplitPath(path).folder + u"temp.ini";
    const OpenMode create{Access::kWrite, Share::kNone, Disposition::kCreateAlways};
    std::unique_ptr<StorageFile> file;
    if (storage.Open(temporary, create, file) != 0) return;
    std::size_t written = 0;
    const bool complete =
        file->Write(AsBytes(text), written) == 0 && file->Flush() == 0 && file->Close() == 0;
    file.reset();
    if (!complete || storage.Rename(temporary, path) != 0) (void)storage.Delete(temporary);
}

}  // namespace

int ReadKey(Storage& storage, std::string_view section, std::string_view key, int defaultValue,
            const Text& path) {
    std::unique_ptr<StorageFile> file;
    if (storage.Open(path, {Access::kRead, Share::kRead, Disposition::kOpenExisting}, file) != 0)
        return defaultValue;
    const std::optional<std::string> text = ReadAll(*file);
    if (!text) return defaultValue;
    Tokens tokens(*text);
    if (!tokens.FindSection(section)) return defaultValue;
    Trace("found section fp=%d", static_cast<int>(tokens.End()));
    std::string_view token;
    do {
        token = tokens.Next();
        if (token.empty() || token.starts_with('[')) return defaultValue;
    } while (!token.starts_with(key));
    Trace("found name fp=%d,err=%d", static_cast<int>(tokens.End()), 1);
    const std::size_t equals = token.find('=');
    if (equals == std::string_view::npos) return defaultValue;
    const std::optional<int> number = ParseNumber(token.substr(equals + 1));
    if (!number) return defaultValue;
    Trace("data=%d", *number);
    return *number;
}

void WriteKey(Storage& storage, std::string_view section, std::string_view key, int value,
              const Text& path) {
    std::string old;
    std::unique_ptr<StorageFile> file;
    const OpenMode update{Access::kReadWrite, Share::kRead, Disposition::kOpenExisting};
    if (storage.Open(path, update, file) == 0) {
        std::optional<std::string> text = ReadAll(*file);
        if (!text) return;
        old = std::move(*text);
        file.reset();
    } else if (storage.Exists(path)) {
        return;  // write-protected or in use: replacing it would go around that
    }
    const std::string text = WithKey(old, section, key, value);
    if (text != old) Replace(storage, path, text);
}

}  // namespace orma
