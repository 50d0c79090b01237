// Runs a fuzz target without a fuzzer: over a corpus, then over seeded mutations of it. The same seeds give
// the same inputs; ANOMALIS_SEED of the environment chooses others, a million further for each. An input that
// fails is left in the current folder as the file `failed-input-` with the name of the corpus; a folder with
// it alone is a corpus to look into it with.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "support/chance.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// Of the sanitizers, where they are built in.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

using Bytes = std::vector<std::uint8_t>;

// What ends a program tells nobody what it was about.
const Bytes* present_input = nullptr;
std::string failed_input;

void keep_input() {
    if (std::FILE* file = present_input ? std::fopen(failed_input.c_str(), "wb") : nullptr) {
        std::fwrite(present_input->data(), 1, present_input->size(), file);
        std::fclose(file);
    }
    present_input = nullptr;
}

void keep_input_at_the_end() {
    std::signal(SIGABRT, [](int) { keep_input(); });
    if (__sanitizer_set_death_callback) __sanitizer_set_death_callback(keep_input);
}

void run(const Bytes& bytes) {
    present_input = &bytes;
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    present_input = nullptr;
}

std::vector<Bytes> read_corpus(const char* folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Bytes> corpus;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return corpus;
}

/// One change of a kind that breaks readers: bytes, cuts, repeats, splices, extreme numbers.
void mutate(Bytes& bytes, const std::vector<Bytes>& corpus, std::mt19937& random) {
    static const std::vector<std::string> extremes = {"2147483647", "-2147483648", "1e999", "nan",
                                                      "-inf",       "1E+38",       "\r",    "\n",
                                                      "\"",         "0",           ",",     "\xEF\xBB\xBF"};
    const auto below = [&](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
    const std::size_t at = below(bytes.size() + 1);
    const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    const auto rest = static_cast<std::ptrdiff_t>(below(std::min<std::size_t>(bytes.size() - at, 64) + 1));
    switch (random() % 6) {
        case 0:
            bytes.insert(place, static_cast<std::uint8_t>(random()));
            break;
        case 1:
            bytes.erase(place, place + rest);
            break;
        case 2:
            bytes.resize(at);
            break;
        case 3: {
            const Bytes repeated(place, place + rest);
            bytes.insert(place, repeated.begin(), repeated.end());
            break;
        }
        case 4: {
            const std::string& text = extremes[below(extremes.size())];
            bytes.insert(place, text.begin(), text.end());
            break;
        }
        default: {
            const Bytes& other = corpus[below(corpus.size())];
            const auto from = other.begin() + static_cast<std::ptrdiff_t>(below(other.size() + 1));
            bytes.resize(at);
            bytes.insert(bytes.end(), from, other.end());
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER [MUTATIONS|SECONDSs]\n", argv[0]);
        return 2;
    }
    failed_input = "failed-input-" + std::filesystem::path(argv[1]).filename().string();
    const std::vector<Bytes> corpus = read_corpus(argv[1]);
    if (corpus.empty()) return 1;
    keep_input_at_the_end();
    for (const Bytes& bytes : corpus) run(bytes);
    const anomalis::Budget budget(argc > 2 ? argv[2] : "0");
    const std::uint64_t first = std::uint64_t{anomalis::seed_of_chance() - 1} * 1000000;
    long mutations = 0;
    for (; budget.allows(mutations); ++mutations) {
        std::mt19937 random(static_cast<std::uint32_t>(first + static_cast<std::uint64_t>(mutations)));
        Bytes bytes = corpus[random() % corpus.size()];
        for (std::size_t changes = 1 + random() % 8; changes > 0; --changes) mutate(bytes, corpus, random);
        run(bytes);
    }
    std::printf("%zu files and %ld mutations\n", corpus.size(), mutations);
    return 0;
}
