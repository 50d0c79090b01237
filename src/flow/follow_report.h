#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/session.h"
#include "flow/carry_bodies.h"
#include "flow/inversion_report.h"
#include "flow/strike_fit.h"

// A model that was found on one line, followed to its neighbours: carried there as a start, refitted, and its
// strikes taken from all the lines.
namespace anomalis::flow {

struct FollowOptions {
    std::int32_t channel = channel_mag;
    int iterations = inversion::default_iterations;
    int starts = inversion::default_starts;
    std::optional<std::int32_t> regional_degree = {};      ///< else that of the next line, else of the first
    std::optional<float> mag_noise = {}, grav_noise = {};  ///< nT, mGal, above 0
};

/// The first line, from which the others are followed.
struct FirstLine {
    const Workspace& workspace;
    std::vector<StrikePoint> places;  ///< by body, body 1 first
};

/// Takes the places of the bodies with their errors from the fit that is in force. Without one an error of a
/// station spacing stands for them, and `remarks` says so.
FirstLine first_line(const Workspace& workspace, std::vector<std::string>& remarks);

/// A line that was followed to.
struct FollowedLine {
    std::string refusal;                       ///< why nothing was fitted; "" when it was
    std::vector<CarriedBody> carried;          ///< body 1 of the line first
    InversionReport inversion;                 ///< the last fit
    std::vector<StrikePoint> places;           ///< of the bodies as fitted
    std::vector<std::optional<float>> strike;  ///< of each body that was held at it in the last fit, degrees
};

/// Puts the model of `first` under the line of a session that is ready, in place of the bodies that stand
/// there, and fits it. Formulas are those of the session. What there is to tell is shown.
FollowedLine follow_to(const FirstLine& first, Session& next, const FollowOptions& options,
                       const ProgressCallback& progress = {});

/// What all lines together say of the strike of one body of the first line.
struct FollowedStrike {
    int first_number = 0;
    float before = 0;              ///< on the first line, degrees
    std::optional<StrikeFit> fit;  ///< none where fewer than two lines have the body, or they leave it open
    /// The lines tell it well enough to take it.
    bool taken() const { return fit && fit->error <= most_error; }
    static constexpr double most_error = 30;  ///< degrees; a strike that is known worse is not taken
};
std::vector<FollowedStrike> strikes_of(const FirstLine& first, std::span<const FollowedLine> lines);

/// Writes the strikes that are taken into the line of the session, holds them, and fits it again. The record
/// of the fit says each with its error.
void take_strikes(std::span<const FollowedStrike> strikes, Session& next, FollowedLine& line,
                  const FollowOptions& options, const ProgressCallback& progress = {});

}  // namespace anomalis::flow
