#pragma once

#include <vector>

#include <QListWidget>

#include "show/section_thumbnail.h"

class QPainter;

namespace anomalis::window {

/// Paints a section at a glance. The ground is the chart's paper, below the line as above it; bodies have
/// their own colours.
void paint_section(QPainter& painter, const QRectF& picture, const show::SectionThumbnail& section,
                   const QPalette& palette);

/// A model that is proposed: its section at a glance and what there is to say of it.
struct ModelCard {
    show::SectionThumbnail section;
    QString kind;     ///< what sets it apart
    QString numbers;  ///< how well it explains the line
};

/// Cards under each other. One is the current one; click, Up and Down make another that, Enter and a double
/// click choose it.
class ModelCards : public QListWidget {
    Q_OBJECT

  public:
    static constexpr int picture_height = 62;  // pixels

    explicit ModelCards(QWidget* parent = nullptr);

    /// In the column that the cards stand in, pixels.
    static constexpr double picture_width = 358;
    /// Height over width of the section on a card.
    static constexpr double picture_aspect = picture_height / picture_width;
    void show_cards(std::vector<ModelCard> cards);
    /// Makes a card the current one, -1 none; nothing is told.
    void show_current(int index);
    /// Lines of the longest heading, 1 or 2: all cards are of one size.
    int heading_lines() const;
    const ModelCard& card(int index) const { return cards_.at(static_cast<std::size_t>(index)); }

    QSize sizeHint() const override;

  signals:
    void card_shown(int index);
    void card_chosen(int index);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    std::vector<ModelCard> cards_;
};

}  // namespace anomalis::window
