#pragma once

namespace anomalis {

class Prompts;

/// Raised where a calculation is left because the person who waits for it wants no more of it. That is no
/// failure, and so no std::exception: what notes failures lets it pass, up to whoever began the calculation.
struct Stopped {};

/// Long work tells it how much was done. Whoever waits is served in between and may have the work left. For
/// one thread.
class Pacer {
  public:
    virtual ~Pacer() = default;
    /// `units` more are done, each about a nanosecond of one core. Raises Stopped when the work is to be
    /// left.
    virtual void done(double units) = 0;
    /// Nothing is to be done here for some milliseconds, while other threads work on. Raises Stopped as well.
    virtual void waiting() {}
};

/// For work that nobody waits for.
Pacer& no_pace();

/// Serves whoever waits once a turn of work.
class TurnPacer : public Pacer {
  public:
    static constexpr double usual_turn = 2e7;  ///< 20 ms; a stop is heard ten times sooner than it is missed

    explicit TurnPacer(double turn_units = usual_turn) : turn_units_(turn_units) {}

    void done(double units) override;
    void waiting() override;

  protected:
    /// `units` were done since the last turn. True: the work is to be left.
    virtual bool turn(double units) = 0;

  private:
    void take_turn();

    double turn_units_;
    double since_turn_ = 0;
};

/// A calculation that the person at the keyboard waits for, from its beginning to its end.
class WatchedCalculation : public TurnPacer {
  public:
    /// About `units` are to be done.
    WatchedCalculation(Prompts& prompts, double units);
    ~WatchedCalculation() override;
    WatchedCalculation(const WatchedCalculation&) = delete;
    WatchedCalculation& operator=(const WatchedCalculation&) = delete;

  protected:
    bool turn(double units) override;

  private:
    Prompts& prompts_;
};

}  // namespace anomalis
