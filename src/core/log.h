#pragma once

#include <string>
#include <string_view>

namespace anomalis {

class Prompts;

/// The present local time as "05-Mar-2024 17:08", in English whatever the locale.
std::string present_time_text();

/// The session log: a plain text file of numbered lines, written only while it is turned on. Each line is
/// appended and closed by itself, so a crash loses nothing; an error in it is swallowed.
class SessionLog {
  public:
    bool on() const { return on_; }
    const std::string& path() const { return path_; }

    /// Turns the log on with a fresh file "axm_logging.dat" in the current folder, and tells its path.
    void turn_on(Prompts& prompts);
    /// Turns it off and tells the path; the file stays.
    void turn_off(Prompts& prompts);
    /// Mode -1 deletes the file and writes its title line; mode 1 appends a numbered line.
    void log_message(int mode, std::string_view text = {});

  private:
    bool on_ = false;
    std::string path_;
    long line_counter_ = 0;  ///< runs on over several logs of one session
};

}  // namespace anomalis
