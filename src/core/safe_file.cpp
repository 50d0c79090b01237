#include "core/safe_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "core/failure.h"
#include "core/leftovers.h"
#include "core/link_target.h"
#include "core/paths.h"

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

/// Network folders and those of other systems may know no permissions and flush nothing on demand. That is
/// no failure of the write; a disk that is broken or full is.
bool is_missing_ability(int error) {
    return error == EINVAL || error == ENOTSUP || error == EOPNOTSUPP || error == ENOSYS || error == EPERM;
}

void set_rights(int descriptor, mode_t mode, const std::string& path) {
    if (::fchmod(descriptor, mode) != 0 && !is_missing_ability(errno)) throw FileFault(errno, path);
}

void flush_file(int descriptor, const std::string& path) {
    while (::fsync(descriptor) != 0) {
        if (errno == EINTR) continue;
        if (is_missing_ability(errno)) return;
        throw FileFault(errno, path);
    }
}

/// A rename is on the disk once its folder is. A folder that may not be read cannot be flushed.
void flush_folder(const std::string& folder, const std::string& path) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    const Descriptor open_folder(descriptor, path);
    flush_file(descriptor, path);
}

/// The folder keeps others from making files in it, or from replacing this one (a sticky folder, a file that
/// is a mount of its own).
bool is_refusal_of_folder(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}

[[noreturn]] void refuse_replacement(int error, const std::string& path, bool old_file_is_writable) {
    if (!old_file_is_writable || !is_refusal_of_folder(error)) throw FileFault(error, path);
    throw NoSafeReplacement(error, path,
                            ": the file may be written, but its folder lets no other file take its place, so "
                            "it cannot be replaced safely");
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
    Target(const std::string& path, FileRights rights) : path_(path), target_(behind_links(path)) {
        look_at_old_file();
        if (rights == FileRights::owner_only) mode_ = S_IRUSR | S_IWUSR;
        if (is_device_) {
            file_.emplace(open_device(target_), path_);
            return;
        }
        remove_leftovers(folder_of(target_));
        temporary_ = temporary_name(folder_of(target_));
        const int descriptor = ::mkostemp(temporary_.data(), O_CLOEXEC);
        if (descriptor < 0) refuse_replacement(errno, path_, replaces_);
        file_.emplace(descriptor, path_);
    }
    ~Target() {
        if (!is_device_ && !committed_ && file_) ::unlink(temporary_.c_str());
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    void write(std::string_view contents) { write_all(file_->get(), contents, path_); }

    int commit() {
        if (is_device_) {
            file_->close(path_);
            return 0;
        }
        set_rights(file_->get(), mode_, path_);
        flush_file(file_->get(), path_);
        file_->close(path_);
        const int names = other_names();
        if (::rename(temporary_.c_str(), target_.c_str()) != 0) refuse_replacement(errno, path_, replaces_);
        committed_ = true;
        flush_folder(folder_of(target_), path_);
        return names;
    }

  private:
    void look_at_old_file() {
        struct stat old {};
        if (::stat(target_.c_str(), &old) != 0) {
            if (errno != ENOENT || path_.empty()) throw FileFault(errno, path_);
            mode_ = new_file_mode();
        } else if (S_ISDIR(old.st_mode)) {
            throw FileFault(EISDIR, path_);
        } else if (S_ISBLK(old.st_mode)) {
            throw FileFault(ENOTSUP, path_);  // the disk under a file system
        } else if (::access(target_.c_str(), W_OK) != 0) {
            // A rename needs no right to write the file itself, so a write-protected one is asked here.
            throw FileFault(errno, path_);
        } else {
            mode_ = old.st_mode & 07777;
            is_device_ = !S_ISREG(old.st_mode);
            replaces_ = true;
        }
    }

    int other_names() const {
        struct stat old {};
        if (::stat(target_.c_str(), &old) != 0) return 0;
        return static_cast<int>(old.st_nlink) - 1;
    }

    std::string path_;    ///< as it was given, for messages
    std::string target_;  ///< with links followed
    std::string temporary_;
    mode_t mode_ = 0;
    bool is_device_ = false;
    bool replaces_ = false;  ///< a file stands there that may be written
    bool committed_ = false;
    std::optional<Descriptor> file_;
};

SafeFile::SafeFile(const std::string& path, FileRights rights)
    : target_(std::make_unique<Target>(path, rights)) {}
SafeFile::~SafeFile() = default;

void SafeFile::write(std::string_view contents) {
    target_->write(contents);
}

int SafeFile::commit() {
    return target_->commit();
}

int write_file_safely(const std::string& path, std::string_view contents, FileRights rights) {
    SafeFile file(path, rights);
    file.write(contents);
    return file.commit();
}

std::string hard_link_remark(const std::string& path, int other_names) {
    if (other_names <= 0) return "";
    return file_name(path) + " had " +
           (other_names == 1 ? "another name" : std::to_string(other_names) + " other names") +
           " (hard links). It is a new file now; what it held before stays under " +
           (other_names == 1 ? "the other name" : "the other names");
}

void write_file_in_place(const std::string& path, std::string_view contents) {
    const std::string old = read_whole_file(path);
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC), path);
    const auto overwrite = [&](std::string_view text) {
        if (::lseek(file.get(), 0, SEEK_SET) != 0) throw FileFault(errno, path);
        write_all(file.get(), text, path);
        if (::ftruncate(file.get(), static_cast<off_t>(text.size())) != 0) throw FileFault(errno, path);
        flush_file(file.get(), path);
    };
    try {
        overwrite(contents);
    } catch (const FileFault&) {
        // Its room is still there.
        overwrite(old);
        throw;
    }
    file.close(path);
}

void append_to_file(const std::string& path, std::string_view text) {
    Descriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666), path);
    write_all(file.get(), text, path);
    file.close(path);
}

std::string read_file_start(const std::string& path, std::size_t most) {
    // Without the wait for a writer that a named pipe would make.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) throw FileFault(errno, path);
    if (S_ISDIR(status.st_mode)) throw FileFault(EISDIR, path);
    if (!S_ISREG(status.st_mode)) throw FileFault(ENOTSUP, path);

    std::string contents;
    std::size_t used = 0;
    contents.resize(std::min(static_cast<std::size_t>(status.st_size), most) + 1);
    while (used < most) {
        const ssize_t got = ::read(file.get(), contents.data() + used, contents.size() - used);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw FileFault(errno, path);
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
        if (used == contents.size()) contents.resize(2 * used);
    }
    contents.resize(std::min(used, most));
    return contents;
}

std::string read_whole_file(const std::string& path) {
    return read_file_start(path, std::numeric_limits<std::size_t>::max());
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
        if (error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS) error = 0, excludes_ = false;
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
