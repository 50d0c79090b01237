#include "diagnostics/environment_report.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "core/failure.h"
#include "core/paths.h"
#include "core/session.h"
#include "core/text.h"
#include "core/version.h"
#include "diagnostics/file_facts.h"
#include "diagnostics/processor_facts.h"
#include "diagnostics/search_path.h"
#include "diagnostics/settings_facts.h"

namespace anomalis::diagnostics {

namespace {

/// A text that grows line by line.
class Report {
  public:
    void line(const std::string& text) { text_ += text + "\n"; }
    void section(const std::string& title) { text_ += (text_.empty() ? "" : "\n") + title + "\n"; }
    void lines(const std::vector<std::string>& texts) {
        for (const std::string& text : texts) line(text);
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

std::string environment_text(const char* variable, const std::string& otherwise) {
    const char* value = std::getenv(variable);
    return value && *value ? value : otherwise;
}

void describe_program(const SystemInfo& system, const EnvironmentFacts& facts, Report& report) {
    report.line("System files for Anomalis Version " + std::string(application_version()) +
                " Date: " + day_text(file_date(facts.program_path)));
    report.line("App Location " + system.exe_folder);
    report.lines(build_lines());
    report.section("Libraries");
    report.lines(facts.component_lines);
    report.section("Processor");
    report.lines(processor_lines());
    report.section("Folders");
    report.line("Current: " + current_folder());
    report.line("Settings: " + user_config_folder());
    report.line("Data: " + system.app_data_folder);
    report.line("Temporary: " + system.temp_folder);
}

/// A line for each folder of the search path in which the file was found.
void describe_folders(const std::vector<std::string>& found, Report& report) {
    for (const std::string& path : found)
        report.line("PATH folder: " + single_line(folder_name(path)) + " contains " +
                    single_line(file_name(path)));
}

/// Its name, its full path, then the folders of the search path that hold a file of this name.
void describe_supporting_file(const std::string& path, const std::vector<std::string>& found,
                              Report& report) {
    const std::string name = single_line(file_name(path));
    const bool in_place = !file_exists(path).empty();
    if (!in_place && found.empty()) {
        report.line(name + " was not found in the PATH");
        return;
    }
    report.line(name);
    report.line(file_line(in_place ? path : found.front()));
    describe_folders(found, report);
}

void describe_files(const EnvironmentFacts& facts, Report& report) {
    report.section("Supporting files");
    if (facts.supporting_files.empty()) report.line("none found beside the program");
    const auto folders = build_path_list(system_search_path(), user_search_path());
    for (const std::string& path : facts.supporting_files)
        describe_supporting_file(path, find_in_folders(file_name(path), folders), report);
    report.section("Shared libraries");
    for (const std::string& path : loaded_libraries()) report.line(file_line(path) + " DLL is loaded");
}

void describe_search_path(Report& report) {
    report.section("System PATH environment variables");
    report.lines(search_path_lines(system_search_path()));
    report.section("User PATH environment variables");
    report.lines(search_path_lines(user_search_path()));
}

bool is_loaded(const std::string& path) {
    std::error_code failure;
    const auto loaded = loaded_libraries();
    return std::any_of(loaded.begin(), loaded.end(), [&](const std::string& library) {
        return std::filesystem::equivalent(library, path, failure);
    });
}

void describe_found(const std::string& name, const std::vector<std::string>& paths, Report& report) {
    report.section("System PATH folders containing " + single_line(name));
    if (paths.empty()) report.line(single_line(name) + " was not found in the PATH");
    for (const std::string& path : paths) {
        report.line(file_line(path) + (is_loaded(path) ? " DLL is loaded" : ""));
        describe_folders({path}, report);
    }
}

}  // namespace

std::string environment_caption(const SystemInfo& system) {
    return "Check File Environment " + environment_text("USERNAME", system.user_name) + " on " +
           environment_text("USERDOMAIN", system.computer_name);
}

std::string environment_report(const SystemInfo& system, const EnvironmentFacts& facts, Prompts& prompts) {
    Report report;
    report_failure(prompts, "An error orrurred while displaying the path information: ", [&] {
        describe_program(system, facts, report);
        describe_files(facts, report);
        report.section("Settings");
        report.lines(settings_lines(facts.settings_path));
    });
    report_failure(prompts, "An error orrurred while setting up the path information: ", [&] {
        describe_search_path(report);
    });
    return report.text();
}

std::string find_file_report(const std::string& name, const EnvironmentFacts& facts, Prompts& prompts) {
    Report report;
    report_failure(prompts, "An error occurred while locating the file: ", [&] {
        const std::string wanted(trim_blanks(name));
        const auto folders = build_path_list(system_search_path(), user_search_path());
        if (wanted.empty()) {
            report.line("Enter the name of a file to look for");
        } else {
            describe_found(wanted, find_in_folders(wanted, folders), report);
        }
        report.section("Settings");
        report.lines(settings_lines(facts.settings_path));
    });
    return report.text();
}

}  // namespace anomalis::diagnostics
