#include "intake/survey/survey_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "core/digest.h"
#include "core/failure.h"
#include "core/paths.h"
#include "intake/survey/line_pieces.h"
#include "intake/survey/survey_places.h"
#include "intake/survey/survey_stamp.h"
#include "intake/survey/survey_tracks.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t map_points = 200000;
constexpr std::size_t not_wanted = static_cast<std::size_t>(-1);
/// The origin of the map stands at whole kilometres: its coordinates are then easy to read in a debugger and
/// the same whichever station comes first.
constexpr double origin_step = 1000;

/// 24 MB.
constexpr std::size_t most_stretches = std::size_t{1} << 20;

/// A word more in a digest; the shift lets high bits count below (after Fowler, Noll and Vo 1991).
void mix(std::uint64_t& digest, std::uint64_t word) {
    constexpr std::uint64_t prime = 1099511628211ULL;
    digest = (digest ^ word) * prime;
    digest ^= digest >> 32U;
}

void widen(std::optional<ValueRange>& range, double value) {
    if (!range) {
        range = ValueRange{value, value};
    } else if (value < range->least) {
        range->least = value;
    } else if (value > range->greatest) {
        range->greatest = value;
    }
}

/// One pass over the rows of a survey file.
class IndexPass {
  public:
    /// `line_ends`: last rows of lines that are told by their places; none where the file names its lines, or
    /// is one.
    IndexPass(const SurveyLayout& layout, PlaceWay way, std::vector<long> line_ends);

    void read(Pacer& pacer);
    /// The tracks become lengths, pieces and map; nothing can be read after it.
    SurveyIndex finish();

    std::string other_zone() const { return places_.other_zone(); }
    /// Where the file, taken as one line, ends a line by its places: the last row of each. One for one line.
    std::vector<long> line_ends();

  private:
    struct Wanted {
        std::size_t column = not_wanted;  ///< of the layout
        const std::vector<double>* values = nullptr;
    };
    std::size_t place_of(std::size_t column) const;
    void take(RowBlock& block);
    void count_nulls(const RowBlock& block);
    void find_system(const RowBlock& block);
    void take_run(const RowBlock& block, std::size_t first, std::size_t last, std::size_t line);
    std::size_t line_of_row(const RowBlock& block, std::size_t row) const;
    SurveyLineInfo& line_info(std::size_t line);
    void name_lines(const RowReader& reader);
    void take_place(const RowBlock& block, std::size_t first, std::size_t last, SurveyLineInfo& info);
    void take_digest(const RowBlock& block, std::size_t row, std::uint64_t& digest) const;
    void finish_digests();
    void take_shape(std::size_t line, SurveyLineInfo& info, std::size_t most_map_points);

    SurveyIndex index_;
    PlaceWay way_;
    PlaceChange places_;
    std::vector<long> line_ends_;
    std::vector<std::size_t> columns_;                ///< that are wanted, in the order of the blocks
    std::size_t first_, second_, mag_, grav_, date_;  ///< their places among those
    SurveyTracks tracks_;
    std::vector<MapPoint> points_;
    std::vector<MapPoint> only_track_;
    bool origin_set_ = false;
    std::size_t stretches_ = 0;
};

IndexPass::IndexPass(const SurveyLayout& layout, PlaceWay way, std::vector<long> line_ends)
    : way_(std::move(way)), places_(way_), line_ends_(std::move(line_ends)) {
    index_.layout = layout;
    index_.in_degrees = way_.degrees;
    index_.from_system = way_.from;
    index_.split_by_place = line_ends_.size() > 1;
    for (std::size_t c = 0; c < layout.columns.size(); ++c)
        if (layout.columns[c].role != Role::none && layout.columns[c].role != Role::line)
            columns_.push_back(c);
    index_.nulls.assign(layout.columns.size(), 0);
    const auto of_role = [&](Role role) {
        const auto column = layout.column_of(role);
        return column ? place_of(*column) : not_wanted;
    };
    first_ = place_of(way_.first);
    second_ = place_of(way_.second);
    mag_ = of_role(Role::mag);
    grav_ = of_role(Role::grav);
    date_ = of_role(Role::date);
}

std::size_t IndexPass::place_of(std::size_t column) const {
    return static_cast<std::size_t>(std::ranges::find(columns_, column) - columns_.begin());
}

void IndexPass::read(Pacer& pacer) {
    const auto reader = open_rows(index_.layout, columns_);
    RowBlock block;
    double told = 0;
    while (reader->next(block)) {
        take(block);
        pacer.done(reader->bytes_read() - told);
        told = reader->bytes_read();
    }
    index_.losses.assign(reader->losses().begin(), reader->losses().end());
    for (RowLoss& loss : places_.losses()) index_.losses.push_back(std::move(loss));
    name_lines(*reader);
}

