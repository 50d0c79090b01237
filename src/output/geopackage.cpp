#include <memory>
#include <sqlite3.h>
#include <string>
#include <variant>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/failure_note.h"
#include "output/geopackage_geometry.h"
#include "output/gis_files.h"
#include "output/gis_layers.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

constexpr std::int32_t unnumbered_system = 100000;  ///< our number of a system that has none
constexpr std::int32_t wgs84_number = 4326;

/// The tables that every GeoPackage has (OGC 12-128r18, annex C).
constexpr const char* frame = R"sql(
PRAGMA application_id = 0x47504B47;
PRAGMA user_version = 10300;
CREATE TABLE gpkg_spatial_ref_sys (
  srs_name TEXT NOT NULL, srs_id INTEGER NOT NULL PRIMARY KEY, organization TEXT NOT NULL,
  organization_coordsys_id INTEGER NOT NULL, definition TEXT NOT NULL, description TEXT);
CREATE TABLE gpkg_contents (
  table_name TEXT NOT NULL PRIMARY KEY, data_type TEXT NOT NULL, identifier TEXT UNIQUE,
  description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE, min_y DOUBLE, max_x DOUBLE, max_y DOUBLE, srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE gpkg_geometry_columns (
  table_name TEXT NOT NULL, column_name TEXT NOT NULL, geometry_type_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL, z TINYINT NOT NULL, m TINYINT NOT NULL,
  CONSTRAINT pk_geom_cols PRIMARY KEY (table_name, column_name),
  CONSTRAINT uk_gc_table_name UNIQUE (table_name),
  CONSTRAINT fk_gc_tn FOREIGN KEY (table_name) REFERENCES gpkg_contents(table_name),
  CONSTRAINT fk_gc_srs FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys (srs_id));
INSERT INTO gpkg_spatial_ref_sys VALUES
  ('Undefined cartesian SRS', -1, 'NONE', -1, 'undefined', NULL),
  ('Undefined geographic SRS', 0, 'NONE', 0, 'undefined', NULL);
)sql";

/// A name as SQL takes it, whatever is in it.
std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name) text += c == '"' ? "\"\"" : std::string(1, c);
    return text + '"';
}

/// A database in memory.
class Database {
  public:
    Database() {
        sqlite3* opened = nullptr;
        const int status = sqlite3_open(":memory:", &opened);
        handle_.reset(opened);
        if (status != SQLITE_OK) raise();
    }
    void run(const std::string& sql) {
        if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) raise();
    }
    sqlite3* handle() { return handle_.get(); }
    [[noreturn]] void raise() const {
        throw Fault(std::string("The GeoPackage could not be made: ") +
                    (handle_ ? sqlite3_errmsg(handle_.get()) : "out of memory"));
    }
    std::string bytes() {
        sqlite3_int64 size = 0;
        const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> image(
            sqlite3_serialize(handle_.get(), "main", &size, 0), &sqlite3_free);
        if (!image) raise();
        const auto* begin = reinterpret_cast<const char*>(image.get());
        return {begin, begin + size};
    }

  private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> handle_;
};

/// A statement that is run once a row; values are bound from left to right.
class Insertion {
  public:
    Insertion(Database& database, const std::string& sql) : database_(database) {
        sqlite3_stmt* prepared = nullptr;
        if (sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &prepared, nullptr) != SQLITE_OK)
            database.raise();
        statement_.reset(prepared);
    }
    Insertion& operator<<(std::monostate) { return check(sqlite3_bind_null(get(), ++column_)); }
    Insertion& operator<<(std::int64_t value) { return check(sqlite3_bind_int64(get(), ++column_, value)); }
    Insertion& operator<<(double value) { return check(sqlite3_bind_double(get(), ++column_, value)); }
    Insertion& operator<<(const std::string& text) {
        return check(sqlite3_bind_text(get(), ++column_, text.data(), static_cast<int>(text.size()),
                                       SQLITE_TRANSIENT));
    }
    Insertion& blob(const std::string& bytes) {
        return check(sqlite3_bind_blob(get(), ++column_, bytes.data(), static_cast<int>(bytes.size()),
                                       SQLITE_TRANSIENT));
    }
    void run() {
        if (sqlite3_step(get()) != SQLITE_DONE) database_.raise();
        sqlite3_reset(get());
        column_ = 0;
    }

  private:
    sqlite3_stmt* get() { return statement_.get(); }
    Insertion& check(int status) {
        if (status != SQLITE_OK) database_.raise();
        return *this;
    }
    struct Finalise {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    Database& database_;
    std::unique_ptr<sqlite3_stmt, Finalise> statement_;
    int column_ = 0;
};

