#include <gtest/gtest.h>

#include "manual/sample_sheet.h"

// What the shells make of them is seen by tests/programs/completion.py.
namespace anomalis::manual {

namespace {

void expect_parts(const std::string& text, std::initializer_list<const char*> parts) {
    for (const char* part : parts) EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
}

}  // namespace

TEST(Completions, of_bash_know_choices_endings_and_folders) {
    expect_parts(
        bash_completion(sample_sheet()),
        {"--tool) _prog_x_words 'spade pick'; return ;;", "-o|--output) _prog_x_files 'png|svg'; return ;;",
         "--into) _prog_x_folders; return ;;", "complete -F _prog_x prog-x\n", "_prog_x_files 'axm'"});
}

TEST(Completions, of_zsh_escape_their_own_signs) {
    expect_parts(zsh_completion(sample_sheet()),
                 {"#compdef prog-x\n", "'--tool=[With it]:spade|pick:(spade pick)'", "[Write \\[it\\] here]",
                  "'--into=[Into\\: this]:FOLDER:_files -/'",
                  "'*--role=[Role]:ROLE=X:{compadd -S \"\" -- mag= grav=}'", "_files -g \"*.(png|svg)(-.)\"",
                  "'dig:Dig a hole'"});
}

TEST(Completions, of_fish_offer_nothing_else_beside_choices) {
    expect_parts(fish_completion(sample_sheet()),
                 {"complete -c prog-x -n '__prog_x_is dig' -l tool -d 'With it' -x -a 'spade pick'\n",
                  "-s o -l output", "(__fish_complete_suffix .png; __fish_complete_suffix .svg)",
                  "(__fish_complete_directories)"});
}

TEST(Completions, stand_where_the_shells_look) {
    std::vector<std::string> paths;
    for (const Page& page : shared_pages(sample_sheet())) paths.push_back(page.path);
    EXPECT_EQ(paths, (std::vector<std::string>{
                         "man/man1/prog-x.1", "man/man1/prog-x-dig.1", "bash-completion/completions/prog-x",
                         "zsh/vendor-completions/_prog-x", "fish/vendor_completions.d/prog-x.fish"}));
}

}  // namespace anomalis::manual
