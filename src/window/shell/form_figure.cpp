#include "window/shell/form_figure.h"

#include <algorithm>
#include <array>

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

#include "chart/qt/chart_dialogs.h"
#include "chart/qt/chart_printing.h"
#include "core/failure.h"
#include "core/session.h"
#include "core/told_write.h"
#include "window/shell/look.h"
#include "window/shell/model_picture.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12, gap = 8, choices_width = 250;  // pixels
constexpr int typing_pause = 200;                         // ms
constexpr QSize designed_size{1040, 720}, least_picture{320, 320};
constexpr const char* paper_key = "FigurePaper";
constexpr const char* landscape_key = "FigureLandscape";
constexpr const char* format_key = "FigureFormat";
constexpr const char* printing_failed = "An error occurred while printing the figure: ";

struct Format {
    chart::PictureFormat format;
    const char* ending;
    const char* caption;
};
constexpr std::array formats{Format{chart::PictureFormat::pdf, "pdf", "PDF"},
                             Format{chart::PictureFormat::svg, "svg", "SVG"},
                             Format{chart::PictureFormat::emf, "emf", "EMF"},
                             Format{chart::PictureFormat::png, "png", "PNG, 300 dpi"}};

QPageSize page_size(show::Paper paper) {
    switch (paper) {
        case show::Paper::a3:
            return QPageSize(QPageSize::A3);
        case show::Paper::letter:
            return QPageSize(QPageSize::Letter);
        case show::Paper::a4:
            break;
    }
    return QPageSize(QPageSize::A4);
}

/// The whole paper of a printer: people may choose another one in its dialog.
chart::SurfaceSize paper_of(const QPrinter& printer) {
    const QRectF paper = printer.pageLayout().fullRect(QPageLayout::Inch);
    return {paper.width() * chart::units_per_inch, paper.height() * chart::units_per_inch};
}

}  // namespace

Form_figure::Form_figure(QWidget* parent, Session& session, const flow::ShownView& shown,
                         chart::ChartDialogs& dialogs)
    : QDialog(parent), session_(session), shown_(shown), dialogs_(dialogs), picture_(new QLabel) {
    setObjectName("Form_figure");
    setWindowTitle(tr("Print/Export Figure"));
    name_control(*picture_, "Picture_figure", tr("Preview"), tr("The sheet as it will come out"));
    picture_->setAlignment(Qt::AlignCenter);
    picture_->setMinimumSize(least_picture);
    picture_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margin, margin, margin, margin);
    row->setSpacing(margin);
    row->addWidget(picture_, 1);
    row->addWidget(make_choices());
    take_last_choices();
    for (QComboBox* list : {paper_, orientation_, format_})
        connect(list, &QComboBox::currentIndexChanged, this, [this] { lay_out(); });
    auto* typing = new QTimer(this);
    typing->setSingleShot(true);
    typing->setInterval(typing_pause);
    connect(title_, &QLineEdit::textChanged, typing, qOverload<>(&QTimer::start));
    connect(typing, &QTimer::timeout, this, [this] { lay_out(); });
    connect(sheet_, &QSpinBox::valueChanged, this, [this] { show_sheet(); });
    resize(designed_size);
    lay_out();
}

Form_figure::~Form_figure() = default;

QWidget* Form_figure::make_choices() {
    auto* choices = new QWidget;
    choices->setFixedWidth(choices_width);
    auto* grid = new QGridLayout(choices);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(gap);
    int at = 0;
    const auto place = [&](const QString& caption, QWidget* control) {
        grid->addWidget(make_caption(caption, control), at, 0);
        grid->addWidget(control, at++, 1);
    };
    title_ = new QLineEdit;
    name_control(*title_, "Text_figure_title", tr("Title"),
                 tr("Stands above the charts; blank is the name of the model"));
    title_->setPlaceholderText(tr("Name of the model"));
    place(tr("Title"), title_);
    QStringList papers, endings;
    for (const show::PaperName& paper : show::paper_names())
        papers << QString::fromUtf8(paper.caption.data(), static_cast<qsizetype>(paper.caption.size()));
    for (const Format& format : formats) endings << format.caption;
    paper_ = make_list({"Combo_figure_paper", "Paper", "", "Size of the sheet"}, papers);
    place(tr("Paper"), paper_);
    orientation_ = make_list({"Combo_figure_orientation", "Orientation", "", "How the sheet lies"},
                             {tr("Landscape"), tr("Portrait")});
    place(tr("Orientation"), orientation_);
    format_ = make_list({"Combo_figure_format", "File format", "",
                         "PDF has as many pages as the table of bodies needs, a picture has one"},
                        endings);
    place(tr("File format"), format_);
    sheet_ = new QSpinBox;
    name_control(*sheet_, "Spin_figure_sheet", tr("Page shown"), tr("Which page the preview shows"));
    place(tr("Page shown"), sheet_);
    sheets_ = new QLabel;
    sheets_->setObjectName("Label_figure_sheets");
    sheets_->setTextFormat(Qt::PlainText);
    sheets_->setWordWrap(true);
    make_quiet(*sheets_);
    grid->addWidget(sheets_, at++, 0, 1, 2);
    grid->setRowStretch(at++, 1);
    auto* write = make_button({"Command_export_figure", "Export...", "", "Write the figure into a file"});
    auto* print =
        make_button({"Command_print_figure", "Print...", "", "Choose a printer and print all pages"});
    auto* close = make_button({"Command_close_figure", "Close", "", "Leave without a figure"});
    set_chief(*write, true);
    connect(write, &QPushButton::clicked, this, &Form_figure::export_figure);
    connect(print, &QPushButton::clicked, this, &Form_figure::print_figure);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    for (QPushButton* button : {write, print, close}) grid->addWidget(button, at++, 0, 1, 2);
    return choices;
}

