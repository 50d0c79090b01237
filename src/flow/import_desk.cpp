#include "flow/import_desk.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>
#include <unistd.h>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "field/main_field.h"
#include "flow/import_words.h"
#include "flow/new_line_choice.h"
#include "intake/coordinates/coordinate_system.h"
#include "intake/survey/survey_corrections.h"

namespace anomalis::flow {

namespace {

using intake::Role;

constexpr std::size_t preview_length = 60;
constexpr std::size_t head_length = 12;

/// The first lines of a file as they stand, for a person to see what it is.
std::vector<std::string> first_lines(const std::string& path) {
    constexpr std::size_t longest = 400;
    std::vector<std::string> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; lines.size() < head_length && std::getline(file, line);)
        lines.push_back(line.substr(0, longest));
    return lines;
}

double bytes_of(const std::string& path) {
    return static_cast<double>(stamp_file(path, StampDepth::times).size);
}

/// "EPSG:32754 - WGS 84 / UTM zone 54S" is a suggestion: its number is what counts.
std::string without_name(const std::string& text) {
    const auto dash = text.find(" - ");
    return text.compare(0, 5, "EPSG:") == 0 && dash != std::string::npos ? text.substr(0, dash) : text;
}

}  // namespace

ImportDesk::ImportDesk(edit::Workbench& workbench, ImportDeskObserver& observer)
    : workbench_(workbench), observer_(observer) {}

void ImportDesk::open(const std::string& path) {
    reading_.stop();
    reading_.wait();
    path_ = path;
    folder_ = folder_name(whole_path(path));
    file_bytes_ = bytes_of(path);
    read_as_ = {};
    index_.reset();
    imported_.reset();
    line_.reset();
    piece_.reset();
    line_name_.clear();
    system_text_.clear();
    choices_ = {};
    choices_.formulas = formulas_of_new_line(workbench_.session.settings);
    recognise();
    observer_.choice_changed();
}

void ImportDesk::choose_reading(const intake::ReadAs& read_as) {
    if (path_.empty() || read_as == read_as_) return;
    read_as_ = read_as;
    recognise();
}

void ImportDesk::recognise() {
    layout_.reset();
    head_.clear();
    trouble_.clear();
    try {
        layout_ = intake::recognise_survey(path_, read_as_);
    } catch (const std::exception& failure) {
        trouble_ = fault_text(failure);
        head_ = first_lines(path_);
    }
    layout_is_new();
}

/// Preview, questions and lines hang on the layout.
void ImportDesk::layout_is_new() {
    preview_ = {};
    questions_.clear();
    if (layout_) {
        try {
            preview_ = intake::preview_rows(*layout_, preview_length);
            questions_ = intake::open_questions(*layout_);
        } catch (const std::exception& failure) {
            trouble_ = fault_text(failure);
        }
    }
    observer_.layout_changed();
    read_lines();
}

void ImportDesk::read_lines() {
    reading_.stop();
    reading_.wait();
    index_.reset();
    line_.reset();
    piece_.reset();
    if (layout_) {
        trouble_ = missing_roles(*layout_);
        if (trouble_.empty()) reading_.start(*layout_, {.from = {}, .to = system_text_});
    }
    observer_.lines_changed();
}

void ImportDesk::poll() {
    if (!reading_.going_on()) return;
    if (auto outcome = reading_.take())
        take(std::move(*outcome));
    else
        observer_.progress_changed();
}

void ImportDesk::finish_reading() {
    if (auto outcome = reading_.wait()) take(std::move(*outcome));
}

void ImportDesk::take(SurveyOutcome outcome) {
    index_ = std::move(outcome.index);
    trouble_ = std::move(outcome.trouble);
    if (index_) choose_first_line();
    observer_.lines_changed();
    observer_.choice_changed();
}

/// The line that was chosen, by its name, or the first one that can be imported.
void ImportDesk::choose_first_line() {
    const auto& lines = index_->lines;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (lines[i].stations > 1 && lines[i].name == line_name_) line_ = i;
    for (const bool tie : {false, true})
        for (std::size_t i = 0; i < lines.size() && !line_; ++i)
            if (lines[i].stations > 1 && lines[i].tie == tie) line_ = i;
}

double ImportDesk::part_read() const {
    return file_bytes_ > 0 ? std::min(reading_.bytes() / file_bytes_, 1.0) : 0;
}

void ImportDesk::stop_reading() {
    if (!reading_.going_on()) return;
    reading_.stop();
    trouble_ = "The reading was stopped: read the file again to see its lines";
    observer_.lines_changed();
}

void ImportDesk::choose_role(std::size_t column, Role role) {
    if (!layout_ || column >= layout_->columns.size() || layout_->columns[column].role == role) return;
    intake::give_role(*layout_, column, role);
    layout_is_new();
}

void ImportDesk::choose_unit(std::size_t column, intake::Unit unit) {
    if (!layout_ || column >= layout_->columns.size() || layout_->columns[column].unit == unit) return;
    layout_->columns[column].unit = unit;
    layout_is_new();
}

std::string ImportDesk::choose_nulls(std::size_t column, const std::string& text) {
    if (!layout_ || column >= layout_->columns.size()) return "there is no such column";
    std::vector<double> nulls;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        double value = 0;
        if (!parse_number(word, value))
            return "\"" + word + "\" is no number: write values split by blanks, such as -99999 -1e32";
        nulls.push_back(value);
    }
    if (layout_->columns[column].nulls == nulls) return {};
    layout_->columns[column].nulls = std::move(nulls);
    layout_is_new();
    return {};
}

std::string ImportDesk::choose_system(const std::string& text) {
    std::string code;
    try {
        if (!text.empty()) code = intake::find_coordinate_system(without_name(text)).code;
    } catch (const std::exception& failure) {
        return fault_text(failure);
    }
    if (code == system_text_) return {};
    system_text_ = code;
    read_lines();
    observer_.choice_changed();
    return {};
}

std::string ImportDesk::choose_date(const std::string& text) {
    try {
        if (!text.empty()) {
            const double year = field::year_of_date(text);
            if (year < field::first_year || year > field::last_year)
                return "the model of the earth's field covers 1900 to 2030";
        }
    } catch (const std::exception& failure) {
        return fault_text(failure);
    }
    choices_.date = text;
    observer_.choice_changed();
    return {};
}

void ImportDesk::choose_field(bool from_place) {
    choices_.field_choice = from_place ? FieldChoice::from_place : FieldChoice::none;
    observer_.choice_changed();
}

void ImportDesk::choose_main_field(MainFieldChange change) {
    choices_.main_field = change;
    observer_.choice_changed();
}

void ImportDesk::choose_line(std::size_t line, std::optional<std::size_t> piece) {
    if (!index_ || line >= index_->lines.size()) return;
    line_ = line;
    piece_ = piece;
    line_name_ = index_->lines[line].name;
    observer_.choice_changed();
}

void ImportDesk::choose_all_lines(bool all) {
    all_lines_ = all;
    observer_.choice_changed();
}

std::string ImportDesk::refusal() const {
    if (path_.empty()) return "Choose a survey file";
    if (reading_.going_on()) return "The file is being read";
    if (!trouble_.empty()) return trouble_;
    if (!index_ || !line_) return "Choose a line";
    if (const std::string why = import_refusal(*index_, *line_); !why.empty() && !all_lines_) return why;
    if (!folder_exists(folder_)) return "The folder " + folder_ + " is not there: choose another one";
    if (::access(folder_.c_str(), W_OK) != 0)
        return "Nothing can be written into the folder " + folder_ + ": choose another one";
    return {};
}

}  // namespace anomalis::flow
