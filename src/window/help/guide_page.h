#pragma once

#include <vector>

#include <QTextBrowser>

namespace anomalis::window {

/// A heading of a page of the guide.
struct GuideHeading {
    int level;  ///< 1 is that of the page
    QString text;
    QString anchor;
};

/// Shows the pages of the guide that the program holds. Their headings are anchors by the names that links in
/// Markdown have; pictures are no wider than the window.
class GuidePage : public QTextBrowser {
    Q_OBJECT

  public:
    explicit GuidePage(QWidget* parent = nullptr);

    /// Those of the page on show.
    const std::vector<GuideHeading>& headings() const { return headings_; }
    /// The page, and behind # the anchor that it was gone to.
    const QUrl& place() const { return place_; }
    /// Goes to a heading of the guide; false when it has no such one.
    bool open_at(const QString& heading);
    /// Goes to the next place of a text, from the top again behind the last one. False: it is nowhere.
    bool find_next(const QString& words);

    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void take_place(const QUrl& place);
    void mark_headings();
    void dress_tables();

    QUrl place_;
    std::vector<GuideHeading> headings_;
};

/// "Place, date and the earth's field" as "place-date-and-the-earths-field".
QString guide_anchor(const QString& heading);

}  // namespace anomalis::window
