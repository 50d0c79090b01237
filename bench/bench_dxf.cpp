// Drawings of many bodies and of a long line against bare formatted writes of the same bytes.

#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/workspace.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/trapezoid.h"
#include "output/dxf.h"
#include "quiet_prompts.h"
#include "timing.h"

namespace anomalis {
namespace {

Workspace pipes(int count) {
    QuietPrompts prompts;
    Workspace workspace;
    initialise_workspace(workspace, prompts);
    workspace.x_min = 400'000, workspace.x_max = 420'000;
    workspace.y_min = 7'120'000, workspace.y_max = 7'130'000;
    workspace.bodies.resize(static_cast<std::size_t>(count) + 1);
    workspace.body_count = workspace.body_capacity = count;
    for (int number = 1; number <= count; ++number) {
        ModelBody& body = workspace.body(number);
        body.type = pipe;
        body.name = "Pipe " + std::to_string(number);
        body.east = 412'345.678 + 12.25 * number;
        body.north = 7'123'456.75;
        body.top.value = -31.4F;
        body.dip.value = 63;
        body.strike.value = 17;
        body.width.value = 40;
        body.length.value = 300;
    }
    return workspace;
}

class DrawingFiles {
  public:
    DrawingFiles() {
        std::string pattern = (std::filesystem::temp_directory_path() / "anomalis-bench-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder: " + pattern);
        folder_ = pattern;
    }
    ~DrawingFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    DrawingFiles(const DrawingFiles&) = delete;
    DrawingFiles& operator=(const DrawingFiles&) = delete;

    std::string path(const char* name) const { return folder_ + "/" + name; }
    std::string text(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(path(name), std::ios::binary).rdbuf();
        return text.str();
    }

