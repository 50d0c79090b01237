#include "house/floors.h"

#include <gtest/gtest.h>

#include "house/source_files.h"

namespace anomalis::house {

TEST(Floors, a_room_uses_itself_and_the_floors_below) {
    EXPECT_EQ(own_include_error("core/text.cpp", "core/text.h"), "");
    EXPECT_EQ(own_include_error("forward/driver.cpp", "core/workspace.h"), "");
    EXPECT_EQ(own_include_error("intake/load.cpp", "transform/transform.h"), "");
    EXPECT_EQ(own_include_error("flow/save_flow.cpp", "output/tables.h"), "");
    EXPECT_EQ(own_include_error("model/refresh_model.cpp", "forward/driver.h"), "");
    EXPECT_EQ(own_include_error("window/shell/main_window.cpp", "show/section.h"), "");
    EXPECT_EQ(own_include_error("window/shell/main_window.cpp", "chart/qt/grapher_widget.h"), "");
    EXPECT_EQ(own_include_error("chart/axis.cpp", "core/numbers.h"), "");
    EXPECT_EQ(own_include_error("app/anomalis.cpp", "window/shell/main_window.h"), "");
}

TEST(Floors, what_stands_above_or_beside_is_refused) {
    EXPECT_NE(own_include_error("core/text.cpp", "forward/driver.h"), "");
    EXPECT_NE(own_include_error("output/mesh_header.cpp", "flow/save_flow.h"), "");
    EXPECT_NE(own_include_error("transform/transform.cpp", "intake/load.h"), "");
    EXPECT_NE(own_include_error("forward/driver.cpp", "intake/load.h"), "");
    EXPECT_NE(own_include_error("chart/axis.cpp", "core/workspace.h"), "");
    EXPECT_NE(own_include_error("forward/driver.cpp", "chart/axis.h"), "");
    EXPECT_NE(own_include_error("show/section.cpp", "window/shell/main_window.h"), "");
    EXPECT_NE(own_include_error("chart/qt/grapher_widget.cpp", "window/shell/main_window.h"), "");
    EXPECT_NE(own_include_error("core/text.cpp", "text.h"), "");
    EXPECT_NE(own_include_error("misc/odd.cpp", "core/text.h"), "");
}

TEST(Floors, each_library_stays_in_its_place) {
    EXPECT_EQ(foreign_include_error("core/text.cpp", "algorithm"), "");
    EXPECT_EQ(foreign_include_error("app/anomalis.cpp", "QApplication"), "");
    EXPECT_EQ(foreign_include_error("chart/qt/grapher_widget.h", "QWidget"), "");
    EXPECT_EQ(foreign_include_error("batch/options.cpp", "CLI/CLI.hpp"), "");
    EXPECT_NE(foreign_include_error("chart/axis.cpp", "QPainter"), "");
    EXPECT_NE(foreign_include_error("batch/dump.cpp", "QtCore/QString"), "");
    EXPECT_NE(foreign_include_error("forward/driver.cpp", "Eigen/Dense"), "");
    EXPECT_NE(foreign_include_error("batch/dump.h", "nlohmann/json.hpp"), "");
    EXPECT_EQ(foreign_include_error("inversion/channel_fit.h", "Eigen/Core"), "");
}

TEST(Floors, every_include_of_the_project_keeps_them) {
    int seen = 0;
    for (const fs::path& file : files_below("src")) {
        if (!is_code(file)) continue;
        const std::string from = fs::relative(file, "src").generic_string();
        for (const std::string& line : lines_of(project() / file)) {
            const auto include = parse_include(line);
            if (!include || include->path.ends_with(".moc")) continue;
            ++seen;
            const std::string error = include->own ? own_include_error(from, include->path)
                                                   : foreign_include_error(from, include->path);
            EXPECT_EQ(error, "") << from << " includes " << include->path;
            if (include->own) {
                EXPECT_TRUE(fs::exists(project() / "src" / include->path))
                    << from << " includes " << include->path;
            }
        }
    }
    EXPECT_GT(seen, 100) << "the sources were not found";
}

TEST(Floors, include_lines_are_recognised) {
    EXPECT_EQ(parse_include("#include \"core/text.h\"")->path, "core/text.h");
    EXPECT_TRUE(parse_include("#include \"core/text.h\"")->own);
    EXPECT_EQ(parse_include("  #  include <QWidget>  // the base")->path, "QWidget");
    EXPECT_FALSE(parse_include("#include <QWidget>")->own);
    EXPECT_FALSE(parse_include("// an include of nothing"));
}

}  // namespace anomalis::house
