#include "batch/standard_streams.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <istream>
#include <ostream>
#include <vector>

#include "core/failure.h"

namespace anomalis::batch {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t piece = 1U << 16;

/// False when it cannot be written.
bool copy(std::istream& from, std::ostream& to) {
    std::vector<char> buffer(piece);
    while (from) {
        from.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        if (!to.write(buffer.data(), from.gcount())) return false;
    }
    return static_cast<bool>(to.flush());
}

}  // namespace

StandardStreams::~StandardStreams() {
    std::error_code ignored;
    for (const std::string& file : {input_, output_})
        if (!file.empty()) fs::remove(file, ignored);
    if (!folder_.empty()) fs::remove(folder_, ignored);
}

/// For its owner alone.
const std::string& StandardStreams::folder() {
    if (!folder_.empty()) return folder_;
    std::string name = (fs::temp_directory_path() / "anomalis-batch-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw FileFault(errno, name);
    return folder_ = name;
}

std::string StandardStreams::take_input(std::istream& in) {
    input_ = (fs::path(folder()) / "standard_input").string();
    std::ofstream file(input_, std::ios::binary);
    if (!file || !copy(in, file)) throw FileFault(errno, input_);
    if (in.bad()) throw Fault("The standard input could not be read");
    return input_;
}

std::string StandardStreams::output_file(const std::string& ending) {
    return output_ = (fs::path(folder()) / ("standard_output" + ending)).string();
}

void StandardStreams::give_output(std::ostream& out) {
    std::error_code ignored;
    if (output_.empty() || !fs::exists(output_, ignored)) return;
    std::ifstream file(output_, std::ios::binary);
    if (!file || !copy(file, out)) throw Fault("The output could not be written");
}

}  // namespace anomalis::batch
