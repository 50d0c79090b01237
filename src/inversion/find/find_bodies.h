#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/faults.h"
#include "core/fit_record.h"
#include "core/pacer.h"
#include "core/workspace.h"

// Proposes models of a line: sheets with place, depth, dip, width and susceptibility (of gravity, density
// contrast), without a start that somebody keyed.
namespace anomalis::inversion {

/// What is asked for. Window, noise, formulas and degree of the regional are those of the workspace; where it
/// has no regional (and no residual filter) the degree is found too.
struct FindRequest {
    std::int32_t channel = channel_mag;  ///< channel_joint explains both by the same bodies
    int most = 8;                        ///< bodies to be found at most
    std::optional<int> bodies = {};      ///< exactly so many
    bool thin = true, thick = true;      ///< kinds of sheets
    bool free_present = false;  ///< bodies that stand there are fitted too; else they stay as they are
    int alternatives = 3;       ///< models to be proposed at most
};

/// A model that explains the line.
struct FoundModel {
    /// Those that stood there, in their order, then those found by distance; without responses.
    std::vector<ModelBody> bodies;
    int found = 0;   ///< so many of them, the last ones, are new
    double rms = 0;  ///< of the channel that was looked at (joint: of magnetics), nT or mGal
    double criterion =
        0;             ///< information criterion, the lower the better; comparable between models of one line
    std::string kind;  ///< what sets it apart: "3 thick sheets", "2 sheets, regional of degree 3"
    /// Of the regionals that it is fitted with; whoever takes the model takes them over.
    std::int32_t mag_degree = no_regional, grav_degree = no_regional;
    FitRecord record;  ///< intervals, regionals, noise
};

struct FindResult {
    std::vector<FoundModel> models;    ///< best first; empty when nothing stands out of the noise
    std::string label;                 ///< the outcome in a sentence
    std::vector<std::string> remarks;  ///< what there is to say, a sentence each
    bool stopped = false;              ///< somebody stopped it; `models` holds what was found so far
    double seconds = 0;
    Faults faults;
};

enum class FindStage { noise, search, refine, alternatives, errors };

/// Who watches a search.
class FindObserver {
  public:
    virtual ~FindObserver() = default;
    /// `units` of work more are done (core/pacer.h): who waits can be served. True: it ends with what it has.
    virtual bool working(double /*units*/) { return false; }
    virtual double turn_units() const { return TurnPacer::usual_turn; }
    virtual void stage(FindStage) {}
    /// The model as it stands has grown or got better; it may be drawn.
    virtual void grew(const FoundModel&) {}
};

/// Looks for bodies on a line whose stations are loaded and whose numbers are up to date. The workspace stays
/// as it is. Raises nothing: what went wrong is in the faults of the result.
FindResult find_bodies(const Workspace& workspace, const FindRequest& request, FindObserver& observer);

}  // namespace anomalis::inversion
