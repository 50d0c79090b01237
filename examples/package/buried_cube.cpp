// The attraction of a buried cube along a line that crosses it.
#include <array>
#include <cstdio>
#include <string>

#include "core/version.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/prism.h"

int main() {
    using anomalis::Point3;
    // Top and bottom of a cube of 20 m, its middle 30 m below the ground: east, north, up, m.
    const std::array<Point3, 8> corners{{{-10, -10, -20},
                                         {10, -10, -20},
                                         {10, 10, -20},
                                         {-10, 10, -20},
                                         {-10, -10, -40},
                                         {10, -10, -40},
                                         {10, 10, -40},
                                         {-10, 10, -40}}};
    anomalis::forward::Polyhedron cube(corners, anomalis::forward::prism_triangles);
    const std::array<double, 5> east{-40, -20, 0, 20, 40};
    const std::array<double, 5> zero{};
    std::array<double, 5> attraction{};
    cube.gravity({east, zero, zero}, 0.5, attraction);  // 0.5 g/cc more than the rock around it
    std::printf("Anomalis %s\n", std::string(anomalis::application_version()).c_str());
    for (std::size_t i = 0; i < east.size(); ++i) std::printf("%6.1f m %9.6f mGal\n", east[i], attraction[i]);
    return attraction[2] > attraction[0] ? 0 : 1;
}