/// The number under which a GeoPackage knows a system; of the EPSG dataset its own.
std::int32_t system_number(const intake::CoordinateSystem& system) {
    double number = 0;
    const std::string digits = system.code.starts_with("EPSG:") ? system.code.substr(5) : "";
    return parse_number(digits, number) ? static_cast<std::int32_t>(number) : unnumbered_system;
}

void add_system(Database& database, const std::string& text) {
    const intake::CoordinateSystem system = intake::find_coordinate_system(text);
    const std::int32_t number = system_number(system);
    const bool numbered = number != unnumbered_system;
    Insertion row(database, "INSERT OR IGNORE INTO gpkg_spatial_ref_sys VALUES (?, ?, ?, ?, ?, NULL)");
    row << system.name << std::int64_t{number} << std::string(numbered ? "EPSG" : "NONE")
        << std::int64_t{number} << intake::coordinate_system_wkt(text);
    row.run();
}

constexpr const char* sql_type(GisKind kind) {
    return kind == GisKind::whole ? "INTEGER" : kind == GisKind::real ? "DOUBLE" : "TEXT";
}

void make_table(Database& database, const GisLayer& layer) {
    std::string sql = "CREATE TABLE " + quoted(layer.name) +
                      " (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom " +
                      (layer.polygons ? "POLYGON" : "POINT");
    for (const GisField& field : layer.fields) sql += ", " + quoted(field.name) + " " + sql_type(field.kind);
    database.run(sql + ")");
}

void add_features(Database& database, const GisLayer& layer, std::int32_t system) {
    std::string sql = "INSERT INTO " + quoted(layer.name) + " (geom";
    for (const GisField& field : layer.fields) sql += ", " + quoted(field.name);
    sql += ") VALUES (?";
    for (std::size_t i = 0; i < layer.fields.size(); ++i) sql += ", ?";
    Insertion row(database, sql + ")");
    for (const GisFeature& feature : layer.features) {
        row.blob(geopackage_geometry(feature.points, layer.polygons, system));
        for (const GisValue& value : feature.values)
            std::visit([&](const auto& held) { row << held; }, value);
        row.run();
    }
}

void describe_layer(Database& database, const GisLayer& layer, std::int32_t system,
                    const std::string& description) {
    std::vector<GisPoint> points;
    for (const GisFeature& feature : layer.features)
        points.insert(points.end(), feature.points.begin(), feature.points.end());
    Insertion contents(
        database,
        "INSERT INTO gpkg_contents (table_name, data_type, identifier, description, srs_id, min_x, "
        "min_y, max_x, max_y) VALUES (?, 'features', ?, ?, ?, ?, ?, ?, ?)");
    contents << layer.name << layer.name << description << std::int64_t{system};
    if (points.empty()) {
        for (int i = 0; i < 4; ++i) contents << std::monostate();
    } else {
        const GisEnvelope all = envelope_of(points);
        contents << all.x_low << all.y_low << all.x_high << all.y_high;
    }
    contents.run();
    Insertion geometry(database, "INSERT INTO gpkg_geometry_columns VALUES (?, 'geom', ?, ?, 0, 0)");
    geometry << layer.name << std::string(layer.polygons ? "POLYGON" : "POINT") << std::int64_t{system};
    geometry.run();
}

}  // namespace

std::string geopackage_bytes(const Workspace& workspace, GisSystem system,
                             const std::vector<std::string>& failures) {
    const std::string& own = workspace.source.coordinate_system;
    const std::string target = system == GisSystem::of_line ? own : intake::wgs84;
    const std::vector<GisLayer> layers = gis_layers(workspace, target);
    const std::int32_t number = system_number(intake::find_coordinate_system(target));
    Database database;
    database.run(frame);
    database.run("BEGIN");
    add_system(database, intake::wgs84);
    if (number != wgs84_number) add_system(database, target);
    for (const GisLayer& layer : layers) {
        make_table(database, layer);
        describe_layer(database, layer, number, "Anomalis" + failure_note(failures));
        add_features(database, layer, number);
    }
    database.run("COMMIT");
    return database.bytes();
}

int write_geopackage(const std::string& path, const Workspace& workspace, GisSystem system, Prompts& prompts,
                     const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_file_telling(prompts, path, geopackage_bytes(workspace, system, failures));
    });
}

}  // namespace anomalis::output
