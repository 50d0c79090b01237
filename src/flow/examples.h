#pragma once

#include <string>
#include <vector>

namespace anomalis::flow {

/// A survey that comes with the program.
struct ExampleFile {
    std::string path;
    std::string title;  ///< "Dyke swarm" for "dyke_swarm.axm"
};

/// The workspace files of the examples folder, by name. The folder is looked for where the program is
/// installed ("share/anomalis/examples" beside its "bin") and where it is built (above the build folder).
std::vector<ExampleFile> find_examples(const std::string& exe_folder);

/// What comes with the program and may be asked about: the files of each example, and the guide.
std::vector<std::string> supporting_files(const std::string& exe_folder);

}  // namespace anomalis::flow
