#pragma once

namespace anomalis {
class Settings;
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct ViewState;

/// Gives a new body the size of what is on show and a strength that can be seen there: a width of a thirtieth
/// of the view, two station spacings at least, with depth extent and length in proportion; a susceptibility
/// (a wire: a current) and a density contrast whose anomalies reach a third of the range of the data in view.
/// All in round numbers, 1, 2 or 5 times a power of ten. What the settings keep of new bodies stays as they
/// say; where the data tell nothing (a flat line, no column) the usual susceptibility stays, and the density
/// contrast is 0. Place, elevations and the data must be there.
void suit_new_body(const Workspace& workspace, const ViewState& view, const Settings& settings,
                   ModelBody& body);

}  // namespace anomalis::edit
