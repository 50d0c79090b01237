#pragma once

#include <exception>
#include <string>

namespace anomalis::survey {

/// What a call says that fails; "" for one that does not.
template <class Call>
std::string failure_of(Call&& call) {
    try {
        call();
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return {};
}

}  // namespace anomalis::survey
