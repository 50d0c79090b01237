#include "output/geopackage_rows.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <sqlite3.h>
#include <utility>
#include <variant>

#include "core/failure.h"
#include "core/numbers.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/geopackage_geometry.h"

namespace anomalis::output {

namespace {

constexpr std::int32_t unnumbered_system = 100000;  ///< our number of a system that has none
constexpr std::int32_t unknown_plane = -1;

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

class Database {
  public:
    /// In memory without a file. No locks are asked of a file: shared folders may have none.
    explicit Database(const std::string& file) : file_(file) {
        sqlite3* opened = nullptr;
        const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        const int status = file.empty() ? sqlite3_open(":memory:", &opened)
                                        : sqlite3_open_v2(file.c_str(), &opened, flags, "unix-none");
        handle_.reset(opened);
        if (status != SQLITE_OK) raise();
        // Nobody sees the file before it is whole, and what is removed leaves no trace of chance in it.
        if (!file.empty())
            run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA secure_delete = ON");
    }
    void run(const std::string& sql) {
        if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) raise();
    }
    sqlite3* handle() { return handle_.get(); }
    [[noreturn]] void raise() const {
        if (!handle_) throw Fault(std::string(failed) + "out of memory");
        switch (sqlite3_errcode(handle_.get()) & 0xff) {
            case SQLITE_FULL:
                throw FileFault(ENOSPC, file_);
            case SQLITE_IOERR:
            case SQLITE_CANTOPEN:
            case SQLITE_READONLY:
                throw FileFault(std::max(sqlite3_system_errno(handle_.get()), 0) > 0
                                    ? sqlite3_system_errno(handle_.get())
                                    : EIO,
                                file_);
            default:
                throw Fault(failed + std::string(sqlite3_errmsg(handle_.get())));
        }
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
    static constexpr const char* failed = "The GeoPackage could not be made: ";
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::string file_;
    std::unique_ptr<sqlite3, Close> handle_;
};

/// A statement that is run once a row; values are bound from left to right.
class Insertion {
  public:
    Insertion(Database& database, const std::string& sql) : database_(&database) {
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
        if (sqlite3_step(get()) != SQLITE_DONE) database_->raise();
        if (sqlite3_reset(get()) != SQLITE_OK) database_->raise();
        column_ = 0;
    }

  private:
    sqlite3_stmt* get() { return statement_.get(); }
    Insertion& check(int status) {
        if (status != SQLITE_OK) database_->raise();
        return *this;
    }
    struct Finalise {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    Database* database_;
    std::unique_ptr<sqlite3_stmt, Finalise> statement_;
    int column_ = 0;
};

/// The number under which a GeoPackage knows a system; of the EPSG dataset its own.
std::int32_t system_number(const intake::CoordinateSystem& system) {
    double number = 0;
    const std::string digits = system.code.starts_with("EPSG:") ? system.code.substr(5) : "";
    return parse_number(digits, number) ? static_cast<std::int32_t>(number) : unnumbered_system;
}

void insert_system(Database& database, const std::string& text) {
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

constexpr const char* sql_geometry(GisShape shape) {
    return shape == GisShape::polygon ? "POLYGON" : shape == GisShape::line ? "LINESTRING" : "POINT";
}

void make_table(Database& database, const GisTable& table) {
    std::string sql = "CREATE TABLE " + quoted(table.name) +
                      " (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom " + sql_geometry(table.shape);
    for (const GisField& field : table.fields) sql += ", " + quoted(field.name) + " " + sql_type(field.kind);
    database.run(sql + ")");
}

std::string insertion_text(const GisTable& table) {
    std::string sql = "INSERT INTO " + quoted(table.name) + " (geom";
    for (const GisField& field : table.fields) sql += ", " + quoted(field.name);
    sql += ") VALUES (?";
    for (std::size_t i = 0; i < table.fields.size(); ++i) sql += ", ?";
    return sql + ")";
}

/// A table that features go into.
struct OpenTable {
    GisTable table;
    std::int32_t system = unknown_plane;
    std::string description;
    std::optional<GisEnvelope> extent;  ///< of all that went in
    Insertion row;
};

void describe_table(Database& database, const OpenTable& open, const std::string& last_change) {
    const bool now = last_change.empty();
    Insertion contents(
        database,
        std::string("INSERT INTO gpkg_contents (table_name, data_type, identifier, description, srs_id, "
                    "min_x, min_y, max_x, max_y") +
            (now ? "" : ", last_change") + ") VALUES (?, 'features', ?, ?, ?, ?, ?, ?, ?" +
            (now ? ")" : ", ?)"));
    contents << open.table.name << open.table.name << open.description << std::int64_t{open.system};
    if (open.extent) {
        contents << open.extent->x_low << open.extent->y_low << open.extent->x_high << open.extent->y_high;
    } else {
        for (int i = 0; i < 4; ++i) contents << std::monostate();
    }
    if (!now) contents << last_change;
    contents.run();
    Insertion geometry(database, "INSERT INTO gpkg_geometry_columns VALUES (?, 'geom', ?, ?, ?, 0)");
    geometry << open.table.name << std::string(sql_geometry(open.table.shape)) << std::int64_t{open.system}
             << std::int64_t{open.table.heights ? 1 : 0};
    geometry.run();
}

void grow(std::optional<GisEnvelope>& extent, const std::vector<GisPoint>& points) {
    const GisEnvelope added = envelope_of(points);
    if (!extent) {
        extent = added;
        return;
    }
    extent->x_low = std::min(extent->x_low, added.x_low);
    extent->x_high = std::max(extent->x_high, added.x_high);
    extent->y_low = std::min(extent->y_low, added.y_low);
    extent->y_high = std::max(extent->y_high, added.y_high);
}

}  // namespace

struct GeoPackageRows::State {
    explicit State(const std::string& file) : database(file) {}
    Database database;
    std::string last_change;
    std::vector<OpenTable> tables;
};

GeoPackageRows::GeoPackageRows(const std::string& file, std::string last_change)
    : state_(std::make_unique<State>(file)) {
    state_->last_change = std::move(last_change);
    state_->database.run(frame);
    state_->database.run("BEGIN");
    add_system(intake::wgs84);
}

GeoPackageRows::~GeoPackageRows() = default;

void GeoPackageRows::add_system(const std::string& system) {
    insert_system(state_->database, system);
}

std::size_t GeoPackageRows::add_table(const GisTable& table, const std::string& system,
                                      const std::string& description) {
    Database& database = state_->database;
    const std::int32_t number =
        system.empty() ? unknown_plane : system_number(intake::find_coordinate_system(system));
    if (!system.empty()) add_system(system);
    make_table(database, table);
    state_->tables.push_back({table, number, description, {}, Insertion(database, insertion_text(table))});
    return state_->tables.size() - 1;
}

void GeoPackageRows::add(std::size_t table, const GisFeature& feature) {
    OpenTable& open = state_->tables.at(table);
    if (feature.points.empty()) {
        open.row << std::monostate();
    } else {
        open.row.blob(geopackage_geometry(feature.points, open.table.shape, open.table.heights, open.system));
        grow(open.extent, feature.points);
    }
    for (const GisValue& value : feature.values)
        std::visit([&](const auto& held) { open.row << held; }, value);
    open.row.run();
}

void GeoPackageRows::finish() {
    for (const OpenTable& open : state_->tables) describe_table(state_->database, open, state_->last_change);
    state_->tables.clear();
    state_->database.run("COMMIT");
}

std::string GeoPackageRows::bytes() {
    return state_->database.bytes();
}

}  // namespace anomalis::output
