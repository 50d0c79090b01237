#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "output/gis_tables.h"

namespace anomalis::output {

/// An OGC GeoPackage 1.3 in the making. Private to this room: `GeoPackageFile` writes files.
/// Every member raises Fault, or FileFault where the disk fails.
class GeoPackageRows {
  public:
    /// A database in memory, or in an empty file that nobody else knows of. `last_change` as in
    /// "2000-01-01T00:00:00.000Z"; "": now.
    explicit GeoPackageRows(const std::string& file = "", std::string last_change = "");
    ~GeoPackageRows();
    GeoPackageRows(const GeoPackageRows&) = delete;
    GeoPackageRows& operator=(const GeoPackageRows&) = delete;

    /// Makes a system known before it is needed.
    void add_system(const std::string& system);
    /// Begins a table in a system; "" is a plane that nobody knows the place of. Returns its number.
    std::size_t add_table(const GisTable& table, const std::string& system, const std::string& description);
    void add(std::size_t table, const GisFeature& feature);
    /// Once, after the last feature.
    void finish();
    /// Of a finished package in memory.
    std::string bytes();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace anomalis::output
