#include "diagnostics/processor_facts.h"

#include <gnu/libc-version.h>
#include <sys/utsname.h>
#include <thread>

#include "core/line_reader.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "vector/vector_levels.h"

namespace anomalis::diagnostics {

namespace {

constexpr const char* processor_file = "/proc/cpuinfo";
constexpr int longest_search = 64;  // lines; the name stands near the top

std::string processor_name() {
    if (file_exists(processor_file).empty()) return "unknown";
    LineReader reader(processor_file);
    for (int i = 0; i < longest_search; ++i) {
        const std::string line(reader.read_lf_line());
        const auto colon = line.find(':');
        if (line.starts_with("model name") && colon != std::string::npos)
            return std::string(trim_blanks(std::string_view(line).substr(colon + 1)));
    }
    return "unknown";
}

std::string feature_text() {
    std::string text;
#if defined(__x86_64__)
    const auto add = [&](const char* name, bool there) {
        if (there) text += (text.empty() ? "" : " ") + std::string(name);
    };
    __builtin_cpu_init();
    add("sse4.2", __builtin_cpu_supports("sse4.2") != 0);
    add("avx", __builtin_cpu_supports("avx") != 0);
    add("avx2", __builtin_cpu_supports("avx2") != 0);
    add("fma", __builtin_cpu_supports("fma") != 0);
    add("avx512f", __builtin_cpu_supports("avx512f") != 0);
    add("avx512dq", __builtin_cpu_supports("avx512dq") != 0);
    add("avx512vl", __builtin_cpu_supports("avx512vl") != 0);
#endif
    return text.empty() ? "none that matters here" : text;
}

constexpr const char* checks =
#if defined(__SANITIZE_ADDRESS__)
    "with sanitizers";
#elif defined(__OPTIMIZE__)
    "optimised";
#else
    "not optimised";
#endif

}  // namespace

std::vector<std::string> processor_lines() {
    return {"Processor: " + processor_name(), "Features: " + feature_text(),
            "Vectors in use: " + std::string(vector::vector_level_name(vector::widest_vector_level())),
            "Threads: " + format_number(static_cast<std::int32_t>(std::thread::hardware_concurrency()), "0")};
}

std::vector<std::string> build_lines() {
    std::vector<std::string> lines{"Compiler: " + std::string(__VERSION__) + ", C++ " +
                                       format_number(static_cast<std::int32_t>(__cplusplus / 100), "0") +
                                       ", " + checks,
                                   "C library: " + std::string(::gnu_get_libc_version())};
    utsname system{};
    if (::uname(&system) == 0)
        lines.push_back("System: " + std::string(system.sysname) + " " + system.release + " " +
                        system.machine);
    return lines;
}

}  // namespace anomalis::diagnostics
