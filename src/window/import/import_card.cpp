#include "window/import/import_card.h"

#include <string_view>

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringListModel>
#include <QStyle>
#include <QTimer>

#include "flow/import_desk.h"
#include "flow/import_words.h"
#include "window/shell/look.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12, gap = 8, row_gap = 6;  // pixels
constexpr int box_width = 250, date_width = 110;

/// A label of one line that gives way instead of widening the form; what is cut stands in its tip.
QLabel* make_words(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

void show_words(QLabel& label, const QString& words) {
    label.setText(words);
    label.setToolTip(plain_tip(words));
}

constexpr std::string_view separators = " \t,;";  // in the order of their list

QStringList format_names() {
    QStringList names;
    for (const intake::SurveyFormat* format : intake::survey_formats())
        names << QString::fromUtf8(format->name().data(), static_cast<qsizetype>(format->name().size()));
    return names;
}

QComboBox* make_choice(const ControlText& text, const QStringList& entries) {
    QComboBox* list = make_list(text, entries);
    list->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return list;
}

/// -1 for none: nothing was recognised.
void show_entry(QComboBox& list, int entry) {
    list.setCurrentIndex(entry);
}

QHBoxLayout* make_row() {
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    return row;
}

}  // namespace

ImportCard::ImportCard(flow::ImportDesk& desk, QWidget* parent) : QFrame(parent), desk_(desk) {
    setProperty("card", true);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(margin, gap, margin, gap);
    grid->setHorizontalSpacing(gap);
    grid->setVerticalSpacing(row_gap);
    grid->addLayout(make_file_row(), 0, 1);
    grid->addLayout(make_system_row(), 1, 1);
    grid->addLayout(make_date_row(), 2, 1);
    grid->addWidget(make_caption(tr("File"), file_), 0, 0);
    grid->addWidget(make_caption(tr("Coordinate system"), system_), 1, 0);
    grid->addWidget(make_caption(tr("Date"), date_), 2, 0);
    grid->setColumnStretch(1, 1);
    connect(choose_, &QPushButton::clicked, this, &ImportCard::file_wanted);
    connect(system_, &QLineEdit::editingFinished, this, &ImportCard::take_system);
    connect(date_, &QLineEdit::editingFinished, this, &ImportCard::take_date);
    connect(field_, &QCheckBox::clicked, this, [this](bool on) { desk_.choose_field(on); });
    connect(main_field_, &QComboBox::activated, this,
            [this](int index) { desk_.choose_main_field(static_cast<flow::MainFieldChange>(index)); });
}

QLayout* ImportCard::make_file_row() {
    file_ = new QLineEdit;
    name_control(*file_, "Text_import_file", tr("File"), tr("The survey file that is shown"));
    file_->setReadOnly(true);
    file_->setFocusPolicy(Qt::NoFocus);
    choose_ = make_button({"Command_import_file", "Choose...", "", "Choose another survey file"});
    format_ = make_choice({"Combo_import_format", "Format", "", "How the file is built"}, format_names());
    separator_ = make_choice({"Combo_import_separator", "Separator", "", "What stands between two fields"},
                             {tr("Blanks"), tr("Tabs"), tr("Commas"), tr("Semicolons")});
    decimal_ = make_choice({"Combo_import_decimal", "Decimal sign", "", "The decimal sign of the numbers"},
                           {tr("1.5"), tr("1,5")});
    encoding_ = make_choice({"Combo_import_encoding", "Encoding", "", "How letters are written"},
                            {"UTF-8", "Latin-1", "UTF-16 LE", "UTF-16 BE"});
    for (QComboBox* list : {format_, separator_, decimal_, encoding_})
        connect(list, &QComboBox::activated, this, &ImportCard::take_reading);
    choose_->setAutoDefault(false);
    QHBoxLayout* row = make_row();
    row->addWidget(file_, 3);
    row->addWidget(choose_);
    for (QComboBox* list : {format_, separator_, decimal_, encoding_}) row->addWidget(list);
    return row;
}

QLayout* ImportCard::make_system_row() {
    system_ = new QLineEdit;
    name_control(*system_, "Text_import_system", tr("Coordinate system"),
                 tr("Of the imported line: a number such as EPSG:32754 or a name. Empty: as recognised. The "
                    "file's own where it says none"));
    system_->setFixedWidth(box_width);
    auto* completer = new QCompleter(system_);
    auto* systems = new QStringListModel(completer);
    completer->setModel(systems);
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    system_->setCompleter(completer);
    connect(system_, &QLineEdit::textEdited, systems, [systems](const QString& text) {
        QStringList found;
        for (const std::string& system : flow::suggested_systems(text.toStdString()))
            found << QString::fromStdString(system);
        systems->setStringList(found);
    });
    system_words_ = make_words("Label_import_system");
    QHBoxLayout* row = make_row();
    row->addWidget(system_);
    row->addWidget(system_words_, 1);
    return row;
}