void IndexPass::name_lines(const RowReader& reader) {
    std::vector<SurveyLineInfo>& lines = index_.lines;
    const bool named = index_.layout.column_of(Role::line) || index_.layout.line_headers;
    if (named) {
        const auto names = reader.line_names();
        if (!names.empty()) line_info(names.size() - 1);
        for (std::size_t i = 0; i < names.size(); ++i) {
            lines[i].name = names[i];
            lines[i].tie = reader.is_tie(static_cast<std::int32_t>(i));
        }
    } else {
        for (std::size_t i = 0; i < lines.size(); ++i) lines[i].name = std::to_string(i + 1);
    }
}

/// Where nobody says the system of eastings and northings, longitudes and latitudes beside them may tell it.
void IndexPass::find_system(const RowBlock& block) {
    const auto longitude = index_.layout.column_of(Role::longitude);
    const auto latitude = index_.layout.column_of(Role::latitude);
    if (index_.rows > 0 || way_.degrees || !places_.system().empty() || !longitude || !latitude) return;
    const auto values = [&](std::size_t place) {
        return std::span<const double>(block.values[place].data(), block.rows);
    };
    const std::string zone = agreeing_zone(values(first_), values(second_), values(place_of(*longitude)),
                                           values(place_of(*latitude)));
    if (zone.empty()) return;
    places_.take_system(zone);
    index_.from_system = zone;
    index_.layout.remarks.push_back("Eastings and longitudes agree in " + find_coordinate_system(zone).name +
                                    ": that is taken as the coordinate system.");
}

void IndexPass::take(RowBlock& block) {
    count_nulls(block);
    find_system(block);
    places_.change({block.values[first_].data(), block.rows}, {block.values[second_].data(), block.rows},
                   {block.file_line.data(), block.rows});
    for (std::size_t first = 0; first < block.rows;) {
        const std::size_t line = line_of_row(block, first);
        std::size_t last = first + 1;
        if (line_ends_.empty()) {
            while (last < block.rows && block.line[last] == block.line[first]) ++last;
        }
        take_run(block, first, last, line);
        first = last;
    }
}

void IndexPass::count_nulls(const RowBlock& block) {
    for (std::size_t i = 0; i < columns_.size(); ++i)
        index_.nulls[columns_[i]] += std::count_if(
            block.values[i].begin(), block.values[i].begin() + static_cast<std::ptrdiff_t>(block.rows),
            [](double value) { return std::isnan(value); });
}

std::size_t IndexPass::line_of_row(const RowBlock& block, std::size_t row) const {
    if (line_ends_.empty()) return static_cast<std::size_t>(block.line[row]);
    const auto end = std::ranges::lower_bound(line_ends_, index_.rows);
    return std::min(static_cast<std::size_t>(end - line_ends_.begin()), line_ends_.size() - 1);
}

SurveyLineInfo& IndexPass::line_info(std::size_t line) {
    if (line >= index_.lines.size()) {
        index_.lines.resize(line + 1);
        tracks_.make_room(line + 1);
    }
    return index_.lines[line];
}

void IndexPass::take_run(const RowBlock& block, std::size_t first, std::size_t last, std::size_t line) {
    SurveyLineInfo& info = line_info(line);
    if (info.first_file_line == 0) info.first_file_line = block.file_line[first];
    info.last_file_line = block.file_line[last - 1];
    const double* east = block.values[first_].data();
    const double* north = block.values[second_].data();
    const double* mag = mag_ == not_wanted ? nullptr : block.values[mag_].data();
    const double* grav = grav_ == not_wanted ? nullptr : block.values[grav_].data();
    const double* date = date_ == not_wanted ? nullptr : block.values[date_].data();
    take_place(block, first, last, info);
    points_.clear();
    for (std::size_t i = first; i < last; ++i) {
        if (std::isnan(east[i]) || std::isnan(north[i])) continue;
        take_digest(block, i, info.digest);
        if (!origin_set_) {
            index_.origin_east = std::floor(east[i] / origin_step) * origin_step;
            index_.origin_north = std::floor(north[i] / origin_step) * origin_step;
            origin_set_ = true;
        }
        if (info.stations == 0 && points_.empty()) {
            info.first_east = east[i];
            info.first_north = north[i];
        }
        if (mag && !std::isnan(mag[i])) widen(info.mag_nT, mag[i]);
        if (grav && !std::isnan(grav[i])) widen(info.grav_mGal, grav[i]);
        if (date && !info.year && !std::isnan(date[i])) info.year = date[i];
        const double value = mag ? mag[i] : grav ? grav[i] : std::nan("");
        points_.push_back({static_cast<float>(east[i] - index_.origin_east),
                           static_cast<float>(north[i] - index_.origin_north), static_cast<float>(value)});
    }
    const auto stations = static_cast<long>(points_.size());
    info.stations += stations;
    index_.rows += stations;
    tracks_.add(line, points_);
}

