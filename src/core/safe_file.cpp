#include "core/safe_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
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

/// While it lives, a pipe whose reader went away is an error of the write and no end of the program.
class BrokenPipeGuard {
  public:
    BrokenPipeGuard() {
        ::sigemptyset(&pipe_signal_);
        ::sigaddset(&pipe_signal_, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &pipe_signal_, &before_);
    }
    ~BrokenPipeGuard() {
        // A signal that the write raised is taken here; one that was pending before is not ours.
        const timespec at_once{};
        if (broken && !::sigismember(&before_, SIGPIPE)) ::sigtimedwait(&pipe_signal_, nullptr, &at_once);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

    bool broken = false;

  private:
    sigset_t pipe_signal_{};
    sigset_t before_{};
};

void write_all(int descriptor, std::string_view contents, const std::string& path) {
    BrokenPipeGuard pipe;
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) {
            const int error = errno;
            pipe.broken = error == EPIPE;
            throw FileFault(error, path);
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// The file that a path stands for when links are followed, also a link to a file that is not there yet.
std::string resolved(std::string path) {
    constexpr int most_links = 40;
    for (int links = 0; links <= most_links; ++links) {
        const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
        if (real) return real.get();
        // An open pipe looks like a link to a place that is none.
        if (struct stat there{}; ::stat(path.c_str(), &there) == 0) break;
        std::error_code error;
        const std::filesystem::path link = std::filesystem::read_symlink(path, error);
        if (error) break;
        path = (std::filesystem::path(path).parent_path() / link).string();
    }
    return path;
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

/// Opens what is neither file nor folder. A pipe that nobody reads would hold the program for good, so its
/// reader is given two seconds to come.
int open_device(const std::string& target) {
    constexpr int tries = 200;
    constexpr useconds_t pause = 10'000;  // microseconds
    int descriptor = -1;
    for (int i = 0; i < tries; ++i) {
        if (i > 0) ::usleep(pause);
        descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor >= 0 || errno != ENXIO) break;
    }
    if (descriptor < 0 && errno == ENXIO) errno = EPIPE;
    // From here on a slow reader is waited for.
    if (descriptor >= 0) ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return descriptor;
}

}  // namespace

class SafeFile::Target {
  public:
    explicit Target(const std::string& path) : path_(path), target_(resolved(path)) {
        struct stat old {};
        if (::stat(target_.c_str(), &old) != 0) {
            if (errno != ENOENT || path.empty()) throw FileFault(errno, path);
            mode_ = new_file_mode();
        } else if (S_ISDIR(old.st_mode)) {
            throw FileFault(EISDIR, path);
        } else if (S_ISBLK(old.st_mode)) {
            throw FileFault(ENOTSUP, path);  // the disk under a file system
        } else if (::access(target_.c_str(), W_OK) != 0) {
            // A rename needs no right to write the file itself, so a write-protected one is asked here.
            throw FileFault(errno, path);
        } else {
            mode_ = old.st_mode & 07777;
            is_device_ = !S_ISREG(old.st_mode);
        }
        // A short name of its own: the target's name may already be as long as names can be.
        if (!is_device_) temporary_ = folder_of(target_) + ".anomalis-XXXXXX";
        file_.emplace(is_device_ ? open_device(target_) : ::mkostemp(temporary_.data(), O_CLOEXEC), path_);
    }
    ~Target() {
        if (!is_device_ && !committed_ && file_) ::unlink(temporary_.c_str());
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    void write(std::string_view contents) { write_all(file_->get(), contents, path_); }

    void commit() {
        if (is_device_) return file_->close(path_);
        if (::fchmod(file_->get(), mode_) != 0 || ::fsync(file_->get()) != 0) throw FileFault(errno, path_);
        file_->close(path_);
        if (::rename(temporary_.c_str(), target_.c_str()) != 0) throw FileFault(errno, path_);
        committed_ = true;
        flush_folder(folder_of(target_));
    }

  private:
    std::string path_;    ///< as it was given, for messages
    std::string target_;  ///< with links followed
    std::string temporary_;
    mode_t mode_ = 0;
    bool is_device_ = false;
    bool committed_ = false;
    std::optional<Descriptor> file_;
};

SafeFile::SafeFile(const std::string& path) : target_(std::make_unique<Target>(path)) {}
SafeFile::~SafeFile() = default;

void SafeFile::write(std::string_view contents) {
    target_->write(contents);
}

void SafeFile::commit() {
    target_->commit();
}

void write_file_safely(const std::string& path, std::string_view contents) {
    SafeFile file(path);
    file.write(contents);
    file.commit();
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

FolderLock::FolderLock(const std::string& folder, std::chrono::milliseconds patience)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw FileFault(errno, folder);
    constexpr std::chrono::milliseconds pause{10};
    const auto tries = std::max<std::int64_t>(1, patience / pause);
    int error = EWOULDBLOCK;
    for (std::int64_t i = 0; i < tries && error == EWOULDBLOCK; ++i) {
        if (i > 0) std::this_thread::sleep_for(pause);
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
