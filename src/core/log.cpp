#include "core/log.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <unistd.h>

#include "core/failure.h"
#include "core/log_place.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/safe_file.h"
#include "core/version.h"

namespace anomalis {

std::string present_time_text() {
    static constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%02d-%s-%04d %02d:%02d", local.tm_mday,
                  months.at(static_cast<std::size_t>(local.tm_mon)), local.tm_year + 1900, local.tm_hour,
                  local.tm_min);
    return text.data();
}

std::string log_path_here() {
    return current_folder() + "/axm_logging.dat";
}

void SessionLog::turn_on(Prompts& prompts) {
    path_ = log_path_here();
    on_ = true;
    log_message(-1);
    prompts.remark("Logging file is: " + path_);
    log_message(1, "Start Logging " + std::string(application_version()) + " " + present_time_text());
}

void SessionLog::turn_off(Prompts& prompts) {
    prompts.remark("Logging file is: " + path_);
    on_ = false;
}

void SessionLog::log_message(int mode, std::string_view text) {
    if (!on_) return;
    try {
        if (mode == -1) {
            ::unlink(path_.c_str());
            append_to_file(path_, "Logging for Anomalis started at : " + present_time_text() + "\n");
        } else {
            ++line_counter_;
            append_to_file(path_, std::to_string(line_counter_) + " : " + std::string(text) + "\n");
        }
    } catch (const std::exception&) {
        // A log that cannot be written must not disturb the work that it traces.
    }
}

}  // namespace anomalis