/// As they were the last time; nonsense in the settings is as nothing.
void Form_figure::take_last_choices() {
    const auto last = [&](const char* key) {
        return QString::fromStdString(session_.settings.get(settings_section, key, ""));
    };
    const QString paper = last(paper_key), format = last(format_key);
    for (const show::PaperName& known : show::paper_names())
        if (paper.toStdString() == known.name) paper_->setCurrentIndex(static_cast<int>(known.paper));
    for (std::size_t i = 0; i < formats.size(); ++i)
        if (format == formats[i].ending) format_->setCurrentIndex(static_cast<int>(i));
    orientation_->setCurrentIndex(last(landscape_key) == "0" ? 1 : 0);
}

void Form_figure::keep_choices() {
    const auto papers = show::paper_names();
    session_.settings.set(settings_section, paper_key,
                          papers.at(static_cast<std::size_t>(paper_->currentIndex())).name);
    session_.settings.set(settings_section, format_key,
                          formats.at(static_cast<std::size_t>(format_->currentIndex())).ending);
    session_.settings.set(settings_section, landscape_key, orientation_->currentIndex() == 0 ? "1" : "0");
}

chart::SurfaceSize Form_figure::sheet_size() const {
    const auto papers = show::paper_names();
    return show::sheet_size(papers.at(static_cast<std::size_t>(paper_->currentIndex())).paper,
                            orientation_->currentIndex() == 0);
}

flow::FigureChoice Form_figure::choice(chart::SurfaceSize size, bool further_sheets) const {
    return {size, title_->text().toStdString(), shown_, further_sheets};
}

void Form_figure::lay_out() {
    const bool pages =
        formats.at(static_cast<std::size_t>(format_->currentIndex())).format == chart::PictureFormat::pdf;
    figure_.reset();
    const int status = report_failure(session_.prompts, "The figure cannot be drawn: ", [&] {
        figure_ =
            std::make_unique<flow::ModelFigure>(session_, choice(sheet_size(), pages), measuring_device);
    });
    const int count = status == 0 ? static_cast<int>(figure_->sheets().size()) : 1;
    {
        const QSignalBlocker block(sheet_);
        sheet_->setRange(1, count);
    }
    sheet_->setEnabled(count > 1);
    sheet_->setSuffix(tr(" of %1").arg(count));
    sheets_->setText(pages ? tr("The PDF and a print have %n page(s).", nullptr, count)
                           : tr("A picture has one page. A print has as many as the bodies need."));
    show_sheet();
}

void Form_figure::show_sheet() {
    if (!figure_) return picture_->clear();
    const chart::SurfaceSize size = figure_->size();
    const double ratio = devicePixelRatioF();
    const QSize room = picture_->size().expandedTo(least_picture);
    const double scale = std::min((room.width() - 2) * chart::units_per_screen_pixel / size.width,
                                  (room.height() - 2) * chart::units_per_screen_pixel / size.height);
    const auto sheet = static_cast<std::size_t>(sheet_->value() - 1);
    report_failure(session_.prompts, "The figure cannot be drawn: ", [&] {
        QImage image = chart::page_image(size, figure_pages(*figure_).at(sheet), scale * ratio);
        image.setDevicePixelRatio(ratio);
        picture_->setPixmap(QPixmap::fromImage(image));
    });
}

void Form_figure::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    show_sheet();
}

void Form_figure::export_figure() {
    const Format& format = formats.at(static_cast<std::size_t>(format_->currentIndex()));
    const QString upper = QString(format.ending).toUpper();
    const auto path =
        dialogs_.save_path(this, {tr("Enter name of %1 figure file").arg(upper),
                                  tr("%1 files (*.%2);;All files (*)").arg(upper, format.ending),
                                  format.ending, QString("figure.") + format.ending});
    if (!path) return;
    keep_choices();
    if (write_figure(session_, path->toStdString(), choice(sheet_size(), false)) != 0) return;
    accept();
    dialogs_.done(parentWidget(), tr("Figure written"), *path);
}

/// A print into a file is one, too.
void Form_figure::print_figure() {
    bool printed = false;
    QString path;
    report_failure(session_.prompts, printing_failed, [&] {
        const auto papers = show::paper_names();
        QPrinter printer(QPrinter::HighResolution);
        printer.setPageLayout(
            QPageLayout(page_size(papers.at(static_cast<std::size_t>(paper_->currentIndex())).paper),
                        orientation_->currentIndex() == 0 ? QPageLayout::Landscape : QPageLayout::Portrait,
                        QMarginsF(0, 0, 0, 0)));
        printer.setFullPage(true);
        printer.setDocName("Anomalis");
        if (!dialogs_.choose_printer(this, printer)) return;
        keep_choices();
        flow::ModelFigure figure(session_, choice(paper_of(printer), true), measuring_device);
        const std::vector<chart::DrawPage> pages = figure_pages(figure);
        chart::print_safely(
            printer, [&](QPagedPaintDevice& paper) { chart::paint_sheets(paper, figure.size(), pages); },
            [&](const std::string& file, std::string_view bytes) {
                write_file_telling(session_.prompts, file, bytes);
            });
        path = printer.outputFileName();
        printed = true;
    });
    if (!printed) return;
    accept();
    dialogs_.done(parentWidget(), tr("Printing Finished"), path);
}

}  // namespace anomalis::window
