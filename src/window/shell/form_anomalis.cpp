#include "window/shell/form_anomalis.h"

#include <algorithm>

#include <QCloseEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>

#include "edit/change.h"
#include "flow/new_line_choice.h"
#include "flow/recent_files.h"
#include "show/page_layout.h"
#include "window/help/help_controller.h"
#include "window/import/import_controller.h"
#include "window/panels/chart_file_dialogs.h"
#include "window/panels/charts_panel.h"
#include "window/panels/definitions_page.h"
#include "window/panels/export_notice.h"
#include "window/panels/invert_panel.h"
#include "window/panels/model_page.h"
#include "window/panels/model_side.h"
#include "window/panels/processing_panel.h"
#include "window/panels/settings_panels.h"
#include "window/panels/status_panels.h"
#include "window/panels/welcome_panel.h"
#include "window/shell/actions.h"
#include "window/shell/bodies_controller.h"
#include "window/shell/calculation_watch.h"
#include "window/shell/export_controller.h"
#include "window/shell/field_controller.h"
#include "window/shell/find_controller.h"
#include "window/shell/fit_controller.h"
#include "window/shell/form_inversion.h"
#include "window/shell/form_sizes.h"
#include "window/shell/formulas_controller.h"
#include "window/shell/history_controller.h"
#include "window/shell/line_controller.h"
#include "window/shell/menus.h"
#include "window/shell/new_line.h"
#include "window/shell/open_controller.h"
#include "window/shell/page_controller.h"
#include "window/shell/preferences_controller.h"
#include "window/shell/recovery_controller.h"
#include "window/shell/save_controller.h"
#include "window/shell/session_controller.h"
#include "window/shell/uncertainty_controller.h"
#include "window/shell/view_controller.h"
#include "window/shell/watch_controller.h"
#include "window/shell/window_place.h"
#include "window/survey/survey_controller.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

namespace {

constexpr double twips_a_pixel = 15;
constexpr QSize designed_size{1280, 800};
const char* const place_key = "FormPlace";
const char* const splitters_key = "Splitters";

std::string dropped_path(const QMimeData& data) {
    for (const QUrl& url : data.urls())
        if (url.isLocalFile()) return url.toLocalFile().toStdString();
    return {};
}

}  // namespace

Form_anomalis::Form_anomalis(Session& session, const std::vector<flow::ExampleFile>& examples)
    : session_(session),
      workbench_(session),
      guards_(session.inversion),
      gate_(guards_),
      chart_dialogs_(std::make_unique<ChartFileDialogs>(workbench_)),
      tabs_(new QTabWidget(this)),
      definitions_page_(new DefinitionsPage(workbench_, guards_, news_, examples)),
      charts_(new ChartsPanel(workbench_, guards_, news_)),
      side_(new ModelSide(workbench_, guards_, news_)),
      model_page_(new ModelPage(charts_, side_, examples)),
      status_(new StatusPanels(this)),
      actions_(new Actions(*this, workbench_, guards_, gate_, static_cast<int>(examples.size()))),
      menus_(new Menus(*this, *actions_, workbench_)),
      placer_(new WindowPlacer(*this)) {
    lay_out();
    gate_.add_editor([this] { status_->begin_action(); });
    gate_.add_editor([this] { charts_->view().hand().finish(); });
    gate_.add_editor([this] { side_->commit(); });
    gate_.add_editor([this] { commit_boxes(*definitions_page_); });
    make_controllers(examples);
    wire_panels();
    calculation_ =
        std::make_unique<CalculationWatch>(WatchParts{*this, *status_, side_->invert().stop_button(),
                                                      actions_->action(ActionId::stop_inversion)},
                                           guards_);
    session_.prompts.set_watcher(calculation_.get());
    connect(&news_, &ModelNews::model_changed, this, &Form_anomalis::follow);
    start();
}

/// A box that loses the focus as the window goes would take its text over into what is gone already.
Form_anomalis::~Form_anomalis() {
    guards_.events_suspended = true;
    session_.prompts.set_watcher(nullptr);
    hide();
}

chart::ChartDialogs& Form_anomalis::chart_dialogs() {
    return *chart_dialogs_;
}

