#pragma once

#include <cmath>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/failure.h"
#include "intake/formats/survey_format.h"
#include "support/temp_folder.h"

namespace anomalis::intake {

/// All rows of a survey file, by the roles of its columns.
struct ReadSurvey {
    std::map<Role, std::vector<double>> values;
    std::vector<std::string> line;  ///< name of each row's line
    std::vector<long> file_line;
    std::vector<std::string> line_names;
    std::vector<bool> ties;
    std::vector<RowLoss> losses;

    std::size_t rows() const { return line.size(); }
    const std::vector<double>& operator[](Role role) const { return values.at(role); }
};

inline ReadSurvey read_all(const SurveyLayout& layout) {
    std::vector<std::size_t> wanted;
    for (std::size_t i = 0; i < layout.columns.size(); ++i)
        if (layout.columns[i].role != Role::none) wanted.push_back(i);
    const auto reader = open_rows(layout, wanted);
    ReadSurvey read;
    RowBlock block;
    while (reader->next(block)) {
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            auto& values = read.values[layout.columns[wanted[i]].role];
            values.insert(values.end(), block.values[i].begin(), block.values[i].end());
        }
        for (const std::int32_t line : block.line)
            read.line.push_back(reader->line_names()[static_cast<std::size_t>(line)]);
        read.file_line.insert(read.file_line.end(), block.file_line.begin(), block.file_line.end());
    }
    read.line_names.assign(reader->line_names().begin(), reader->line_names().end());
    for (std::size_t i = 0; i < read.line_names.size(); ++i)
        read.ties.push_back(reader->is_tie(static_cast<std::int32_t>(i)));
    read.losses.assign(reader->losses().begin(), reader->losses().end());
    return read;
}

/// A file of a test's own, recognised.
struct SurveyOf {
    explicit SurveyOf(std::string_view contents, std::string_view name = "survey.csv")
        : layout(recognise_survey(folder.write(name, contents))) {}

    ReadSurvey read() const { return read_all(layout); }
    /// The role of a column by its name; "no such column" for a stranger.
    std::string_view role(std::string_view column) const {
        for (const SurveyColumn& one : layout.columns)
            if (one.name == column) return role_name(one.role);
        return "no such column";
    }
    SurveyColumn& column(std::string_view name) {
        for (SurveyColumn& one : layout.columns)
            if (one.name == name) return one;
        throw Fault("no column " + std::string(name));
    }
    bool has_remark(std::string_view part) const {
        for (const std::string& remark : layout.remarks)
            if (remark.find(part) != std::string::npos) return true;
        return false;
    }

    TempFolder folder;
    SurveyLayout layout;
};

/// What recognising the file says is wrong with it; "" for nothing.
inline std::string fault_of(const std::string& path) {
    try {
        recognise_survey(path);
    } catch (const std::exception& fault) {
        return fault.what();
    }
    return "";
}

/// Rows "a,b,c" with their ends.
inline std::string rows_of(std::initializer_list<std::string_view> rows, std::string_view end = "\n") {
    std::string text;
    for (const std::string_view row : rows) text += std::string(row) + std::string(end);
    return text;
}

}  // namespace anomalis::intake
