#pragma once

#include <memory>
#include <vector>

#include "core/session.h"

// Lines over sheets by chance, drawn from a seed over the range that surveys have: fields of five places,
// stations every 7 to 25 m on a drape, one to five sheets of any dip and width whose strikes are up to 25
// degrees off the square, a regional of degree 2, and noise of the readings with that of other geology or
// without.
namespace anomalis {

struct BuriedSheet {
    double distance = 0, depth = 0, width = 0;  ///< m; the depth is that below the sensor
};

struct FindLine {
    std::unique_ptr<Session> session;  ///< loaded and up to date, without bodies
    std::vector<BuriedSheet> truth;
    double spacing = 0;  ///< m
    bool geology = false;
};

FindLine find_line(unsigned seed, Prompts& prompts);

}  // namespace anomalis
