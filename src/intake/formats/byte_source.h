#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "intake/formats/survey_layout.h"

// The bytes of a survey file, unpacked and as the encoding that the rest of the readers know.
namespace anomalis::intake {

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Reads at most so many bytes; 0 at the end. Raises FileFault, and Fault where a packed file is broken
    /// or a file became shorter since it was opened.
    virtual std::size_t read(char* into, std::size_t most) = 0;
    /// Bytes of the file itself that were used so far.
    virtual double bytes_read() const = 0;
};

/// Opens a file, packed by gzip or not, which its first bytes tell. What another program appends after this
/// moment is not read. Raises FileFault, and Fault for what is no regular file.
std::unique_ptr<ByteSource> open_bytes(const std::string& path);

/// Whether the file begins as gzip does. Raises as `open_bytes`.
bool is_packed(const std::string& path);

/// The encoding that a file's first bytes show, by its mark or by what is valid.
Encoding encoding_of(std::string_view head);

/// The file as UTF-8, without its mark. Bytes of Latin-1 stay as they are, so that places in a row of fixed
/// width hold: texts out of it go through `text_of_bytes`.
std::unique_ptr<ByteSource> open_text(const std::string& path, Encoding encoding);

/// A text out of a file as UTF-8.
std::string text_of_bytes(std::string_view bytes, Encoding encoding);

}  // namespace anomalis::intake
