#include "support/memory_storage.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/path.h"

namespace orma::test {
namespace {

using SharedNode = std::shared_ptr<MemoryStorage::Node>;

Text Key(Text path) {
    std::ranges::replace(path, u'\\', u'/');
    return path;
}

class MemoryFile : public StorageFile {
  public:
    MemoryFile(MemoryStorage& storage, SharedNode node, Access access)
        : storage_(storage), node_(std::move(node)), access_(access) {
        if (access_ != Access::kRead) node_->beingWritten = true;
    }
    ~MemoryFile() override { (void)Close(); }

    SystemError Read(std::span<std::uint8_t> into, std::size_t& got) override {
        got = 0;
        if (!node_ || access_ == Access::kWrite) return EBADF;
        const Bytes& bytes = node_->bytes;
        const std::size_t from = std::min<std::size_t>(position_, bytes.size());
        got = std::min(into.size(), bytes.size() - from);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), got, into.begin());
        position_ += got;
        storage_.Count(got);
        return 0;
    }

    SystemError Write(ByteSpan from, std::size_t& written) override {
        written = 0;
        if (!node_ || access_ == Access::kRead) return EBADF;
        Bytes& bytes = node_->bytes;
        bytes.resize(std::max<std::size_t>(bytes.size(), position_ + from.size()));
        std::ranges::copy(from, bytes.begin() + static_cast<std::ptrdiff_t>(position_));
        written = from.size();
        position_ += written;
        storage_.Count(written);
        return 0;
    }

    SystemError Seek(std::int64_t offset, SeekFrom origin, std::uint64_t& position) override {
        if (!node_) return EBADF;
        storage_.Count();
        const std::uint64_t base = origin == SeekFrom::kStart     ? 0
                                   : origin == SeekFrom::kCurrent ? position_
                                                                  : node_->bytes.size();
        const std::int64_t target = static_cast<std::int64_t>(base) + offset;
        if (target < 0) return EINVAL;
        position = position_ = static_cast<std::uint64_t>(target);
        return 0;
    }

    SystemError Size(std::uint64_t& bytes) override {
        if (!node_) return EBADF;
        storage_.Count();
        bytes = node_->bytes.size();
        return 0;
    }

    SystemError Truncate(std::uint64_t bytes) override {
        if (!node_ || access_ == Access::kRead) return EBADF;
        storage_.Count();
        node_->bytes.resize(bytes);
        return 0;
    }

    SystemError Flush() override {
        storage_.Count();
        return node_ ? 0 : EBADF;
    }

    void BeginFlush() override { storage_.Count(); }

    SystemError Close() override {
        if (!node_) return EBADF;
        storage_.Count();
        if (access_ != Access::kRead) node_->beingWritten = false;
        node_.reset();
        return 0;
    }

  private:
    MemoryStorage& storage_;
    SharedNode node_;
    Access access_;
    std::uint64_t position_ = 0;
};

class MemoryMappedFile : public MappedFile {
  public:
    explicit MemoryMappedFile(SharedNode node) : node_(std::move(node)) {
        node_->beingWritten = true;
    }
    ~MemoryMappedFile() override { node_->beingWritten = false; }
    MemoryMappedFile(const MemoryMappedFile&) = delete;
    MemoryMappedFile& operator=(const MemoryMappedFile&) = delete;

    std::span<std::uint8_t> Bytes() override { return node_->bytes; }
    void BeginFlush() override {}

  private:
    SharedNode node_;
};

}  // namespace

void MemoryStorage::Put(const Text& path, ByteSpan bytes) {
    files_[Key(path)] = std::make_shared<Node>(Node{Bytes(bytes.begin(), bytes.end())});
}

const Bytes* MemoryStorage::Find(const Text& path) const {
    const auto found = files_.find(Key(path));
    return found == files_.end() ? nullptr : &found->second->bytes;
}

void MemoryStorage::Count(std::uint64_t bytes) {
    ++calls_;
    bytesMoved_ += bytes;
}

std::shared_ptr<MemoryStorage::Node> MemoryStorage::Use(const Text& path) {
    Count();
    const auto found = files_.find(Key(path));
    return found == files_.end() ? nullptr : found->second;
}

SystemError MemoryStorage::Open(const Text& path, const OpenMode& mode,
                                std::unique_ptr<StorageFile>& file) {
    auto node = Use(path);
    if (!node && mode.disposition == Disposition::kOpenExisting) return ENOENT;
    if (node && mode.access != Access::kRead && node->beingWritten) return EBUSY;
    if (!node) files_[Key(path)] = node = std::make_shared<Node>();
    if (mode.disposition == Disposition::kCreateAlways) node->bytes.clear();
    file = std::make_unique<MemoryFile>(*this, std::move(node), mode.access);
    return 0;
}

SystemError MemoryStorage::Map(const Text& path, std::size_t bytes,
                               std::unique_ptr<MappedFile>& file) {
    auto node = Use(path);
    if (node && node->beingWritten) return EBUSY;
    if (!node) files_[Key(path)] = node = std::make_shared<Node>();
    node->bytes.assign(bytes, 0);
    file = std::make_unique<MemoryMappedFile>(std::move(node));
    return 0;
}

SystemError MemoryStorage::Delete(const Text& path) {
    Count();
    return files_.erase(Key(path)) > 0 ? 0 : ENOENT;
}

SystemError MemoryStorage::Rename(const Text& from, const Text& to) {
    const auto node = Use(from);
    if (!node) return ENOENT;
    files_.erase(Key(from));
    files_[Key(to)] = node;
    return 0;
}

SystemError MemoryStorage::LastWriteTime(const Text& path, FileTime& time) {
    const auto node = Use(path);
    if (!node) return ENOENT;
    time = node->lastWrite;
    return 0;
}

SystemError MemoryStorage::SetLastWriteTime(const Text& path, FileTime time) {
    const auto node = Use(path);
    if (!node) return ENOENT;
    node->lastWrite = time;
    return 0;
}

SystemError MemoryStorage::ListFiles(const Text& folder, std::vector<Text>& names) {
    Count();
    names.clear();
    const Text prefix = Key(AsFolder(folder));
    for (const auto& [path, node] : files_) {
        if (path.starts_with(prefix) && path.find(u'/', prefix.size()) == Text::npos)
            names.push_back(path.substr(prefix.size()));
    }
    return 0;
}

}  // namespace orma::test