QLayout* ImportCard::make_date_row() {
    date_ = new QLineEdit;
    name_control(*date_, "Text_import_date", tr("Date"),
                 tr("Day of the survey: 1990-07-01, 1990 or 1990.5. Empty: the column of dates"));
    date_->setFixedWidth(date_width);
    date_->setPlaceholderText(tr("1990-07-01"));
    field_ = make_check({"Check_import_field", "Field from place and date", "",
                         "Intensity, inclination and declination of the earth's field from IGRF-14 at the "
                         "middle of the line; without the mark they are keyed later"});
    field_words_ = make_words("Label_import_field");
    main_field_ =
        make_list({"Combo_import_main_field", "Magnetics", "",
                   "Whether the earth's field of IGRF-14 is taken out of the magnetic channel, or put "
                   "back into one that it was taken out of"},
                  {tr("Magnetics as they are"), tr("Take IGRF out"), tr("Put IGRF back")});
    QHBoxLayout* row = make_row();
    row->addWidget(date_);
    row->addSpacing(gap);
    row->addWidget(field_);
    row->addWidget(field_words_, 1);
    row->addWidget(main_field_);
    return row;
}

void ImportCard::show_layout() {
    for (QLineEdit* box : {system_, date_}) show_refused(*box, {});
    file_->setText(shown(desk_.path()));
    file_->setCursorPosition(static_cast<int>(file_->text().size()));
    const intake::SurveyLayout* layout = desk_.layout();
    show_entry(*format_, layout ? format_->findText(QString::fromStdString(layout->format)) : -1);
    const bool separated = layout && !layout->fixed_width;
    show_entry(*separator_, separated ? static_cast<int>(separators.find(layout->separator)) : -1);
    show_entry(*decimal_, layout ? (layout->decimal_comma ? 1 : 0) : -1);
    show_entry(*encoding_, layout ? static_cast<int>(layout->encoding) : -1);
    for (QComboBox* list : {format_, separator_, decimal_, encoding_})
        list->setEnabled(!desk_.path().empty());
}

void ImportCard::show_choice() {
    const intake::SurveyLayout* layout = desk_.layout();
    if (!system_->hasFocus()) system_->setText(shown(desk_.system_text()));
    if (!date_->hasFocus()) date_->setText(shown(desk_.date_text()));
    show_words(*system_words_,
               layout ? shown(flow::system_words(*layout, desk_.index(), desk_.system_text())) : QString());
    const bool magnetic = layout && layout->column_of(intake::Role::mag);
    field_->setEnabled(magnetic);
    main_field_->setEnabled(magnetic);
    field_->setChecked(desk_.choices().field_choice == flow::FieldChoice::from_place);
    main_field_->setCurrentIndex(static_cast<int>(desk_.choices().main_field));
    show_words(*field_words_, magnetic && desk_.index()
                                  ? shown(flow::field_words(*desk_.index(), desk_.line(), desk_.choices()))
                                  : QString());
}

bool ImportCard::take_focus() {
    const intake::SurveyLayout* layout = desk_.layout();
    const bool dateless = layout && layout->column_of(intake::Role::mag) &&
                          !layout->column_of(intake::Role::date) && desk_.date_text().empty();
    if (dateless) date_->setFocus();
    return dateless;
}

void ImportCard::show_refused(QLineEdit& box, const QString& why) {
    box.setProperty("refused", !why.isEmpty());
    box.style()->unpolish(&box);
    box.style()->polish(&box);
}

/// What a list shows, or what was said before, where it shows nothing.
void ImportCard::take_reading() {
    intake::ReadAs as = desk_.read_as();
    const QObject* list = sender();
    if (list == format_) as.format = format_->currentText().toStdString();
    if (list == separator_) as.separator = separators[static_cast<std::size_t>(separator_->currentIndex())];
    if (list == decimal_) as.decimal_comma = decimal_->currentIndex() == 1;
    if (list == encoding_) as.encoding = static_cast<intake::Encoding>(encoding_->currentIndex());
    QTimer::singleShot(0, this, [this, as] { desk_.choose_reading(as); });
}

void ImportCard::take_system() {
    const QString why = shown(desk_.choose_system(system_->text().trimmed().toStdString()));
    show_refused(*system_, why);
    emit refused(why);
}

void ImportCard::take_date() {
    const QString why = shown(desk_.choose_date(date_->text().trimmed().toStdString()));
    show_refused(*date_, why);
    emit refused(why);
}

}  // namespace anomalis::window
