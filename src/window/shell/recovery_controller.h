#pragma once

#include <memory>

#include <QObject>

class QTimer;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis::flow {
class ProgramFolder;
class RecoveryKeeper;
}  // namespace anomalis::flow

namespace anomalis::window {

struct FormGuards;
class OpenController;
class StatusPanels;

/// Keeps the model once a minute for the start that follows a crash, and offers what a crash left.
class RecoveryController : public QObject {
    Q_OBJECT

  public:
    RecoveryController(QObject* parent, edit::Workbench& workbench, const FormGuards& guards,
                       OpenController& open, StatusPanels& status);
    ~RecoveryController() override;

    /// Begins with a folder that all running programs share; until then nothing is kept. Asks whether a model
    /// that a crash left is wanted.
    void start(const std::string& root);
    void keep_now();
    /// How often the model is kept.
    void set_pause(int seconds);
    /// The window closes: nothing is left behind.
    void finish();
    /// Where this program keeps what a crash must not take; null while it keeps nothing.
    const flow::ProgramFolder* folder() const;

  signals:
    void keeping_began();

  private:
    void tick();
    void show_problem();

    edit::Workbench& workbench_;
    const FormGuards& guards_;
    OpenController& open_;
    StatusPanels& status_;
    std::unique_ptr<flow::RecoveryKeeper> keeper_;
    QTimer* timer_;
};

}  // namespace anomalis::window
