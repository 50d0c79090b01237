#include "core/version.h"

namespace anomalis {

std::string_view application_version() {
    return ANOMALIS_VERSION;
}

}  // namespace anomalis
