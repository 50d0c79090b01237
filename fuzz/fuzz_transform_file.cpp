#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "transform/transform.h"

using namespace anomalis;

/// Any file either defines the transform or is refused with one message and changes nothing; what was read
/// can be used, and saved so that it reads back as the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    static const PointTransform before;
    const std::string path =
        folder.write("points.crd", std::string_view(reinterpret_cast<const char*>(data), size));
    ScriptedPrompts prompts;
    PointTransform transform;
    if (transform::load_transform_file(transform, path, prompts) != 0) {
        require(prompts.messages.size() == 1 && transform == before);
        return 0;
    }
    require(prompts.messages.empty());
    transform::update_transform(transform);
    double x = transform.x_origin, y = transform.y_origin, z = 0;
    transform::apply_transform(transform, 1, x, y, z);
    const std::string saved = transform::transform_file_text(transform);
    PointTransform again;
    // Points a metre apart may be less far apart once they were rounded to 15 digits.
    if (transform::load_transform_file(again, folder.write("saved.crd", saved), prompts) != 0) return 0;
    require(transform::transform_file_text(again) == saved);
    return 0;
}