  private:
    std::string folder_;
};

constexpr const char* head =
    "  0\r\nSECTION\r\n  2\r\nHEADER\r\n  9\r\n$EXTMIN\r\n 10\r\n 400000 \r\n 20\r\n 7115000 \r\n"
    "  9\r\n$EXTMAX\r\n 10\r\n 420000 \r\n 20\r\n 7135000 \r\n  0\r\nENDSEC\r\n  0\r\nSECTION\r\n  "
    "2\r\nENTITIES\r\n";
constexpr const char* tail = "  0\r\nENDSEC\r\n  0\r\nEOF\r\n";

/// The solids are there already: nothing but formatting and writing.
void formatted_write(const Workspace& workspace, const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fputs(head, file);
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        const auto at = [&](std::int32_t i) -> const Point3& {
            return body.solid.transformed_points[static_cast<std::size_t>(i)];
        };
        for (const auto& [i, j, k] : body.solid.facets) {
            const Point3 &a = at(i), &b = at(j), &c = at(k);
            std::fprintf(
                file,
                "  0\r\n3DFACE\r\n  8\r\n%s\r\n  62\r\n  1\r\n"
                " 10\r\n%.2f\r\n 20\r\n%.2f\r\n 30\r\n%.2f\r\n 11\r\n%.2f\r\n 21\r\n%.2f\r\n 31\r\n%.2f\r\n"
                " 12\r\n%.2f\r\n 22\r\n%.2f\r\n 32\r\n%.2f\r\n 13\r\n%.2f\r\n 23\r\n%.2f\r\n 33\r\n%.2f\r\n",
                body.name.c_str(), a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, c.x, c.y, c.z);
        }
    }
    std::fputs(tail, file);
    if (std::fclose(file) != 0) throw std::runtime_error("cannot write " + path);
}

/// Solids are built inside the time of the drawing, as they are when nothing has been calculated before.
void bodies_of_48_facets(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const DrawingFiles files;
    QuietPrompts prompts;
    BestTime drawing, bare;
    std::uintmax_t size = 0;
    for (auto _ : state) {
        Workspace workspace = pipes(count);
        const double seconds = drawing.take([&] {
            if (output::write_body_dxf(files.path("a.dxf"), workspace, prompts) != 0)
                state.SkipWithError("not drawn");
        });
        Faults faults;
        for (int number = 1; number <= count; ++number)
            forward::setup_cylinder_body(workspace.body(number), workspace.body(number).solid, faults);
        bare.take([&] { formatted_write(workspace, files.path("b.dxf")); });
        size = std::filesystem::file_size(files.path("a.dxf"));
        state.SetIterationTime(seconds);
    }
    if (files.text("a.dxf") != files.text("b.dxf")) state.SkipWithError("not the same bytes");
    state.counters["rate_to_formatted_write"] = bare.seconds() / drawing.seconds();
    state.counters["MB"] = static_cast<double>(size) / 1e6;
    state.counters["MB/s"] = static_cast<double>(size) / 1e6 / drawing.seconds();
    state.counters["us/body"] = drawing.seconds() * 1e6 / count;
}
BENCHMARK(bodies_of_48_facets)
    ->ArgName("pipes")
    ->Arg(1'000)
    ->Arg(10'000)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// Eight corners of a box, in the order of the drawing's vertices.
using Corners = std::array<std::array<float, 3>, 8>;

Corners box_corners(const ModelBody& body) {
    forward::Trapezoid offsets{};
    Faults faults;
    forward::convert_profile_model_to_trapezoid(body, offsets, faults);
    Corners corners{};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto& offset = i < 4 ? offsets[1][i] : offsets[0][i - 4];
        corners[i] = {static_cast<float>(offset[0] + body.east), static_cast<float>(offset[1] + body.north),
                      static_cast<float>(double{body.top.value} + offset[2])};
    }
    return corners;
}

/// The corners are there already.
void formatted_boxes(const Workspace& workspace, const std::vector<Corners>& boxes, const std::string& path) {
    constexpr std::size_t faces[6][4] = {{0, 1, 2, 3}, {7, 6, 5, 4}, {0, 4, 5, 1},
                                         {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}};
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fputs(head, file);
    for (int number = 1; number <= workspace.body_count; ++number) {
        const Corners& box = boxes[static_cast<std::size_t>(number - 1)];
        for (const auto& face : faces) {
            std::fprintf(file, "  0\r\n3DFACE\r\n  8\r\n%s\r\n  62\r\n  1\r\n",
                         workspace.body(number).name.c_str());
            for (int corner = 0; corner < 4; ++corner) {
                const auto& at = box[face[corner]];
                std::fprintf(file, "  1%d\r\n% .7g \r\n  2%d\r\n% .7g \r\n  3%d\r\n% .7g \r\n", corner,
                             static_cast<double>(at[0]), corner, static_cast<double>(at[1]), corner,
                             static_cast<double>(at[2]));
            }
        }
    }
    std::fputs(tail, file);
    if (std::fclose(file) != 0) throw std::runtime_error("cannot write " + path);
}

void sheets_as_boxes(benchmark::State& state) {
    const DrawingFiles files;
    QuietPrompts prompts;
    Workspace workspace = pipes(static_cast<int>(state.range(0)));
    std::vector<Corners> boxes;
    for (int number = 1; number <= workspace.body_count; ++number) {
        workspace.body(number).type = thick_sheet;
        workspace.body(number).depth_extent.value = 200;
        boxes.push_back(box_corners(workspace.body(number)));
    }
    BestTime drawing, bare;
    for (auto _ : state) {
        state.SetIterationTime(drawing.take([&] {
            if (output::write_body_dxf(files.path("a.dxf"), workspace, prompts) != 0)
                state.SkipWithError("not drawn");
        }));
        bare.take([&] { formatted_boxes(workspace, boxes, files.path("b.dxf")); });
    }
    if (files.text("a.dxf") != files.text("b.dxf")) state.SkipWithError("not the same bytes");
    state.counters["rate_to_formatted_write"] = bare.seconds() / drawing.seconds();
    state.counters["us/body"] = drawing.seconds() * 1e6 / workspace.body_count;
}
BENCHMARK(sheets_as_boxes)
    ->ArgName("sheets")
    ->Arg(100)
    ->Arg(20'000)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// The plan of a long line without bodies.
void plan_of_a_line(benchmark::State& state) {
    const DrawingFiles files;
    QuietPrompts prompts;
    const auto stations = static_cast<int>(state.range(0));
    Workspace workspace = pipes(0);
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    for (int i = 1; i <= stations; ++i) {
        workspace.stations(i, column_east) = 412345.6785 + 0.73 * i;
        workspace.stations(i, column_north) = 7123456.25 - 0.31 * i;
    }
    const auto write_bare = [&] {
        std::FILE* file = std::fopen(files.path("b.dxf").c_str(), "wb");
        std::fprintf(file, "%s  0\r\nPOLYLINE\r\n", head);
        for (int i = 1; i <= stations; ++i)
            std::fprintf(file, "  0\r\nVERTEX\r\n 10\r\n% .15g \r\n 20\r\n% .15g \r\n",
                         workspace.stations(i, column_east), workspace.stations(i, column_north));
        std::fprintf(file, "  0\r\nSEQEND\r\n%s", tail);
        if (std::fclose(file) != 0) throw std::runtime_error("cannot write");
    };
    BestTime drawing, bare;
    for (auto _ : state) {
        state.SetIterationTime(drawing.take([&] {
            if (output::write_plan_dxf(files.path("a.dxf"), workspace, prompts) != 0)
                state.SkipWithError("not drawn");
        }));
        bare.take(write_bare);
    }
    if (files.text("a.dxf") != files.text("b.dxf")) state.SkipWithError("not the same bytes");
    state.counters["rate_to_formatted_write"] = bare.seconds() / drawing.seconds();
    state.counters["ns/station"] = drawing.seconds() * 1e9 / stations;
}
BENCHMARK(plan_of_a_line)
    ->ArgName("stations")
    ->Arg(1'000)
    ->Arg(300'000)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
