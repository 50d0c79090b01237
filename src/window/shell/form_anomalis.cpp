#include "window/shell/form_anomalis.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabWidget>

#include "core/paths.h"
#include "core/text.h"
#include "core/version.h"
#include "edit/change.h"
#include "window/panels/charts_panel.h"
#include "window/panels/definitions_page.h"
#include "window/panels/definitions_panel.h"
#include "window/panels/model_side.h"
#include "window/panels/processing_panel.h"
#include "window/panels/settings_panels.h"
#include "window/panels/status_panels.h"
#include "window/panels/welcome_panel.h"
#include "window/shell/form_bodies.h"
#include "window/shell/form_files.h"
#include "window/shell/form_formulas.h"
#include "window/shell/form_history.h"
#include "window/shell/form_inversion.h"
#include "window/shell/form_menus.h"
#include "window/shell/form_recovery.h"
#include "window/shell/form_views.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

namespace {

constexpr double twips_a_pixel = 15;
constexpr QSize designed_size{1280, 800};
enum Tab { tab_definitions = 0, tab_model = 1 };

/// The pointer shows that work is going on, on every way out.
class WaitCursor {
  public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

bool is_workspace_file(const std::string& path) {
    constexpr std::size_t ending = 4;
    return path.size() > ending &&
           equal_ignoring_case(std::string_view(path).substr(path.size() - ending), ".axm");
}

std::string dropped_path(const QMimeData& data) {
    for (const QUrl& url : data.urls())
        if (url.isLocalFile()) return url.toLocalFile().toStdString();
    return {};
}

}  // namespace

Form_anomalis::Form_anomalis(Session& session, const std::vector<flow::ExampleFile>& examples)
    : session_(session),
      workbench_(session),
      tabs_(new QTabWidget(this)),
      definitions_page_(new DefinitionsPage(workbench_, guards_, examples)),
      model_page_(new QStackedWidget),
      hint_(new WelcomePanel("Frame_hint", examples)),
      model_row_(new QWidget),
      charts_(new ChartsPanel(workbench_)),
      side_(new ModelSide(workbench_, guards_)),
      status_(new StatusPanels(this)),
      menus_(new FormMenus(*this, examples)),
      bodies_(new FormBodies(*this)),
      views_(new FormViews(*this)),
      history_(new FormHistory(*this)),
      formulas_(new FormFormulas(*this)),
      recovery_(new FormRecovery(*this)),
      inversion_(nullptr) {
    lay_out();
    files_ = new FormFiles(*this);
    wire_pages();
    wire_menus();
    inversion_ = new FormInversion(*this, *recovery_);
    start();
}

Form_anomalis::~Form_anomalis() = default;

void Form_anomalis::lay_out() {
    setObjectName("Form_anomalis");
    setAcceptDrops(true);
    tabs_->setObjectName("Tab_model");
    tabs_->setDocumentMode(true);
    model_page_->addWidget(hint_);
    auto* row = new QHBoxLayout(model_row_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(charts_, 1);
    row->addWidget(side_);
    model_page_->addWidget(model_row_);
    tabs_->addTab(definitions_page_, tr(" Data Definitions"));
    tabs_->addTab(model_page_, tr("Current Model"));
    setCentralWidget(tabs_);
    setStatusBar(status_);
    resize(designed_size);
    connect(tabs_, &QTabWidget::currentChanged, this, &Form_anomalis::tab_changed);
    for (const int step : {1, -1}) {
        auto* shortcut =
            new QShortcut(QKeySequence(step > 0 ? Qt::CTRL | Qt::Key_Tab : Qt::CTRL | Qt::Key_Backtab), this);
        connect(shortcut, &QShortcut::activated, this, [this, step] {
            tabs_->setCurrentIndex((tabs_->currentIndex() + step + tabs_->count()) % tabs_->count());
        });
    }
}

void Form_anomalis::wire_pages() {
    DefinitionsPanel& definitions = definitions_page_->definitions();
    connect(&definitions, &DefinitionsPanel::data_file_wanted, this, &Form_anomalis::choose_data);
    connect(&definitions, &DefinitionsPanel::load_wanted, this, &Form_anomalis::load_locations);
    connect(&definitions, &DefinitionsPanel::definition_changed, this, &Form_anomalis::line_dropped);
    connect(definitions_page_, &DefinitionsPage::setting_changed, this, &Form_anomalis::setting_changed);
    connect(
        definitions_page_, &DefinitionsPage::text_refused, this,
        [this](const QString& caption, const QString& text) {
            status_->show_text(tr("%1: “%2” is not accepted, the value stays").arg(caption, text.left(40)));
        });
    for (WelcomePanel* panel : findChildren<WelcomePanel*>())
        connect(panel, &WelcomePanel::example_chosen, this,
                [this](const QString& path) { open_example(path.toStdString()); });
    connect(charts_, &ChartsPanel::pointer_moved, status_, &StatusPanels::show_pointer);
    connect(charts_, &ChartsPanel::misfit_found, status_, &StatusPanels::show_misfit);
    connect(charts_, &ChartsPanel::base_level_found, this, [this](const QString& text) {
        definitions_page_->processing().show_base_texts(text.toStdString(), std::nullopt);
    });
    connect(charts_, &ChartsPanel::plan_toggled, menus_, &FormMenus::set_plan);
}

void Form_anomalis::wire_menus() {
    connect(menus_, &FormMenus::read_all_wanted, this,
            [this] { open_with_dialog(flow::ReadMode::everything); });
    connect(menus_, &FormMenus::read_bodies_wanted, this,
            [this] { open_with_dialog(flow::ReadMode::bodies_alone); });
    connect(menus_, &FormMenus::example_chosen, this,
            [this](const QString& path) { open_example(path.toStdString()); });
    connect(menus_, &FormMenus::exit_wanted, this, &Form_anomalis::close);
    connect(menus_, &FormMenus::display_axes_toggled, this,
            [this](bool on) { charts_->view().change_display_axes(on); });
    connect(menus_, &FormMenus::plan_wanted, charts_, &ChartsPanel::show_plan);
    connect(menus_, &FormMenus::recalc_wanted, this, [this] { charts_->view().force_recalc(); });
    connect(menus_, &FormMenus::about_wanted, this, [this] {
        session_.prompts.message("Anomalis " + std::string(application_version()) +
                                 "\n\nMagnetic and gravity anomalies along a survey profile.");
    });
}

void Form_anomalis::start() {
    const StartSettings settings = session_.start();
    if (settings.display_axes) {
        menus_->set_display_axes(*settings.display_axes);
        charts_->view().charts().set_display_axes(*settings.display_axes);
    }
    definitions_page_->fill(true);
    session_.model_changed = false;
    edit::start_history(workbench_);
    files_->read_recent_files();
    show_caption();
    side_->reset_form_display();
    update_line_state();
    restore_size(settings);
    window_ready_ = true;
}

/// The tab control fills the window, so its stored width is the window's.
void Form_anomalis::restore_size(const StartSettings& settings) {
    if (!settings.form_size) return;
    const SuspendEvents suspend(guards_);
    resize(static_cast<int>(settings.form_size->width / twips_a_pixel),
           static_cast<int>(settings.form_size->height / twips_a_pixel));
}

void Form_anomalis::open_with_dialog(flow::ReadMode mode) {
    if (guards_.closed()) return;
    commit_entries();
    show_opened(flow::open_model(workbench_, mode), mode);
}

void Form_anomalis::open_file(const std::string& path) {
    if (guards_.closed()) return;
    commit_entries();
    if (is_workspace_file(path)) {
        show_opened(flow::open_model_file(workbench_, flow::ReadMode::everything, path),
                    flow::ReadMode::everything);
    } else {
        take_data_file(path);
    }
}

void Form_anomalis::open_example(const std::string& path) {
    if (guards_.closed()) return;
    const flow::OpenOutcome outcome = flow::open_model_file(workbench_, flow::ReadMode::everything, path);
    show_opened(outcome, flow::ReadMode::everything);
    if (outcome != flow::OpenOutcome::opened) return;
    load_locations();
    if (edit::line_loaded(session_.workspace)) tabs_->setCurrentIndex(tab_model);
}

void Form_anomalis::show_recovered() {
    show_opened(flow::OpenOutcome::opened, flow::ReadMode::everything);
    load_locations();
    if (edit::line_loaded(session_.workspace)) tabs_->setCurrentIndex(tab_model);
    show_caption();
}

/// After a read that failed half way the boxes show what the workspace now holds.
void Form_anomalis::show_opened(flow::OpenOutcome outcome, flow::ReadMode mode) {
    if (outcome == flow::OpenOutcome::cancelled || outcome == flow::OpenOutcome::missing) return;
    const DisplaySettings& display = session_.workspace.display;
    if (mode == flow::ReadMode::everything) {
        if (display.valid) {
            menus_->set_display_axes(display.show_axes != 0);
            charts_->view().charts().set_display_axes(display.show_axes != 0);
        }
        definitions_page_->fill();
    }
    side_->reset_form_display();
    tabs_->setCurrentIndex(tab_definitions);
    definitions_page_->definitions().blank_results();
    line_dropped();
    if (outcome == flow::OpenOutcome::opened)
        status_->show_text(
            tr("%n bodies read; load the data to see them", nullptr, session_.workspace.body_count));
}

void Form_anomalis::choose_data() {
    if (guards_.closed()) return;
    commit_entries();
    if (!flow::choose_data_file(workbench_)) return;
    definitions_page_->definitions().blank_results();
    definitions_page_->fill();
    line_dropped();
}

void Form_anomalis::take_data_file(const std::string& path) {
    flow::set_data_file(workbench_, path);
    definitions_page_->definitions().blank_results();
    definitions_page_->fill();
    tabs_->setCurrentIndex(tab_definitions);
    line_dropped();
}

void Form_anomalis::load_locations() {
    if (guards_.closed()) return;
    commit_entries();
    const MessageScope messages(session_.prompts);  // shown when the pointer is an arrow again
    const WaitCursor wait;
    status_->show_progress(0);
    definitions_page_->definitions().blank_results();
    const flow::LoadResult result = flow::load_line(workbench_);
    definitions_page_->definitions().show_result(result);
    definitions_page_->processing().show_base_texts(result.mag_base, result.grav_base);
    charts_->view().clear_charts();
    charts_->line_changed();
    inversion_->line_changed();
    update_line_state();
    status_->show_progress(-1);
    status_->clear_line();
    status_->show_text(result.loaded ? tr("%1 stations over %2 m loaded")
                                           .arg(QString::fromStdString(result.number_of_locations),
                                                QString::fromStdString(result.line_length))
                                     : QString());
}

void Form_anomalis::commit_entries() {
    commit_boxes(*definitions_page_);
    side_->commit();
}

void Form_anomalis::tab_changed(int index) {
    side_->commit();
    if (index == tab_model) {
        views_->enter_model_page();
    } else {
        charts_->view().set_on_page(false);
    }
}

void Form_anomalis::line_dropped() {
    charts_->view().clear_charts();
    inversion_->line_changed();
    status_->clear_line();
    status_->show_text(QString());
    update_line_state();
    show_caption();
}

void Form_anomalis::update_line_state() {
    const bool loaded = edit::line_loaded(session_.workspace);
    menus_->show_line_menus(loaded);
    model_page_->setCurrentWidget(loaded ? model_row_ : static_cast<QWidget*>(hint_));
    side_->display_body_parameters();
}

void Form_anomalis::setting_changed() {
    model_edited();
}

void Form_anomalis::history_moved(const edit::HistoryStep& step) {
    if (step.another_file || step.line_lost) flow::refresh_data_head(workbench_);
    if (step.settings) definitions_page_->fill(true);
    if (step.line_lost) {
        definitions_page_->definitions().blank_results();
        line_dropped();
    }
    if (step.line_wanted) load_locations();
    model_edited();
}

void Form_anomalis::show_model_tab() {
    tabs_->setCurrentIndex(tab_model);
}

void Form_anomalis::show_definitions_tab() {
    tabs_->setCurrentIndex(tab_definitions);
}

void Form_anomalis::model_edited() {
    side_->display_body_parameters();
    charts_->view().display_model();
    inversion_->follow_model();
    show_caption();
}

void Form_anomalis::show_caption() {
    const std::string mark = workbench_.unsaved ? " *" : "";
    setWindowTitle(QString::fromStdString(flow::window_caption(session_.workspace) + mark));
    files_->update();
}

void Form_anomalis::closeEvent(QCloseEvent* event) {
    if (!inversion_->may_close()) return event->ignore();
    commit_entries();
    recovery_->finish();
    const auto [intensity, inclination, declination] = definitions_page_->field().texts();
    session_.save_at_exit({intensity, inclination, declination, tabs_->width() * twips_a_pixel,
                           height() * twips_a_pixel, menus_->display_axes()});
    QMainWindow::closeEvent(event);
}

void Form_anomalis::dragEnterEvent(QDragEnterEvent* event) {
    if (!dropped_path(*event->mimeData()).empty()) event->acceptProposedAction();
}

void Form_anomalis::dropEvent(QDropEvent* event) {
    const std::string path = dropped_path(*event->mimeData());
    if (path.empty()) return;
    event->acceptProposedAction();
    open_file(path);
}

}  // namespace anomalis::window
