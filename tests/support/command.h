#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace anomalis {

/// Runs a program and returns what it printed. Raises when it cannot be started or fails.
inline std::string output_of(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        line += line.empty() ? "'" : " '";
        for (const char c : argument) line += c == '\'' ? "'\\''" : std::string(1, c);
        line += "'";
    }
    std::FILE* pipe = ::popen(line.c_str(), "r");
    if (!pipe) throw std::runtime_error("cannot start " + line);
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    if (::pclose(pipe) != 0) throw std::runtime_error("failed: " + line);
    return output;
}

}  // namespace anomalis
