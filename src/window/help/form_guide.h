#pragma once

#include <vector>

#include <QDialog>

#include "window/help/guide_book.h"
#include "window/help/guide_search.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;

namespace anomalis::window {

class GuidePage;

/// Help, Guide: a page of the guide, beside it the contents or, while something is looked for, the pages that
/// hold it.
class FormGuide : public QDialog {
    Q_OBJECT

  public:
    /// `files` are the places where the guide may stand.
    explicit FormGuide(const QStringList& files, QWidget* parent = nullptr);
    ~FormGuide() override;

    /// Shows "reference/fitting#limits".
    void open_at(const QString& page);

  private:
    QWidget* make_bar();
    QWidget* make_side();
    void wire();
    void wire_contents();
    void show_contents_place();
    void find();
    void show_found();
    void open_found(int row);
    void find_next();
    void end_search();

    GuideBook book_;
    GuidePage* page_;
    QStackedWidget* side_;
    QListWidget* found_list_;
    QLineEdit* words_;
    QLabel* answer_;
    QString asked_;
    std::vector<GuideFind> found_;
};

}  // namespace anomalis::window
