#include "core/input_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/failure.h"

namespace anomalis {

InputFile::InputFile(const std::string& path) : path_(path) {
    // Not blocking: the open of a pipe without a writer would wait for ever.
    descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) throw FileFault(errno, path);
    struct stat status {};
    const int error = ::fstat(descriptor_, &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
    size_ = static_cast<std::uintmax_t>(status.st_size);
    if (error == 0 && S_ISREG(status.st_mode)) return;
    ::close(descriptor_);
    if (error != 0) throw FileFault(error, path);
    throw Fault("Not a regular file (" + path + ")");
}

InputFile::~InputFile() {
    ::close(descriptor_);
}

std::size_t InputFile::read(char* to, std::size_t most) {
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, to, most);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw FileFault(errno, path_);
    return static_cast<std::size_t>(count);
}

void InputFile::rewind() {
    if (::lseek(descriptor_, 0, SEEK_SET) != 0) throw FileFault(errno, path_);
}

}  // namespace anomalis
