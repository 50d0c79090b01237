#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "intake/formats/survey_layout.h"

// The bytes of a survey file, unpacked and as the encoding that the rest of the readers know.
namespace anomalis::intake {

struct FileStretch;

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Reads at most so many bytes; 0 at the end. Raises FileFault, and Fault where a packed file is broken
    /// or a file became shorter since it was opened.
    virtual std::size_t read(char* into, std::size_t most) = 0;
    /// Bytes of the file itself that were used so far.
    virtual double bytes_read() const = 0;
    /// Where the first byte of the text stands in the file, once something was read; -1 where the bytes of
    /// the text are not those of the file.
    virtual std::int64_t text_begin() const { return -1; }
};

/// Opens a file, packed by gzip or not, which its first bytes tell. What another program appends after this
/// moment is not read. Raises FileFault, and Fault for what is no regular file.
std::unique_ptr<ByteSource> open_bytes(const std::string& path);
/// The bytes of a stretch of a file that is not packed. Raises as `open_bytes`.
std::unique_ptr<ByteSource> open_stretch(const std::string& path, const FileStretch& stretch);

/// Whether the file begins as gzip does. Raises as `open_bytes`.
bool is_packed(const std::string& path);

/// The encoding that a file's first bytes show, by its mark or by what is valid.
Encoding encoding_of(std::string_view head);

/// The file as UTF-8, without its mark. Bytes of Latin-1 stay as they are, so that places in a row of fixed
/// width hold: texts out of it go through `text_of_bytes`.
/// `stretch`: the part that is read of a file that is not packed, as UTF-8 or Latin-1; null for all of it.
std::unique_ptr<ByteSource> open_text(const std::string& path, Encoding encoding,
                                      const FileStretch* stretch = nullptr);

/// A text out of a file as UTF-8.
std::string text_of_bytes(std::string_view bytes, Encoding encoding);

}  // namespace anomalis::intake
