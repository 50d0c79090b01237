#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace anomalis {

/// A regular file that is open for reading from its start.
class InputFile {
  public:
    /// Raises FileFault (missing, a folder, no permission) or Fault (a device or a pipe, which could not be
    /// read twice).
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Up to `most` bytes more; 0 at the end of the file. Raises FileFault.
    std::size_t read(char* to, std::size_t most);
    /// What is read next is the start of the file again. Raises FileFault.
    void rewind();
    /// Bytes, when it was opened.
    std::uintmax_t size() const { return size_; }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
    int descriptor_ = -1;
    std::uintmax_t size_ = 0;
};

}  // namespace anomalis
