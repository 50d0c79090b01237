#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/input_file.h"

namespace anomalis::intake {

/// Whole lines of a data file.
struct DataBlock {
    long number = 0;          ///< of the block, from 0
    std::vector<char> bytes;  ///< the text, and room for a word behind it
    std::size_t size = 0;     ///< of the text
    bool last = false;        ///< the file ends within its last line
};

/// A data file as blocks that end where a line ends, so that each can be read by itself: whoever scans them
/// one after the other finds the very lines of the whole file. Memory is bounded but for a line that is
/// longer than a block by the rule that cuts none.
class DataBlocks {
  public:
    static constexpr std::size_t usual_size = std::size_t{1} << 18;

    /// Opens the file, as `InputFile` does.
    explicit DataBlocks(const std::string& path, std::size_t block_size = usual_size);

    /// Of its lines, for core/line_reader.h.
    int style() const { return style_; }
    const InputFile& file() const { return file_; }
    /// How many were read.
    long count() const { return blocks_; }

    /// The next block; its memory is used again. False at the end of the file. Raises FileFault.
    bool next(DataBlock& block);

  private:
    bool fill(DataBlock& block);
    std::size_t end_of_lines(DataBlock& block) const;

    InputFile file_;
    std::size_t block_size_;
    int style_ = 0;
    std::vector<char> begun_;  ///< of the next block
    long blocks_ = 0;
    bool at_end_ = false;
};

}  // namespace anomalis::intake
