#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "core/failure.h"
#include "core/safe_file.h"
#include "output/dxf_text.h"

// Private to this room.
namespace anomalis::output {

template <class Listener>
void tell_other_names(Listener& listener, const std::string& path, int other_names) {
    const std::string remark = hard_link_remark(path, other_names);
    if (!remark.empty()) tell(listener, remark);
}

/// Writes one drawing: `fill(text)` draws what is between head and tail. A failure inside `fill` is told
/// behind `prefix`, and what was drawn until then is kept. Returns 0 or -1.
template <class Listener, class Fill>
int write_drawing(const std::string& path, const Workspace& workspace, std::string_view prefix,
                  Listener& listener, Fill&& fill) {
    return report_failure(listener, prefix, [&] {
        SafeFile file(path);
        DxfText text(file);
        try {
            if (const std::string remark = coordinate_remark(workspace); !remark.empty())
                text.comment(remark);
            text.head(square_extents(workspace));
            std::forward<Fill>(fill)(text);
            text.tail();
        } catch (const Fault&) {
            text.write_out();
            tell_other_names(listener, path, file.commit());
            throw;
        }
        text.write_out();
        tell_other_names(listener, path, file.commit());
    });
}

}  // namespace anomalis::output
