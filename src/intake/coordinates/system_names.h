#pragma once

#include <optional>
#include <string>
#include <vector>

#include "intake/coordinates/proj_objects.h"

// Names of coordinate systems as files and people write them. Private to this folder.
namespace anomalis::intake {

/// What a name is compared by: "wgs 84 utm zone 54s" for "WGS_1984_UTM_Zone_54S" and "WGS84 / UTM zone 54S".
std::vector<std::string> name_words(const std::string& name);

struct NameSearch {
    std::optional<SystemName> found;  ///< the one that is meant
    std::vector<SystemName> near;     ///< else the next ones, best first
};

/// The system whose name has the same words, or the only one that has all of them.
NameSearch search_names(const std::string& name, const std::vector<SystemName>& systems,
                        std::size_t most = 5);

}  // namespace anomalis::intake
