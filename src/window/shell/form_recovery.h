#pragma once

#include <memory>

#include <QObject>

class QTimer;

namespace anomalis::flow {
class RecoveryKeeper;
}  // namespace anomalis::flow

namespace anomalis::window {

class Form_anomalis;

/// Keeps the model once a minute for the start that follows a crash, and offers what a crash left.
class FormRecovery : public QObject {
    Q_OBJECT

  public:
    explicit FormRecovery(Form_anomalis& form);
    ~FormRecovery() override;

    /// Begins with a folder that all running programs share; until then nothing is kept. Asks whether a model
    /// that a crash left is wanted.
    void start(const std::string& root);
    void keep_now();
    /// The window closes: nothing is left behind.
    void finish();

  private:
    void tick();
    void show_problem();

    Form_anomalis& form_;
    std::unique_ptr<flow::RecoveryKeeper> keeper_;
    QTimer* timer_;
};

}  // namespace anomalis::window
