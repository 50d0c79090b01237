#pragma once

#include <memory>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

class QHelpContentWidget;
class QHelpEngine;

namespace anomalis::window {

/// A page of the guide as it is looked through.
struct GuideText {
    QUrl page;
    QString title;
    QString words;  ///< without markup, one space between words
};

/// The guide as the build makes it: pages, pictures and contents in one compressed help file, which is only
/// read. What Qt keeps about it lies in a temporary folder of this book alone and goes with it.
class GuideBook {
  public:
    /// Opens the first of the files that is there; a book that could not be opened tells why.
    explicit GuideBook(const QStringList& files);
    ~GuideBook();
    GuideBook(const GuideBook&) = delete;
    GuideBook& operator=(const GuideBook&) = delete;

    bool is_open() const { return failure_.isEmpty(); }
    /// What is wrong, where, and what to do; empty for a book that is open.
    const QString& failure() const { return failure_; }

    /// A page or a picture; empty where there is none.
    QByteArray data(const QUrl& place) const;
    /// The place of "reference/fitting#limits".
    QUrl place_of(const QString& page) const;
    /// All pages, read when they are first asked for.
    const std::vector<GuideText>& texts() const;
    /// The tree of chapters, pages and sections; filled a moment later. The book owns it until it has a
    /// parent.
    QHelpContentWidget& contents();

  private:
    void open(const QString& file);

    QTemporaryDir kept_;
    std::unique_ptr<QHelpEngine> engine_;
    QString space_, failure_;
    mutable std::vector<GuideText> texts_;
};

/// The words of an HTML page, without its head.
QString words_of_page(const QString& html);

}  // namespace anomalis::window
