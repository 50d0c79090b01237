#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "output/gis_tables.h"

namespace anomalis::output {

/// An OGC GeoPackage 1.3 that takes its features one by one, so that memory does not grow with them. The same
/// features in the same order give the same bytes: the time of its last change is a constant.
/// It is made beside `path` and takes its place as a whole (see SafeFile); without a `commit` the old file
/// stays. Every member raises Fault, or FileFault where the disk fails.
class GeoPackageFile {
  public:
    explicit GeoPackageFile(const std::string& path);
    ~GeoPackageFile();
    GeoPackageFile(const GeoPackageFile&) = delete;
    GeoPackageFile& operator=(const GeoPackageFile&) = delete;

    /// Begins a table whose places are of a coordinate system; "": of a plane that nobody knows the place of.
    /// Returns its number. Tables may be filled by turns.
    std::size_t add_table(const GisTable& table, const std::string& system, const std::string& description);
    void add(std::size_t table, const GisFeature& feature);
    /// Once, after the last feature.
    void commit();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Whole layers of one system as a file.
void write_geopackage_layers(const std::string& path, const std::vector<GisLayer>& layers,
                             const std::string& system, const std::string& description);

}  // namespace anomalis::output
