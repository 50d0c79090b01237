#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace anomalis {
struct Workspace;
}

// How well the curves lie on each other, in the unit of the channel and against the noise of its readings.
namespace anomalis::show {

/// "nT" or "mGal".
std::string_view channel_unit(int channel);

/// Where the noise of a channel is known from.
enum class NoiseSource {
    keyed,
    fitted,     ///< by the last fit, while the model is as fitted
    estimated,  ///< from the readings alone
    none        ///< the readings tell none
};

struct ChannelNoise {
    double value = 0;  ///< standard deviation of a reading, nT or mGal
    NoiseSource source = NoiseSource::none;
};

/// The noise of a channel's readings. An estimate reads every station of the fit window.
ChannelNoise channel_noise(const Workspace& workspace, int channel);

struct FitQuality {
    int stations = 0;  ///< of the fit window
    double rms = 0;    ///< root mean square of observed less regional less calculated there, nT or mGal
    ChannelNoise noise;
};

/// Of the rows as they stand; no value without the column or without stations.
std::optional<FitQuality> fit_quality(const Workspace& workspace, int channel);
/// The same against a noise that is known already.
std::optional<FitQuality> fit_quality(const Workspace& workspace, int channel, const ChannelNoise& noise);

/// "rms 13.09 nT over 412 stations, 2.6 times the noise of 5.0 nT"; without a noise the first half.
std::string fit_quality_text(const FitQuality& quality, int channel);

/// A number with its unit in so many significant digits: "13.09 nT".
std::string quantity_text(double value, int digits, std::string_view unit);

}  // namespace anomalis::show
