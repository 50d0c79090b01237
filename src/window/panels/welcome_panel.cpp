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
    : QWidget(parent) {
    setObjectName(object_name);
    auto* column = new QVBoxLayout;
    column->setSpacing(14);
    auto* title = new QLabel(tr("Explain a survey line by simple bodies"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    title->setFont(font);
    column->addWidget(title);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(10);
    for (std::size_t i = 0; i < steps.size(); ++i) add_step(*grid, static_cast<int>(i), steps[i]);
    column->addLayout(grid);

    auto* import = new QPushButton(tr("Import survey..."));
    import->setObjectName(QString(object_name) + "_import");
    import->setToolTip(tr("Read a survey file and choose a line of it"));
    set_chief(*import, true);
    connect(import, &QPushButton::clicked, this, &WelcomePanel::import_wanted);
    column->addWidget(import, 0, Qt::AlignLeft);
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

}  // namespace anomalis::window
