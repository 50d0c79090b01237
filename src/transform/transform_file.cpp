#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "core/failure.h"
#include "core/line_reader.h"
#include "core/numbers.h"
#include "core/prompts.h"
#include "core/text.h"
#include "core/told_write.h"
#include "transform/transform.h"

namespace anomalis::transform {

namespace {

constexpr std::string_view title_line = "     Station        Depth      East       North";
constexpr double shortest_line = 1.0;

struct PairLine {
    std::array<double, 4> values{};
    bool station_absent = false;
};

std::vector<std::string> tokens_of(std::string_view line) {
    std::vector<std::string> tokens;
    while (!line.empty()) tokens.emplace_back(next_token(line));
    return tokens;
}

/// A file that was cut, or is none of points, must not move a survey: every value has to be there.
double number_at(const std::vector<std::string>& tokens, std::size_t place) {
    if (place >= tokens.size()) throw Fault(FaultKind::input_past_end);
    const double value = prefix_number(tokens[place]);
    if (!is_numeric(tokens[place])) throw Fault("Not a number: " + tokens[place]);
    return value;
}

/// One point in both systems. Exactly four tokens are the four values; otherwise the first is a station
/// number.
PairLine parse_pair(std::string_view line) {
    const std::vector<std::string> tokens = tokens_of(line);
    PairLine pair;
    pair.station_absent = tokens.size() == 4;
    const std::size_t first = pair.station_absent ? 0 : 1;
    for (std::size_t i = 0; i < pair.values.size(); ++i) pair.values[i] = number_at(tokens, first + i);
    return pair;
}

TransformPoints read_points(LineReader& reader) {
    reader.read_lf_line();
    const PairLine first = parse_pair(reader.read_lf_line());
    const PairLine second = parse_pair(reader.read_lf_line());
    TransformPoints points{first.values[0],  first.values[1],  first.values[2],  first.values[3],
                           second.values[0], second.values[1], second.values[2], second.values[3]};
    if (second.station_absent) {
        const std::vector<std::string> elevation = tokens_of(reader.read_lf_line());
        points.elevation_shift = number_at(elevation, 0);
        points.elevation_scale = number_at(elevation, 1);
    }
    return points;
}

std::string number_line(std::initializer_list<double> values) {
    std::string line;
    for (const double value : values) line += (line.empty() ? "" : " ") + number_to_text(value);
    return line + "\r\n";
}

}  // namespace

int load_transform_file(PointTransform& transform, const std::string& path, Prompts& prompts) {
    TransformPoints p;
    const int status = report_failure(prompts, "An error occurred while reading the transform file: ", [&] {
        LineReader reader(path);
        try {
            p = read_points(reader);
        } catch (const Fault& fault) {
            throw Fault(std::string(fault.what()) + " (" + path + ", line " +
                        std::to_string(reader.line_number()) + ")");
        }
    });
    if (status != 0) return status;
    if (std::hypot(p.original_x2 - p.original_x1, p.original_y2 - p.original_y1) < shortest_line) {
        prompts.message("The start and end grid coordinates cannot be identical");
        return -1;
    }
    if (std::hypot(p.new_x2 - p.new_x1, p.new_y2 - p.new_y1) < shortest_line) {
        prompts.message("The start and end map coordinates cannot be identical");
        return -1;
    }
    return define_transform_from_points(p, transform, prompts);
}

std::string transform_file_text(const PointTransform& t) {
    return std::string(title_line) + "\r\n" + number_line({t.x_origin, t.y_origin, t.x_offset, t.y_offset}) +
           number_line({t.original_x2, t.original_y2, t.new_x2, t.new_y2}) +
           number_line({t.elevation_shift, t.elevation_scale});
}

int save_transform_file(const PointTransform& transform, const std::string& path, Prompts& prompts) {
    return report_failure(prompts, "An error occurred while saving the transform file: ", [&] {
        write_file_telling(prompts, path, transform_file_text(transform));
    });
}

}  // namespace anomalis::transform