/// Near stretches are read as one: opening a file again costs more than the rows between them.
void IndexPass::take_place(const RowBlock& block, std::size_t first, std::size_t last, SurveyLineInfo& info) {
    constexpr std::int64_t near = 1 << 16;
    if (block.place.empty() || stretches_ > most_stretches) return;
    const FileStretch &from = block.place[first], &to = block.place[last - 1];
    if (!info.stretches.empty() && from.begin - info.stretches.back().end <= near) {
        info.stretches.back().end = to.end;
        return;
    }
    info.stretches.push_back({from.begin, to.end, from.first_line});
    if (++stretches_ <= most_stretches) return;
    for (SurveyLineInfo& line : index_.lines) line.stretches = {};
}

void IndexPass::take_digest(const RowBlock& block, std::size_t row, std::uint64_t& digest) const {
    for (std::size_t column = 0; column < columns_.size(); ++column)
        mix(digest, std::bit_cast<std::uint64_t>(block.values[column][row]));
}

/// What the numbers of the rows are.
void IndexPass::finish_digests() {
    std::uint64_t meaning = digest_of(index_.coordinate_system);
    for (const std::size_t column : columns_)
        mix(meaning, static_cast<std::uint64_t>(index_.layout.columns[column].role));
    for (SurveyLineInfo& line : index_.lines) mix(line.digest, meaning);
}

std::vector<long> IndexPass::line_ends() {
    std::vector<long> ends;
    if (index_.lines.size() != 1) return ends;
    only_track_ = tracks_.take(0);
    for (const LinePiece& stretch : unfolded_stretches(only_track_))
        ends.push_back(tracks_.station_of(0, static_cast<std::size_t>(stretch.last)));
    return ends;
}

void IndexPass::take_shape(std::size_t line, SurveyLineInfo& info, std::size_t most_map_points) {
    const std::vector<MapPoint> track = only_track_.empty() ? tracks_.take(line) : std::move(only_track_);
    info.pieces = straight_pieces(track);
    info.length_m = length_of_pieces(track, info.pieces);
    // A piece ends where the next one begins, also where only some of the stations were kept.
    long next = 0;
    for (LinePiece& piece : info.pieces) {
        piece.first = next;
        piece.last = tracks_.station_of(line, static_cast<std::size_t>(piece.last));
        next = piece.last + 1;
    }
    info.track = thinned_track(track, most_map_points);
}

SurveyIndex IndexPass::finish() {
    index_.coordinate_system = places_.system();
    finish_digests();
    for (std::size_t line = 0; line < index_.lines.size(); ++line) {
        SurveyLineInfo& info = index_.lines[line];
        const double share =
            static_cast<double>(info.stations) / static_cast<double>(std::max(index_.rows, 1L));
        const auto most = static_cast<std::size_t>(share * static_cast<double>(map_points));
        take_shape(line, info, std::max<std::size_t>(most, 2));
    }
    return std::move(index_);
}

/// What stands in the way of every row has the first words.
std::string no_rows_text(const SurveyLayout& layout, const std::vector<RowLoss>& losses) {
    std::string text = file_name(layout.path) + " has no row with a place";
    const RowLoss* most = nullptr;
    for (const RowLoss& loss : losses)
        if (!most || loss.count > most->count) most = &loss;
    if (!most) return text;
    text += ": line " + std::to_string(most->first_line);
    if (!most->column.empty()) text += ", column \"" + most->column + "\"";
    return text + ": " + most->why;
}

}  // namespace

SurveyIndex index_survey(const SurveyLayout& layout, const CoordinateChoice& coordinates, Pacer& pacer) {
    const FileStamp stamp = stamp_file(layout.path, StampDepth::times);
    PlaceWay way = place_way(layout, coordinates);
    const auto pass = [&](const std::vector<long>& line_ends) {
        auto done = std::make_unique<IndexPass>(layout, way, line_ends);
        done->read(pacer);
        return done;
    };
    auto indexed = pass({});
    if (const std::string zone = indexed->other_zone(); !zone.empty()) {
        way.to = zone;
        way.zone_open = false;
        indexed = pass({});
    }
    const bool named = layout.column_of(Role::line) || layout.line_headers;
    if (!named)
        if (const std::vector<long> ends = indexed->line_ends(); ends.size() > 1) indexed = pass(ends);
    SurveyIndex index = indexed->finish();
    refuse_changed_survey(layout.path, stamp);
    if (index.rows == 0) throw Fault(no_rows_text(layout, index.losses));
    index.stamp = stamp;
    return index;
}

}  // namespace anomalis::intake