void Form_anomalis::lay_out() {
    setObjectName("Form_anomalis");
    setAcceptDrops(true);
    tabs_->setObjectName("Tab_model");
    tabs_->setDocumentMode(true);
    tabs_->addTab(definitions_page_, tr(" Data Definitions"));
    tabs_->addTab(model_page_, tr("Current Model"));
    setCentralWidget(tabs_);
    setStatusBar(status_);
}

void Form_anomalis::make_controllers(const std::vector<flow::ExampleFile>& examples) {
    pages_ = new PageController({*tabs_, *definitions_page_, *model_page_, *charts_}, workbench_, *actions_,
                                gate_);
    line_ = new LineController(workbench_, gate_, news_, *definitions_page_, *status_);
    open_ =
        new OpenController(this, workbench_, *actions_, gate_, news_, *line_, *pages_, *status_, examples);
    field_ = new FieldController(workbench_, *actions_, gate_, news_, *definitions_page_, *line_, *status_);
    chart_dialogs_->set_told(
        [this](const QString& text, const QString& path) { tell_export(*status_, text, path); });
    new ExportController(*this, workbench_, *actions_, gate_, *charts_, *status_, *chart_dialogs_);
    save_ = new SaveController(*this, workbench_, *actions_, gate_, guards_, news_, *charts_, *status_,
                               [this] { return window_layout(); });
    auto* bodies = new BodiesController(this, workbench_, *actions_, news_, *pages_, *status_);
    new ViewController(this, workbench_, *actions_, guards_, news_, *charts_, *bodies);
    new HistoryController(*this, workbench_, *actions_, *menus_, news_, *line_, *status_);
    new SessionController(*this, session_, *actions_, *status_);
    new HelpController(*this, *actions_);
    new FormSizes(*this, session_.settings);
    actions_->on(ActionId::leave, [this] { close(); });
    formulas_ = new FormulasController(this, workbench_, *actions_, gate_, guards_, news_, *status_);
    recovery_ = new RecoveryController(*this, workbench_, guards_, *actions_, *menus_, *open_, *status_);
    preferences_ = new PreferencesController(*this, workbench_, *actions_, news_, *recovery_);
    watch_ = new WatchController(*this, workbench_, guards_, *recovery_, *status_);
    inversion_ = new FormInversion({*this, *tabs_, *charts_, *side_, *status_}, workbench_, *actions_, gate_,
                                   news_, *recovery_);
    fit_ = new FitController(*this, workbench_, *actions_);
    uncertainty_ =
        new UncertaintyController(*this, workbench_, *actions_, news_, *charts_, *status_, *recovery_,
                                  [this] { return inversion_->desk().panel().channel_index; });
    find_ = new FindController({*this, definitions_page_->definitions(), *model_page_, *charts_, *status_},
                               workbench_, *actions_, gate_, guards_, news_, *pages_);
    import_ = new ImportController(*this, workbench_, *actions_, gate_, *open_, *status_);
    survey_ = new SurveyController(*tabs_, workbench_, *actions_, gate_, *open_, *status_);
    gate_.add_editor([this] { survey_->settle(); });
    open_->set_results(&SurveyController::is_results,
                       [this](const std::string& path) { survey_->open_folder(path); });
    open_->set_import([this](const std::string& path) { import_->import_file(path); });
}

void Form_anomalis::wire_panels() {
    for (WelcomePanel* panel : findChildren<WelcomePanel*>()) {
        connect(panel, &WelcomePanel::example_chosen, this,
                [this](const QString& path) { open_example(path.toStdString()); });
        connect(panel, &WelcomePanel::import_wanted, &actions_->action(ActionId::import_survey),
                &QAction::trigger);
    }
    connect(definitions_page_, &DefinitionsPage::text_refused, status_, &StatusPanels::show_refused);
    connect(side_, &ModelSide::text_refused, status_, &StatusPanels::show_refused);
    connect(side_, &ModelSide::body_wanted, this,
            [this](int number) { charts_->view().select_body(number); });
    connect(charts_, &ChartsPanel::find_wanted, &actions_->action(ActionId::find_bodies), &QAction::trigger);
    connect(charts_, &ChartsPanel::add_wanted, &actions_->action(ActionId::add_body), &QAction::trigger);
    connect(charts_, &ChartsPanel::pointer_moved, status_, &StatusPanels::show_pointer);
    connect(charts_, &ChartsPanel::calculation_left, status_, [this] {
        status_->show_text(
            tr("The calculation was stopped: the curves are those of before. F5 calculates them"));
    });
    connect(charts_, &ChartsPanel::base_level_found, this, [this](int channel, const QString& text) {
        const std::optional<std::string> shown = text.toStdString();
        const bool mag = channel == channel_mag;
        definitions_page_->processing().show_base_texts(mag ? shown : std::nullopt,
                                                        mag ? std::nullopt : shown);
    });
}

