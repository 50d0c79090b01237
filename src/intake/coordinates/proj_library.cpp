#include "intake/coordinates/proj_library.h"

#include <dlfcn.h>
#include <string>

#include "core/failure.h"

namespace anomalis::intake {

namespace {

[[noreturn]] void refuse() {
    const char* const why = ::dlerror();
    throw Fault(std::string("Coordinate systems need the library PROJ, which cannot be loaded: ") +
                (why ? why : ANOMALIS_PROJ_NAME));
}

/// By the name that the system's loader knows; else where it was when this was built.
void* open_library() {
    for (const char* place : {ANOMALIS_PROJ_NAME, ANOMALIS_PROJ_FILE})
        if (void* library = ::dlopen(place, RTLD_LAZY | RTLD_LOCAL)) return library;
    refuse();
}

}  // namespace

void* proj_symbol(const char* name) {
    static void* const library = open_library();
    void* const place = ::dlsym(library, name);
    if (!place) refuse();
    return place;
}

}  // namespace anomalis::intake
