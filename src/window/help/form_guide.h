#pragma once

#include <QDialog>
#include <QUrl>

class QLabel;
class QLineEdit;
class QTreeWidget;

namespace anomalis::window {

class GuidePage;

/// Help, Guide: the guide with its contents beside it, beside the window that one works in.
class FormGuide : public QDialog {
    Q_OBJECT

  public:
    explicit FormGuide(QWidget* parent = nullptr);

    /// Shows the chapter or section of that heading.
    void open_at(const QString& heading);

  private:
    QWidget* make_bar();
    void wire();
    void fill_contents();
    void show_contents_place();
    void find();

    GuidePage* page_;
    QTreeWidget* contents_;
    QLineEdit* words_;
    QLabel* answer_;
    QUrl listed_;  ///< the page whose contents are shown
};

}  // namespace anomalis::window
