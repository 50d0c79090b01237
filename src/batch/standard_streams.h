#pragma once

#include <iosfwd>
#include <string>

// "-" in place of a file: what comes in by a pipe is put to a file that everything can read twice, what goes
// out is gathered in one, so that the output stream gets all of it or nothing.
namespace anomalis::batch {

class StandardStreams {
  public:
    StandardStreams() = default;
    /// Removes what was put to files.
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

    /// Reads a stream to its end into a file; returns its path. Raises FileFault, Fault.
    std::string take_input(std::istream& in);
    /// The file that is given out; it ends with `ending`. Raises FileFault.
    std::string output_file(const std::string& ending);
    /// Writes that file, if there is one, to a stream. Raises Fault.
    void give_output(std::ostream& out);

    const std::string& input() const { return input_; }    ///< "" for none
    const std::string& output() const { return output_; }  ///< "" for none

  private:
    const std::string& folder();

    std::string folder_, input_, output_;
};

}  // namespace anomalis::batch
