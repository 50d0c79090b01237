#pragma once

#include <QTextBrowser>
#include <QTimer>

namespace anomalis::window {

class GuideBook;

/// Shows the pages of the guide in the colours of the window. Pictures are no wider than the page; a link to
/// the world goes to the desktop's browser.
class GuidePage : public QTextBrowser {
    Q_OBJECT

  public:
    /// The book outlives the page.
    explicit GuidePage(const GuideBook& book, QWidget* parent = nullptr);

    /// The page, and behind # the section that was gone to.
    const QUrl& place() const { return place_; }
    /// Goes to "reference/fitting#limits"; where there is no such page, one that says so.
    void open_at(const QString& page);
    /// Marks a text everywhere on the page, and does so on the pages to come; "" marks nothing.
    void mark(const QString& words);
    /// Goes to the next marked place below the last one. False: there is none.
    bool find_next();

    QVariant loadResource(int type, const QUrl& name) override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void go(const QUrl& place);
    void take_page(const QUrl& place);
    void fit_pictures();
    void show_marks();
    void show_anew();
    QVariant picture(const QByteArray& bytes) const;
    int room() const;

    const GuideBook& book_;
    QUrl place_;
    QString marked_;
    QTimer resized_;
    mutable bool cut_ = false;  ///< a picture of the page is shown smaller than it is
    int room_then_ = 0;         ///< when the page was loaded
};

}  // namespace anomalis::window
