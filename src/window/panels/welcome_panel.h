#pragma once

#include <array>
#include <vector>

#include <QStringList>
#include <QWidget>

#include "flow/examples.h"

class QFrame;
class QLabel;
class QPushButton;

namespace anomalis::window {

/// What a newcomer does first, in three steps, and the examples, each one click away.
class WelcomePanel : public QWidget {
    Q_OBJECT

  public:
    WelcomePanel(const char* object_name, const std::vector<flow::ExampleFile>& examples,
                 QWidget* parent = nullptr);

    /// Offers models that were not saved when the program was left, the newest first; the panel has room for
    /// a few, the menu has all.
    void show_kept(const QStringList& words);

  signals:
    /// The model of this place in the list is wanted, or never again.
    void kept_chosen(int index);
    void kept_unwanted(int index);
    void example_chosen(const QString& path);
    void import_wanted();

  private:
    QFrame* make_kept(const QString& name);

    struct KeptRow {
        QPushButton* go_on = nullptr;
        QPushButton* discard = nullptr;
    };
    std::array<KeptRow, 3> kept_rows_;
    QLabel* more_kept_;
    QFrame* kept_;
    QPushButton* import_;
};

}  // namespace anomalis::window
