#include "window/panels/welcome_panel.h"

#include <array>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/shell/look.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int text_width = 430;

struct Step {
    const char* title;
    const char* words;
};

constexpr std::array steps{
    Step{"Choose the data",
         "Import survey... reads files of many lines: columns, units and coordinates are recognised, and a "
         "line is chosen on the map. Or choose a data file and say which of its columns holds what."},
    Step{"Load locations", "The stations are laid on the profile, and their number and length are shown."},
    Step{"Find bodies, or add one",
         "The tab “Current Model” shows observed curves in black and calculated ones in green. Model, Find "
         "bodies, proposes what lies under the line; Bodies, Add a new body, puts one there, and bars move "
         "it."}};

QLabel* wrapped(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setFixedWidth(text_width);
    return label;
}

void add_step(QGridLayout& grid, int row, const Step& step) {
    auto* number = new QLabel(QString::number(row + 1));
    number->setProperty("heading", true);
    number->setAlignment(Qt::AlignTop | Qt::AlignRight);
    auto* column = new QVBoxLayout;
    column->setSpacing(1);
    auto* title = new QLabel(QString::fromUtf8(step.title));
    title->setProperty("heading", true);
    column->addWidget(title);
    column->addWidget(wrapped(QString::fromUtf8(step.words)));
    grid.addWidget(number, row, 0, Qt::AlignTop);
    grid.addLayout(column, row, 1);
}

}  // namespace

WelcomePanel::WelcomePanel(const char* object_name, const std::vector<flow::ExampleFile>& examples,
                           QWidget* parent)
    : QWidget(parent), more_kept_(new QLabel), kept_(make_kept(object_name)) {
    setObjectName(object_name);
    auto* column = new QVBoxLayout;
    column->setSpacing(14);
    auto* title = new QLabel(tr("Explain a survey line by simple bodies"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    title->setFont(font);
    column->addWidget(title);
    column->addWidget(kept_);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(10);
    grid->setColumnStretch(1, 1);
    for (std::size_t i = 0; i < steps.size(); ++i) add_step(*grid, static_cast<int>(i), steps[i]);
    column->addLayout(grid);

    import_ = new QPushButton(tr("Import survey..."));
    import_->setObjectName(QString(object_name) + "_import");
    import_->setToolTip(tr("Read a survey file and choose a line of it"));
    set_chief(*import_, true);
    connect(import_, &QPushButton::clicked, this, &WelcomePanel::import_wanted);
    column->addWidget(import_, 0, Qt::AlignLeft);
    if (!examples.empty()) {
        auto* caption = new QLabel(tr("Or start with an example"));
        make_quiet(*caption);
        column->addWidget(caption);
        auto* row = new QHBoxLayout;
        row->setSpacing(8);
        for (const flow::ExampleFile& example : examples) {
            auto* button = new QPushButton(shown(example.title).replace("&", "&&"));
            button->setToolTip(plain_tip(tr("Open, load and show %1").arg(shown(example.path))));
            const QString path = QString::fromStdString(example.path);
            connect(button, &QPushButton::clicked, this, [this, path] { emit example_chosen(path); });
            row->addWidget(button);
        }
        row->addStretch();
        column->addLayout(row);
    }
    auto* across = new QHBoxLayout(this);
    auto* down = new QVBoxLayout;
    down->addStretch(2);
    down->addLayout(column);
    down->addStretch(3);
    across->addStretch();
    across->addLayout(down);
    across->addStretch();
}

QFrame* WelcomePanel::make_kept(const QString& name) {
    auto* card = new QFrame;
    card->setObjectName(name + "_kept");
    card->setProperty("card", true);
    auto* grid = new QGridLayout(card);
    grid->setContentsMargins(12, 8, 12, 10);
    grid->setVerticalSpacing(6);
    auto* heading = new QLabel(tr("Not saved when the program was left"));
    heading->setProperty("heading", true);
    grid->addWidget(heading, 0, 0, 1, 2);
    for (int row = 0; row < static_cast<int>(kept_rows_.size()); ++row) {
        auto* go_on = new QPushButton;
        go_on->setObjectName(QString("%1_continue_%2").arg(name).arg(row));
        go_on->setToolTip(tr("A model as it stood, not yet saved"));
        auto* discard = new QPushButton(tr("Discard"));
        discard->setObjectName(QString("%1_discard_%2").arg(name).arg(row));
        discard->setProperty("link", true);
        discard->setToolTip(tr("Remove this model for good; a question comes first"));
        connect(go_on, &QPushButton::clicked, this, [this, row] { emit kept_chosen(row); });
        connect(discard, &QPushButton::clicked, this, [this, row] { emit kept_unwanted(row); });
        grid->addWidget(go_on, row + 1, 0);
        grid->addWidget(discard, row + 1, 1);
        kept_rows_.at(static_cast<std::size_t>(row)) = {go_on, discard};
    }
    make_quiet(*more_kept_);
    grid->addWidget(more_kept_, static_cast<int>(kept_rows_.size()) + 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    card->hide();
    return card;
}

void WelcomePanel::show_kept(const QStringList& words) {
    kept_->setVisible(!words.isEmpty());
    set_chief(*import_, words.isEmpty());
    for (std::size_t i = 0; i < kept_rows_.size(); ++i) {
        const KeptRow& row = kept_rows_[i];
        const bool offered = static_cast<qsizetype>(i) < words.size();
        row.go_on->setVisible(offered);
        row.discard->setVisible(offered);
        if (!offered) continue;
        const QString text = tr("Continue with %1").arg(words[static_cast<qsizetype>(i)]);
        set_chief(*row.go_on, i == 0);
        row.go_on->setText(
            row.go_on->fontMetrics().elidedText(text, Qt::ElideMiddle, text_width).replace("&", "&&"));
        row.go_on->setToolTip(
            plain_tip(tr("%1: bodies and settings as they stood, not yet saved").arg(text)));
        row.go_on->setAccessibleName(text);
        row.discard->setAccessibleName(tr("Discard %1").arg(words[static_cast<qsizetype>(i)]));
    }
    const qsizetype more = words.size() - static_cast<qsizetype>(kept_rows_.size());
    more_kept_->setVisible(more > 0);
    more_kept_->setText(tr("%n more under File, Continue with", nullptr, static_cast<int>(more)));
}

}  // namespace anomalis::window
