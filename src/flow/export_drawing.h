#pragma once

namespace anomalis {
class Session;
}  // namespace anomalis

namespace anomalis::flow {

/// The two commands of the menu: ask for a name, bring the model up to date, write, tell. The first does
/// nothing without bodies.
void export_body_dxf(Session& session);
void export_plan_dxf(Session& session);

}  // namespace anomalis::flow
