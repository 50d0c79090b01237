#include "survey/results/tables.h"

#include <cmath>
#include <map>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/csv_text.h"
#include "output/geopackage_file.h"
#include "survey/results/line_result.h"
#include "survey/results/results_folder.h"
#include "survey/results/table_columns.h"

namespace anomalis::survey {

namespace {

/// A comma-separated table on its way to the disk.
class CsvFile {
  public:
    explicit CsvFile(const std::string& path) : file_(path) {}

    void header(const std::vector<output::GisField>& fields) {
        for (const output::GisField& field : fields) rows_.name(field.name);
        end_row();
    }
    void row(const std::vector<output::GisValue>& values) {
        for (const output::GisValue& value : values) std::visit([&](const auto& held) { put(held); }, value);
        end_row();
    }
    void commit() {
        file_.write(rows_.text());
        file_.commit();
    }

  private:
    void put(std::monostate) { rows_.nothing(); }
    void put(std::int64_t value) { rows_.whole(static_cast<int>(value)); }
    void put(double value) { rows_.number(value); }
    void put(const std::string& value) { rows_.words(value); }
    void end_row() {
        constexpr std::size_t piece = 1 << 18;
        rows_.end_row();
        if (rows_.text().size() < piece) return;
        file_.write(rows_.text());
        rows_ = {};
    }

    SafeFile file_;
    output::CsvText rows_;
};

/// Places of lines in one system, whatever systems the lines are in.
class PlacesInOneSystem {
  public:
    explicit PlacesInOneSystem(std::string system) : system_(std::move(system)) {}

    /// None where a place is not known, or has no image.
    std::vector<output::GisPoint> points(const std::vector<TrackPoint>& places, const std::string& from) {
        std::vector<double> east, north;
        for (const TrackPoint& place : places) {
            east.push_back(place.east);
            north.push_back(place.north);
        }
        if (from != system_) {
            if (from.empty()) return {};
            changes_.try_emplace(from, from, system_).first->second.forward(east, north);
        }
        std::vector<output::GisPoint> points;
        for (std::size_t i = 0; i < east.size(); ++i) {
            if (!std::isfinite(east[i]) || !std::isfinite(north[i])) return {};
            points.push_back({east[i], north[i]});
        }
        return points;
    }

  private:
    std::string system_;
    std::map<std::string, intake::CoordinateChange> changes_;
};

class SurveyGeoPackage {
  public:
    SurveyGeoPackage(const std::string& path, const SurveyIdentity& identity, const std::string& system,
                     const std::vector<output::GisField>& of_lines,
                     const std::vector<output::GisField>& of_bodies)
        : file_(path), places_(system) {
        const std::string description = "Anomalis survey " + identity.name;
        lines_ = file_.add_table({.name = "lines", .shape = output::GisShape::line, .fields = of_lines},
                                 system, description);
        tops_ = file_.add_table({.name = "tops", .fields = of_bodies}, system, description);
    }
    void add_line(const LineResult& line, std::vector<output::GisValue> values) {
        std::vector<output::GisPoint> track = places_.points(line.track, line.coordinate_system);
        if (track.size() < 2) track.clear();
        file_.add(lines_, {std::move(track), std::move(values)});
    }
    void add_body(const LineResult& line, const BodyResult& body, std::vector<output::GisValue> values) {
        file_.add(tops_,
                  {places_.points({{body.east, body.north}}, line.coordinate_system), std::move(values)});
    }
    void commit() { file_.commit(); }

  private:
    output::GeoPackageFile file_;
    PlacesInOneSystem places_;
    std::size_t lines_ = 0, tops_ = 0;
};

LineResult result_of_line(const std::string& folder, const std::string& line) {
    const std::string path = line_result_file(folder, line);
    if (file_exists(path).empty())
        throw Fault("The line " + line + " is not in " + folder +
                    ": run the survey again, which does what is missing");
    return read_line_result(read_whole_file(path), path);
}

/// Of the first line that has one; "" when none does.
std::string system_of_survey(const std::string& folder, const SurveyIdentity& identity) {
    for (const std::string& name : identity.lines)
        if (std::string system = result_of_line(folder, name).coordinate_system; !system.empty())
            return system;
    return {};
}

/// All tables, filled side by side so that each result is read once.
class TableSet {
  public:
    TableSet(const std::string& folder, const SurveyIdentity& identity)
        : bodies_(folder + "/" + bodies_table_name),
          lines_(folder + "/" + lines_table_name),
          seconds_(folder + "/" + seconds_table_name),
          map_(folder + "/" + geopackage_name, identity, system_of_survey(folder, identity),
               fields_of(line_columns_), fields_of(body_columns_)) {
        bodies_.header(fields_of(body_columns_));
        lines_.header(fields_of(line_columns_));
        seconds_.header({{"line", output::GisKind::words}, {"seconds", output::GisKind::real}});
    }
    void add(const LineResult& line) {
        std::vector<output::GisValue> of_line = values_of(line_columns_, line);
        lines_.row(of_line);
        map_.add_line(line, std::move(of_line));
        seconds_.row({line.line, output::gis_number(line.seconds)});
        for (const BodyResult& body : line.bodies) {
            std::vector<output::GisValue> of_body = values_of(body_columns_, line, body);
            bodies_.row(of_body);
            map_.add_body(line, body, std::move(of_body));
        }
        ++counts_.lines;
        counts_.failed += line.status == LineStatus::failed ? 1 : 0;
        counts_.bodies += line.bodies.size();
    }
    TableCounts commit() {
        seconds_.commit();
        bodies_.commit();
        map_.commit();
        // Last: who waits for this table finds the others there.
        lines_.commit();
        return counts_;
    }

  private:
    LineColumns line_columns_ = line_columns();
    BodyColumns body_columns_ = body_columns();
    CsvFile bodies_, lines_, seconds_;
    SurveyGeoPackage map_;
    TableCounts counts_;
};

}  // namespace

TableCounts write_survey_tables(const std::string& folder) {
    const std::optional<SurveyIdentity> identity = read_survey_identity(folder);
    if (!identity) throw Fault(no_survey_text(folder));
    TableSet tables(folder, *identity);
    for (const std::string& name : identity->lines) tables.add(result_of_line(folder, name));
    return tables.commit();
}

}  // namespace anomalis::survey
