#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "core/failure.h"
#include "fuzz_support.h"
#include "intake/formats/survey_format.h"
#include "intake/survey/survey_index.h"
#include "support/temp_folder.h"

namespace {

using namespace anomalis;
using namespace anomalis::intake;

/// Writes the input as the file or the pair of files that its first byte chooses; returns the path to open.
std::string write_survey(const TempFolder& folder, std::uint8_t choice, std::string_view text) {
    if (choice % 3 == 0) return folder.write("a.csv", text);
    if (choice % 3 == 1) return folder.write("b.xyz", text);
    constexpr std::string_view end = "END DEFN";
    const auto cut = text.find(end);
    const std::size_t split = cut == std::string_view::npos ? text.size() / 2 : cut + end.size() + 1;
    folder.write("c.dfn", text.substr(0, split));
    return folder.write("c.dat", text.substr(std::min(split, text.size())));
}

void require_consistent(const SurveyLayout& layout) {
    require(!layout.columns.empty() && layout.first_row >= 1);
    for (const Role role : all_roles) {
        if (role == Role::none) continue;
        int times = 0;
        for (const SurveyColumn& column : layout.columns) times += column.role == role;
        require(times <= 1);
    }
    for (const SurveyColumn& column : layout.columns) require(!column.name.empty());
    for (const RoleQuestion& question : open_questions(layout)) {
        require(question.columns.size() > 1);
        require(layout.columns.at(question.columns.front()).role == question.role);
        for (const std::size_t column : question.columns) require(column < layout.columns.size());
    }
    const SurveyPreview preview = preview_rows(layout, 20);
    require(preview.rows.size() == preview.file_line.size() && preview.rows.size() <= 20);
    for (const auto& row : preview.rows) require(row.size() == layout.columns.size());
}

void require_rows(const SurveyLayout& layout) {
    std::vector<std::size_t> all(layout.columns.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    const auto reader = open_rows(layout, all);
    RowBlock block;
    long last = 0;
    while (reader->next(block)) {
        require(block.rows > 0 && block.values.size() == all.size());
        require(block.line.size() == block.rows && block.file_line.size() == block.rows);
        for (const auto& column : block.values) {
            require(column.size() == block.rows);
            for (const double value : column) require(!std::isinf(value));
        }
        for (std::size_t row = 0; row < block.rows; ++row) {
            require(block.file_line[row] > last);
            last = block.file_line[row];
            require(block.line[row] >= 0 &&
                    static_cast<std::size_t>(block.line[row]) < reader->line_names().size());
        }
    }
    for (const RowLoss& loss : reader->losses())
        require(loss.count > 0 && loss.first_line > 0 && !loss.why.empty());
}

/// What the index says of a line is what reading the line gives.
void require_lines(const SurveyLayout& layout) {
    const SurveyIndex index = index_survey(layout, {});
    require(!index.lines.empty() && index.nulls.size() == layout.columns.size());
    const std::size_t looked_at = std::min<std::size_t>(index.lines.size(), 3);
    for (std::size_t i = 0; i < looked_at; ++i) {
        const SurveyLineInfo& info = index.lines[i];
        if (info.stations == 0) continue;
        const SurveyLine line = read_survey_line(index, i);
        const auto stations = static_cast<std::size_t>(info.stations);
        require(line.east.size() == stations && line.north.size() == stations);
        require(line.file_line.size() == stations);
        for (const auto* column : {&line.height, &line.ground, &line.mag, &line.grav, &line.fiducial})
            require(column->empty() || column->size() == stations);
        for (const LinePiece piece : info.pieces)
            require(piece.first >= 0 && piece.first <= piece.last && piece.last < info.stations);
    }
}

}  // namespace

/// Any file is either refused with a text or recognised; what was recognised reads in order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    static const TempFolder folder;
    const std::string path =
        write_survey(folder, data[0], {reinterpret_cast<const char*>(data) + 1, size - 1});
    try {
        const SurveyLayout layout = recognise_survey(path);
        require_consistent(layout);
        require_rows(layout);
        require_lines(layout);
    } catch (const Fault& fault) {
        require(*fault.what() != '\0');
    }
    return 0;
}