/// The inversion looks at curves that were drawn.
void Form_anomalis::follow(WhatChanged what) {
    definitions_page_->follow(what);
    side_->follow(what);
    charts_->follow(what);
    inversion_->follow(what);
    if (what & (News::line | News::form_reset | News::settings | News::boxes | News::calculated))
        definitions_page_->processing().show_noise_estimates(inversion_->noise_estimates());
    pages_->follow(what);
    if (what & News::line) {
        menus_->refresh();
        status_->clear_line();
        status_->show_text(QString());
    }
    if (what & News::calculated) status_->show_misfit(charts_->misfit()[0], charts_->misfit()[1]);
    formulas_->follow(what);
    field_->follow(what);
    fit_->follow(what);
    uncertainty_->follow(what);
    find_->follow(what);
    survey_->follow(what);
    open_->follow(what);
    save_->follow();
    if (what & News::file) watch_->follow();
    if (what & News::recent_files) menus_->refresh();
    if (what != WhatChanged(News::calculated)) actions_->refresh();
}

void Form_anomalis::start() {
    const StartSettings settings = session_.start();
    preferences_->begin();
    session_.workspace.formulas = flow::formulas_of_new_line(session_.settings);
    if (settings.display_axes) workbench_.view.show_axes = *settings.display_axes;
    definitions_page_->fill(true);
    session_.model_changed = false;
    edit::start_history(workbench_);
    workbench_.recent_files = flow::read_recent_files(session_.settings, recent_files_section);
    begin_anew(workbench_, news_, News::line | News::file | News::recent_files);
    restore_place(settings);
}

/// The tab control fills the window, so its stored width is the window's.
void Form_anomalis::restore_place(const StartSettings& settings) {
    const SuspendEvents suspend(guards_);
    QSize size = designed_size;
    const auto pixels = [](double twips) {
        return static_cast<int>(std::min(twips / twips_a_pixel, double{QWIDGETSIZE_MAX}));
    };
    if (settings.form_size) size = {pixels(settings.form_size->width), pixels(settings.form_size->height)};
    placer_->open(size, place_of_text(session_.settings.get(settings_section, place_key)));
    workbench_.view.pane_fractions =
        show::places_of_text(session_.settings.get(settings_section, splitters_key));
}

void Form_anomalis::keep_place() {
    session_.settings.set(settings_section, place_key, place_text(placer_->place()));
    session_.settings.set(settings_section, splitters_key, show::places_text(workbench_.view.pane_fractions));
}

flow::WindowLayout Form_anomalis::window_layout() const {
    return {tabs_->width() * twips_a_pixel, height() * twips_a_pixel, workbench_.view.show_axes};
}

void Form_anomalis::open_file(const std::string& path) {
    open_->open_file(path);
}

void Form_anomalis::open_example(const std::string& path) {
    open_->open_copy(path);
}

void Form_anomalis::load_locations() {
    if (gate_.pass()) line_->load();
}

void Form_anomalis::closeEvent(QCloseEvent* event) {
    if (!find_->may_close() || !uncertainty_->may_close() || !inversion_->may_close() ||
        !calculation_->may_close())
        return event->ignore();
    gate_.settle();
    if (!recovery_->leave()) return event->ignore();
    const auto [intensity, inclination, declination] = definitions_page_->field().texts();
    const QSize size = placer_->size();
    session_.save_at_exit({intensity, inclination, declination, size.width() * twips_a_pixel,
                           size.height() * twips_a_pixel, workbench_.view.show_axes});
    keep_place();
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
