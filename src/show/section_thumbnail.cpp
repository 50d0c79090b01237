#include "show/section_thumbnail.h"

#include <algorithm>

#include "core/workspace.h"
#include "show/section_shapes.h"

namespace anomalis::show {

namespace {

constexpr double headroom = 0.06;  // of the height, above the highest ground
constexpr double room_below = 2;   // times the depth of the deepest top
constexpr int most_ground_points = 200;

struct Frame {
    double left = 0, width = 1;
    double top = 0, height = 1;

    ThumbnailPoint place(double distance, double elevation) const {
        return {(distance - left) / width, (top - elevation) / height};
    }
};

Frame frame_of(const Workspace& workspace, double aspect) {
    Frame frame;
    frame.left = workspace.distances[workspace.first_station];
    frame.width = std::max(workspace.distances[workspace.last_station] - frame.left, 1.0);
    double ground = workspace.stations(workspace.first_station, column_ground);
    for (int i = workspace.first_station; i <= workspace.last_station; ++i)
        ground = std::max(ground, workspace.stations(i, column_ground));
    double deepest = 0;
    for (int i = 1; i <= workspace.body_count; ++i)
        deepest = std::max(deepest, ground - static_cast<double>(workspace.body(i).top.value));
    frame.height = std::max(aspect * frame.width, room_below * deepest) / (1 - headroom);
    frame.top = ground + headroom * frame.height;
    return frame;
}

std::vector<ThumbnailPoint> ground_of(const Workspace& workspace, const Frame& frame) {
    std::vector<ThumbnailPoint> ground;
    const int first = workspace.first_station, last = workspace.last_station;
    const int stride = std::max((last - first) / most_ground_points, 1);
    for (int i = first; i < last; i += stride)
        ground.push_back(frame.place(workspace.distances[i], workspace.stations(i, column_ground)));
    ground.push_back(frame.place(workspace.distances[last], workspace.stations(last, column_ground)));
    return ground;
}

}  // namespace

SectionThumbnail section_thumbnail(const Workspace& workspace, double aspect) {
    SectionThumbnail thumbnail;
    if (workspace.station_count <= 0 || workspace.first_station < 1 ||
        workspace.last_station > workspace.station_count || workspace.first_station > workspace.last_station)
        return thumbnail;
    const Frame frame = frame_of(workspace, aspect);
    thumbnail.ground = ground_of(workspace, frame);
    const SectionWindow window{frame.top - frame.height, workspace.distances.last()};
    for (int i = 1; i <= workspace.body_count; ++i) {
        const SectionShape shape = section_shape(workspace, workspace.body(i), window);
        if (!shape.visible || shape.xs.empty()) continue;
        SectionThumbnail::Shape& drawn = thumbnail.shapes.emplace_back();
        drawn.fill = workspace.body(i).colour;
        for (std::size_t k = 0; k < shape.xs.size(); ++k)
            drawn.outline.push_back(frame.place(shape.xs[k], shape.ys[k]));
    }
    return thumbnail;
}

}  // namespace anomalis::show
