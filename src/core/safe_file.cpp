#include "core/safe_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "core/failure.h"

namespace anomalis {

namespace {

/// An open file of the system, closed at the end of its scope.
class Descriptor {
  public:
    Descriptor(int descriptor, const std::string& path) : descriptor_(descriptor) {
        if (descriptor_ < 0) throw FileFault(errno, path);
    }
    ~Descriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return descriptor_; }
    /// Closes now: some file systems tell only then that the disk is full.
    void close(const std::string& path) {
        if (::close(std::exchange(descriptor_, -1)) != 0) throw FileFault(errno, path);
    }

  private:
    int descriptor_;
};

void write_all(int descriptor, std::string_view contents, const std::string& path) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw FileFault(errno, path);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// The file that a path stands for when links are followed; the path itself while nothing is there.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    return real ? real.get() : path;
}

std::string folder_of(const std::string& path) {
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

/// The rights that a file newly made by this process gets.
mode_t new_file_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// A rename is on the disk once its folder is. Where the file system cannot flush a folder there is no more
/// to be done, and the file itself is whole either way.
void flush_folder(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

void replace_file(const std::string& target, std::string_view contents, mode_t mode,
                  const std::string& path) {
    // A short name of its own: the target's name may already be as long as names can be.
    std::string temporary = folder_of(target) + ".anomalis-XXXXXX";
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC), path);
    try {
        write_all(file.get(), contents, path);
        if (::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0) throw FileFault(errno, path);
        file.close(path);
        if (::rename(temporary.c_str(), target.c_str()) != 0) throw FileFault(errno, path);
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    flush_folder(folder_of(target));
}

}  // namespace

void write_file_safely(const std::string& path, std::string_view contents) {
    const std::string target = resolved(path);
    struct stat old {};
    if (::stat(target.c_str(), &old) != 0) {
        if (errno != ENOENT || path.empty()) throw FileFault(errno, path);
        return replace_file(target, contents, new_file_mode(), path);
    }
    if (S_ISDIR(old.st_mode)) throw FileFault(EISDIR, path);
    // A rename needs no right to write the file itself, so a write-protected one is asked here.
    if (::access(target.c_str(), W_OK) != 0) throw FileFault(errno, path);
    if (S_ISREG(old.st_mode)) return replace_file(target, contents, old.st_mode & 07777, path);
    Descriptor device(::open(target.c_str(), O_WRONLY | O_CLOEXEC), path);
    write_all(device.get(), contents, path);
    device.close(path);
}

void append_to_file(const std::string& path, std::string_view text) {
    Descriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666), path);
    write_all(file.get(), text, path);
    file.close(path);
}

std::string read_whole_file(const std::string& path) {
    // Without the wait for a writer that a named pipe would make.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) throw FileFault(errno, path);
    if (S_ISDIR(status.st_mode)) throw FileFault(EISDIR, path);
    if (!S_ISREG(status.st_mode)) throw FileFault(ENOTSUP, path);

    std::string contents;
    std::size_t used = 0;
    contents.resize(static_cast<std::size_t>(status.st_size) + 1);
    for (;;) {
        const ssize_t got = ::read(file.get(), contents.data() + used, contents.size() - used);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw FileFault(errno, path);
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
        if (used == contents.size()) contents.resize(2 * used);
    }
    contents.resize(used);
    return contents;
}

FolderLock::FolderLock(const std::string& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw FileFault(errno, folder);
    constexpr int tries = 200;
    constexpr useconds_t pause = 10'000;  // microseconds
    int error = EWOULDBLOCK;
    for (int i = 0; i < tries && error == EWOULDBLOCK; ++i) {
        if (i > 0) ::usleep(pause);
        error = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
        // A file system without locks: going on alone is better than keeping nothing.
        if (error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS) error = 0;
        if (error == EINTR) error = EWOULDBLOCK;
    }
    if (error == 0) return;
    ::close(descriptor_);
    throw FileFault(error, folder);
}

FolderLock::~FolderLock() {
    ::close(descriptor_);
}

}  // namespace anomalis
