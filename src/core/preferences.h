#pragma once

#include <cstdint>

namespace anomalis {

class Settings;

/// The unit in which susceptibilities are shown and keyed. Records and files keep micro SI.
enum class SusceptibilityUnit : std::int32_t { micro_si, si, cgs };

/// How a curve is drawn: colour with blue in the high byte, width in screen pixels, 1 to 6.
struct CurveLook {
    std::int32_t colour = 0;
    int width = 1;
    bool operator==(const CurveLook&) const = default;
};

/// What a person likes, kept between sessions; nothing of it changes a number or stands in a workspace.
struct Preferences {
    CurveLook observed{0x000000, 1};
    CurveLook calculated{0x00FF00, 2};
    bool dark_charts = true;  ///< charts on screen follow a dark desktop
    bool legend = false;      ///< in the charts on screen; pictures always have one
    bool grid = false;        ///< light lines at the labelled ticks
    SusceptibilityUnit susceptibility_unit = SusceptibilityUnit::micro_si;
    int autosave_seconds = 60;  ///< how often an unsaved model is kept for the next start; 10 to 3600
    int threads = 0;            ///< 0: as many as the machine has; 1 to 256
    bool operator==(const Preferences&) const = default;
};

/// What the settings hold; a value that is missing, of no sense or out of its range is as it comes.
Preferences read_preferences(const Settings& settings);
/// Keeps what differs from what the settings hold. Returns 0, or -1 when they cannot be written.
int keep_preferences(const Preferences& preferences, Settings& settings);

}  // namespace anomalis
