#include <array>
#include <filesystem>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

#include "core/executable_folder.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/session.h"

namespace anomalis {

namespace {

std::string user_name() {
    const passwd* user = ::getpwuid(::getuid());
    return user && user->pw_name ? user->pw_name : "";
}

std::string computer_name() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string with_separator(std::string folder) {
    if (!folder.empty() && folder.back() != '/') folder += '/';
    return folder;
}

std::string system_temp_folder() {
    std::error_code error;
    return with_separator(std::filesystem::temp_directory_path(error).string());
}

std::string application_data_folder() {
    const std::string data = user_data_folder();
    if (data.empty()) return "";
    const std::string folder = data + "brightfold/";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error ? "" : folder;
}

float computed_machine_epsilon() {
    // Stored at each step, since the sum must be rounded to single precision.
    volatile float sum = 2;
    float epsilon = 1;
    while (sum > 1) {
        epsilon /= 2;
        sum = 1 + epsilon;
    }
    return 2 * epsilon;
}

}  // namespace

std::string executable_folder() {
    std::error_code error;
    return folder_name(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

void init_system(SystemInfo& system) {
    if (system.done) return;
    system.user_name = user_name();
    system.computer_name = computer_name();
    system.temp_folder = system_temp_folder();
    system.app_data_folder = application_data_folder();
    system.exe_folder = executable_folder();
    system.machine_epsilon = computed_machine_epsilon();
    system.decimal_symbol = number_to_text(1.1F).at(2);
    system.list_symbol = static_cast<char>('.' + ',' - system.decimal_symbol);
    system.done = true;
}

}  // namespace anomalis
