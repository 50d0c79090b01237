#pragma once

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct Workbench;

enum class ColourProperty : int { susceptibility = 0, remanence = 1, density = 2 };

/// What the bodies are told apart by: susceptibility (micro SI, negative ones count as 0), remanent
/// magnetisation (nT: field intensity times Koenigsberger ratio times susceptibility over 4 pi), density
/// (g/cc).
double colour_value(const Workspace& workspace, const ModelBody& body, ColourProperty property);

/// Colours all bodies from low to high. Without a difference among them the person is told and nothing
/// changes. Returns true when the bodies were coloured.
bool colour_bodies(Workbench& workbench, ColourProperty property);

}  // namespace anomalis::edit
