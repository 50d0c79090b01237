#include "window/widgets/section_hint.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/widgets/chief_button.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

SectionHint::SectionHint(QWidget* over) : QFrame(over) {
    setObjectName("Frame_empty_section");
    setProperty("card", true);
    auto* words = new QLabel(tr("No bodies yet. A right click on the section adds one there."));
    words->setObjectName("Label_empty_section");
    auto* find = make_button({"Command_hint_find", "Find bodies...", "",
                              "Propose bodies that explain the line; the model stays as it is until one "
                              "proposal is taken"});
    auto* add =
        make_button({"Command_hint_add", "Add a body", "",
                     "A thick sheet across the line, in the middle of the view, its top on the ground"});
    set_chief(*find, true);
    connect(find, &QPushButton::clicked, this, &SectionHint::find_wanted);
    connect(add, &QPushButton::clicked, this, &SectionHint::add_wanted);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 8, 14, 10);
    column->setSpacing(8);
    column->addWidget(words, 0, Qt::AlignHCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch();
    row->addWidget(find);
    row->addWidget(add);
    row->addStretch();
    column->addLayout(row);
    over->installEventFilter(this);
    hide();
}

bool SectionHint::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) place();
    return false;
}

void SectionHint::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    place();
}

void SectionHint::place() {
    const QSize size = sizeHint();
    const QRect room = parentWidget()->rect();
    setGeometry(QRect(room.center() - QPoint(size.width() / 2, size.height() / 2), size));
}

}  // namespace anomalis::window
