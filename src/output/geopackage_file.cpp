#include "output/geopackage_file.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <unistd.h>

#include "core/failure.h"
#include "core/leftovers.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "output/geopackage_rows.h"

namespace anomalis::output {

namespace {

/// When no clock is asked: a file that is made again shall be the same.
constexpr const char* no_time = "2000-01-01T00:00:00.000Z";

/// An empty file beside a path, removed at the end of the scope, or as a leftover of a killed process.
class FileBeside {
  public:
    explicit FileBeside(const std::string& path) : path_(temporary_name(folder_name(path))) {
        const int descriptor = ::mkstemp(path_.data());
        if (descriptor < 0) throw FileFault(errno, path);
        ::close(descriptor);
    }
    ~FileBeside() { ::unlink(path_.c_str()); }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

void copy_file(const std::string& from, SafeFile& to) {
    std::ifstream file(from, std::ios::binary);
    std::array<char, 1 << 16> piece{};
    while (file) {
        file.read(piece.data(), piece.size());
        to.write({piece.data(), static_cast<std::size_t>(file.gcount())});
    }
    if (!file.eof()) throw FileFault(EIO, from);
}

}  // namespace

struct GeoPackageFile::State {
    explicit State(const std::string& path) : target(path), made(path) { rows.emplace(made.path(), no_time); }
    SafeFile target;
    FileBeside made;
    std::optional<GeoPackageRows> rows;
};

GeoPackageFile::GeoPackageFile(const std::string& path) : state_(std::make_unique<State>(path)) {}
GeoPackageFile::~GeoPackageFile() = default;

std::size_t GeoPackageFile::add_table(const GisTable& table, const std::string& system,
                                      const std::string& description) {
    return state_->rows->add_table(table, system, description);
}

void GeoPackageFile::add(std::size_t table, const GisFeature& feature) {
    state_->rows->add(table, feature);
}

void GeoPackageFile::commit() {
    state_->rows->finish();
    state_->rows.reset();
    copy_file(state_->made.path(), state_->target);
    state_->target.commit();
}

void write_geopackage_layers(const std::string& path, const std::vector<GisLayer>& layers,
                             const std::string& system, const std::string& description) {
    GeoPackageFile file(path);
    for (const GisLayer& layer : layers) {
        const std::size_t table = file.add_table(layer, system, description);
        for (const GisFeature& feature : layer.features) file.add(table, feature);
    }
    file.commit();
}

}  // namespace anomalis::output
