#pragma once

#include <string>
#include <vector>

#include "manual/sheet.h"

// A sheet in the forms that readers and shells take.
namespace anomalis::manual {

/// A file of documentation: where it stands below a folder such as /usr/share, and what it holds.
struct Page {
    std::string path;
    std::string text;
};

/// The man pages of a program, section 1: one of its own and one a command, "anomalis-batch-find.1".
std::vector<Page> man_pages(const Sheet& program);
/// All its commands and options as one page of the guide.
std::string markdown_page(const Sheet& program);
/// Completion of its command lines.
std::string bash_completion(const Sheet& program);
std::string zsh_completion(const Sheet& program);
std::string fish_completion(const Sheet& program);

/// The man pages and completions, each where man and the shells look for it.
std::vector<Page> shared_pages(const Sheet& program);

}  // namespace anomalis::manual
