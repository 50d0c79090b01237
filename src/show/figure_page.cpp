#include "show/figure_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "show/figure_table.h"

namespace anomalis::show {

namespace {

constexpr double margin = 12 * sheet_mm;
constexpr double gap = 3 * sheet_mm;       // between the parts of a sheet
constexpr double fact_gap = 8 * sheet_mm;  // between the two columns of facts
constexpr double caption_gap = 2.5 * sheet_mm;
constexpr double wide_sheet = 230 * sheet_mm;  // from here on facts stand in two columns

/// What the charts keep beside a table: of the sheet's height, and for each. Where no sheet can follow the
/// table comes first.
struct LeastCharts {
    double part, curve, section;
};
constexpr LeastCharts roomy{0.42, 21 * sheet_mm, 36 * sheet_mm}, dense{0.38, 17 * sheet_mm, 32 * sheet_mm};

constexpr std::size_t title_lines = 2, line_lines = 2, fact_lines = 3;

constexpr std::string_view where_all_are =
    "in a PDF, in a print and in the table of bodies (File, Export clean tables)";

constexpr chart::Colour rule_grey = 0x909090;

const chart::Font title_font = sheet_font(14, true);
const chart::Font line_font = sheet_font(9.5);
const chart::Font fact_font = sheet_font(8.5);
const chart::Font fact_caption_font = sheet_font(8.5, true);
const chart::Font foot_font = sheet_font(7);

/// A sheet from the top down and from the bottom up.
class FigureLayout {
  public:
    FigureLayout(const FigureContent& content, chart::SurfaceSize size, const TextSetter& setter)
        : content_(content),
          size_(size),
          setter_(setter),
          width_(size.width - 2 * margin),
          table_(content.table, width_, setter) {}

    std::vector<FigureSheet> sheets(bool further_sheets);

  private:
    double left() const { return margin; }
    double right() const { return margin + width_; }
    double foot_top() const { return margin + setter_.height(foot_font) + sheet_row_gap; }

    double place_lines(FigureSheet& sheet, double top, const std::string& text, const chart::Font& font,
                       std::size_t most, chart::Colour colour) const;
    double place_facts(FigureSheet& sheet, const std::vector<FigureFact>& facts, double bottom) const;
    double facts_height(const std::vector<FigureFact>& facts, std::size_t first, std::size_t end,
                        double room) const;
    double place_rows(FigureSheet& sheet, double top, double bottom, std::size_t& next) const;
    void place_foot(FigureSheet& sheet, std::size_t number, std::size_t count) const;
    FigureSheet first_sheet(double above, const FigureSheet& head, const std::vector<FigureFact>& facts,
                            double table_height, std::size_t& next) const;

    double caption_width(const std::vector<FigureFact>& facts) const;
    std::size_t fact_columns() const { return size_.width >= wide_sheet ? 2 : 1; }

