#pragma once

namespace anomalis {
struct ModelBody;
}  // namespace anomalis

namespace anomalis::output {

/// Where the tables say that a body stands: the middle of its top edge, half a width across strike and the
/// offset along it from the reference point. m.
struct BodyPlace {
    double east = 0, north = 0;
};

BodyPlace body_place(const ModelBody& body);

/// The middle of the top of any body, for maps: only what reaches to one side of its reference point has it
/// half a width away from there.
BodyPlace top_place(const ModelBody& body);

}  // namespace anomalis::output
