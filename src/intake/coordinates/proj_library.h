#pragma once

// PROJ brings forty libraries more, whose load takes three times as long as that of all else. So it is loaded
// when a coordinate system is first spoken of. Private to this folder.
namespace anomalis::intake {

/// The place of a function of PROJ, which stays loaded until the program ends. Raises Fault when it cannot be
/// had.
void* proj_symbol(const char* name);

}  // namespace anomalis::intake

/// A function of PROJ as proj.h declares it.
#define ANOMALIS_PROJ(function)                                                                  \
    ([] {                                                                                        \
        static const auto place =                                                                \
            reinterpret_cast<decltype(&::function)>(::anomalis::intake::proj_symbol(#function)); \
        return place;                                                                            \
    }())