    const FigureContent& content_;
    chart::SurfaceSize size_;
    const TextSetter& setter_;
    double width_;
    FigureTableLook table_;
};

double FigureLayout::place_lines(FigureSheet& sheet, double top, const std::string& text,
                                 const chart::Font& font, std::size_t most, chart::Colour colour) const {
    for (const std::string& line : setter_.lines(text, font, width_, most)) {
        setter_.place(sheet, left(), top, line, font, colour);
        top -= setter_.height(font);
    }
    return top;
}

double FigureLayout::caption_width(const std::vector<FigureFact>& facts) const {
    double widest = 0;
    for (const FigureFact& fact : facts)
        widest = std::max(widest, setter_.width(fact.caption, fact_caption_font));
    return widest + caption_gap;
}

double FigureLayout::facts_height(const std::vector<FigureFact>& facts, std::size_t first, std::size_t end,
                                  double room) const {
    double height = 0;
    for (std::size_t i = first; i < end; ++i) {
        const std::size_t lines = setter_.lines(facts[i].text, fact_font, room, fact_lines).size();
        height +=
            static_cast<double>(std::max<std::size_t>(lines, 1)) * setter_.height(fact_font) + sheet_row_gap;
    }
    return height;
}

/// Above `bottom`; the top of the block.
double FigureLayout::place_facts(FigureSheet& sheet, const std::vector<FigureFact>& facts,
                                 double bottom) const {
    const std::size_t columns = fact_columns();
    const std::size_t in_column = (facts.size() + columns - 1) / columns;
    const double own = (width_ - fact_gap * static_cast<double>(columns - 1)) / static_cast<double>(columns);
    const double captions = caption_width(facts);
    double height = 0;
    for (std::size_t c = 0; c < columns; ++c)
        height = std::max(height, facts_height(facts, std::min(c * in_column, facts.size()),
                                               std::min((c + 1) * in_column, facts.size()), own - captions));
    for (std::size_t c = 0; c < columns; ++c) {
        const double at = left() + static_cast<double>(c) * (own + fact_gap);
        double top = bottom + height;
        for (std::size_t i = c * in_column; i < std::min((c + 1) * in_column, facts.size()); ++i) {
            setter_.place(sheet, at, top, facts[i].caption, fact_caption_font);
            for (const std::string& line :
                 setter_.lines(facts[i].text, fact_font, own - captions, fact_lines)) {
                setter_.place(sheet, at + captions, top, line, fact_font);
                top -= setter_.height(fact_font);
            }
            top -= sheet_row_gap;
        }
    }
    return bottom + height;
}

/// As many rows as fit above `bottom`, with the heading; the notes behind the last one.
double FigureLayout::place_rows(FigureSheet& sheet, double top, double bottom, std::size_t& next) const {
    const std::vector<FigureRow>& rows = table_.rows();
    const std::string& heading = content_.table.heading;
    table_.place_head(sheet, left(), top, next == 0 ? heading : heading + ", continued");
    top -= table_.heading_height() + table_.head_height();
    while (next < rows.size()) {
        const double after = next + 1 == rows.size() ? table_.notes_height() : 0;
        if (top - rows[next].height - after < bottom) break;
        table_.place_row(sheet, rows[next], left(), top);
        top -= rows[next++].height;
    }
    if (next == rows.size()) table_.place_notes(sheet, left(), top);
    return top;
}

void FigureLayout::place_foot(FigureSheet& sheet, std::size_t number, std::size_t count) const {
    const std::string page =
        count > 1 ? "   page " + std::to_string(number) + " of " + std::to_string(count) : "";
    const double top = foot_top() - sheet_row_gap;
    const std::string date = content_.date + page;
    const double room = width_ - setter_.width(date, foot_font) - caption_gap;
    place_rule(sheet, left(), right(), foot_top());
    setter_.place(sheet, left(), top, setter_.shortened(content_.origin, foot_font, room), foot_font,
                  quiet_grey);
    setter_.place_right(sheet, right(), top, date, foot_font, quiet_grey);
}

/// Head and foot hold what they must, the table `table_height`; the charts have the rest.
FigureSheet FigureLayout::first_sheet(double above, const FigureSheet& head,
                                      const std::vector<FigureFact>& facts, double table_height,
                                      std::size_t& next) const {
    FigureSheet sheet = head;
    double bottom = foot_top() + gap;
    if (table_height > 0) {
        const double top = bottom + table_height;
        const double more_line = table_.line() + sheet_row_gap;
        const bool whole = table_height >= table_.whole_height();
        const double end = place_rows(sheet, top, whole ? bottom - 1 : bottom + more_line, next);
        if (const std::size_t hidden = table_.rows().size() - next; hidden > 0)
            setter_.place(
                sheet, left(), end,
                setter_.shortened(std::to_string(hidden) + (hidden == 1 ? " more body, " : " more bodies, ") +
                                      std::string(where_all_are),
                                  cell_font, width_),
                cell_font, quiet_grey);
        bottom = top + gap;
    }
    const double facts_top = place_facts(sheet, facts, bottom);
    sheet.charts = chart::Rect{left(), right(), facts_top + gap, above};
    return sheet;
}

std::vector<FigureSheet> FigureLayout::sheets(bool further_sheets) {
    FigureSheet head;
    double above =
        place_lines(head, size_.height - margin, content_.title, title_font, title_lines, chart::black);
    above = place_lines(head, above, content_.line, line_font, line_lines, quiet_grey) - sheet_row_gap;
    place_rule(head, left(), right(), above);
    above -= gap;

    std::size_t next = 0;
    const bool has_table = !content_.table.bodies.empty();
    FigureSheet trial;
    const double facts = place_facts(trial, content_.facts, 0);
    const LeastCharts& least = further_sheets ? roomy : dense;
    const double charts = std::max(least.part * size_.height, content_.curves * least.curve + least.section);
    const double free = above - foot_top() - facts - 3 * gap - charts;
    std::vector<FigureSheet> all;
    if (!has_table || table_.whole_height() <= free) {
        all.push_back(first_sheet(above, head, content_.facts, has_table ? table_.whole_height() : 0, next));
    } else if (!further_sheets && free >= table_.least_height()) {
        all.push_back(first_sheet(above, head, content_.facts, free, next));
    } else {
        std::vector<FigureFact> told = content_.facts;
        told.push_back({"Bodies", std::to_string(content_.table.bodies.size()) +
                                      (further_sheets ? ", see the table that follows"
                                                      : "; their table is " + std::string(where_all_are))});
        all.push_back(first_sheet(above, head, told, 0, next));
        while (further_sheets && next < table_.rows().size()) {
            FigureSheet sheet;
            const std::size_t before = next;
            place_rows(sheet, size_.height - margin, foot_top() + gap, next);
            if (next == before) break;  // a sheet lower than a row
            all.push_back(std::move(sheet));
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) place_foot(all[i], i + 1, all.size());
    return all;
}

}  // namespace

std::vector<PaperName> paper_names() {
    return {{Paper::a4, "a4", "A4"}, {Paper::a3, "a3", "A3"}, {Paper::letter, "letter", "Letter"}};
}

chart::SurfaceSize sheet_size(Paper paper, bool landscape) {
    chart::SurfaceSize size{210 * sheet_mm, 297 * sheet_mm};
    if (paper == Paper::a3) size = {297 * sheet_mm, 420 * sheet_mm};
    if (paper == Paper::letter) size = {8.5 * chart::units_per_inch, 11 * chart::units_per_inch};
    if (landscape) std::swap(size.width, size.height);
    return size;
}

std::vector<FigureSheet> lay_out_figure(const FigureContent& content, chart::SurfaceSize size,
                                        bool further_sheets, const chart::DrawingDevice& measure) {
    const TextSetter setter(measure);
    return FigureLayout(content, size, setter).sheets(further_sheets);
}

void draw_sheet(const FigureSheet& sheet, chart::DrawingDevice& device) {
    const chart::Pen thin{rule_grey, 0.75};
    for (const chart::Rect& line : sheet.rules)
        device.polyline(
            std::array{chart::Point{line.x_low, line.y_low}, chart::Point{line.x_high, line.y_low}}, thin);
    for (const Swatch& swatch : sheet.swatches) {
        const chart::Rect& box = swatch.box;
        const std::array corners{chart::Point{box.x_low, box.y_low}, chart::Point{box.x_high, box.y_low},
                                 chart::Point{box.x_high, box.y_high}, chart::Point{box.x_low, box.y_high}};
        device.polygon_fill(corners, swatch.colour);
        device.polygon_outline(corners, thin);
    }
    for (const PlacedText& text : sheet.texts) device.text(text.anchor, 0, text.text, text.font, text.colour);
}

}  // namespace anomalis::show