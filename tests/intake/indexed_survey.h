#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "intake/survey/survey_index.h"
#include "support/temp_folder.h"

namespace anomalis::intake {

/// A survey file of a test's own.
struct SurveyFile {
    explicit SurveyFile(const std::string& text, const std::string& name = "survey.csv")
        : path(folder.write(name, text)) {}

    SurveyIndex index(const CoordinateChoice& coordinates = {}) const {
        return index_survey(recognise_survey(path), coordinates);
    }
    /// The text of the fault of indexing.
    std::string fault(const CoordinateChoice& coordinates = {}) const {
        try {
            index(coordinates);
        } catch (const Fault& fault) {
            return fault.what();
        }
        return "none";
    }

    TempFolder folder;
    std::string path;
};

struct Taken : LineTaker {
    std::vector<std::size_t> numbers;
    std::vector<SurveyLine> lines;
    void take(std::size_t line, SurveyLine&& read) override {
        numbers.push_back(line);
        lines.push_back(std::move(read));
    }
};

}  // namespace anomalis::intake
