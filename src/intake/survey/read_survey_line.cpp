#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "intake/survey/line_gathering.h"
#include "intake/survey/survey_index.h"
#include "intake/survey/survey_stamp.h"

namespace anomalis::intake {

namespace {

/// Which line of an index a row belongs to.
class LineOfRow {
  public:
    explicit LineOfRow(const SurveyIndex& index) : index_(index) {}

    std::size_t operator()(const RowBlock& block, std::size_t row) const {
        if (!index_.split_by_place) return static_cast<std::size_t>(block.line[row]);
        const auto line =
            std::ranges::lower_bound(index_.lines, block.file_line[row], {}, &SurveyLineInfo::last_file_line);
        return static_cast<std::size_t>(line - index_.lines.begin());
    }

  private:
    const SurveyIndex& index_;
};

/// Hands on blocks of rows and tells of the work.
class PacedRows {
  public:
    PacedRows(const SurveyLayout& layout, const LineGathering& gathering, Pacer& pacer,
              const FileStretch* stretch = nullptr)
        : reader_(open_rows(layout, gathering.columns(), stretch)), pacer_(pacer) {}

    bool next(RowBlock& block) {
        const bool more = reader_->next(block);
        pacer_.done(reader_->bytes_read() - told_);
        told_ = reader_->bytes_read();
        return more;
    }
    std::span<const std::string> line_names() const { return reader_->line_names(); }

  private:
    std::unique_ptr<RowReader> reader_;
    Pacer& pacer_;
    double told_ = 0;
};

/// All lines of a file, each handed on when its last row was read.
class ReadingAll {
  public:
    ReadingAll(const SurveyIndex& index, LineTaker& taker)
        : index_(index), taker_(taker), gathering_(index), line_of_(index) {}

    const LineGathering& gathering() const { return gathering_; }
    void take(const RowBlock& block);
    /// Lines that somebody wrote on to since the file was indexed are not handed on.
    void hand_on(long read_to);

  private:
    const SurveyIndex& index_;
    LineTaker& taker_;
    LineGathering gathering_;
    LineOfRow line_of_;
    std::map<std::size_t, GatheredLine> open_;
};

void ReadingAll::take(const RowBlock& block) {
    GatheredLine* line = nullptr;
    std::size_t number = 0;
    for (std::size_t row = 0; row < block.rows; ++row) {
        const std::size_t now = line_of_(block, row);
        if (now >= index_.lines.size()) continue;
        if (!line || now != number) {
            line = &open_[now];
            number = now;
        }
        gathering_.take(block, row, *line);
    }
    if (block.rows > 0) hand_on(block.file_line[block.rows - 1]);
}

void ReadingAll::hand_on(long read_to) {
    for (auto line = open_.begin(); line != open_.end();) {
        if (index_.lines[line->first].last_file_line > read_to) {
            ++line;
            continue;
        }
        const std::size_t number = line->first;
        GatheredLine rows = std::move(line->second);
        line = open_.erase(line);
        if (index_.lines[number].stations > 0)
            taker_.take(number, gathering_.finish(number, std::move(rows)));
    }
}

/// The rows of one line, up to its last one.
void gather_rows(const SurveyIndex& index, std::size_t line, const LineGathering& gathering, PacedRows& rows,
                 GatheredLine& gathered) {
    const SurveyLineInfo& info = index.lines[line];
    const LineOfRow line_of(index);
    RowBlock block;
    long read_to = 0;
    while (read_to < info.last_file_line && rows.next(block)) {
        for (std::size_t row = 0; row < block.rows; ++row)
            if (index.split_by_place
                    ? line_of(block, row) == line
                    : rows.line_names()[static_cast<std::size_t>(block.line[row])] == info.name)
                gathering.take(block, row, gathered);
        if (block.rows > 0) read_to = block.file_line[block.rows - 1];
    }
}

}  // namespace

SurveyLine read_survey_line(const SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece,
                            Pacer& pacer) {
    const SurveyLineInfo& info = index.lines.at(line);
    if (piece && *piece >= info.pieces.size())
        throw Fault("Line " + info.name + " has " + std::to_string(info.pieces.size()) +
                    " pieces, and no piece " + std::to_string(*piece + 1));
    refuse_changed_survey(index.layout.path, index.stamp);
    LineGathering gathering(index);
    GatheredLine gathered;
    if (info.stretches.empty()) {
        // Rows before the line are not looked at; so lines count from it here, and are known by their names.
        SurveyLayout from_line = index.layout;
        from_line.first_row = std::max(from_line.first_row, info.first_file_line);
        PacedRows rows(from_line, gathering, pacer);
        gather_rows(index, line, gathering, rows, gathered);
    }
    for (const FileStretch& stretch : info.stretches) {
        PacedRows rows(index.layout, gathering, pacer, &stretch);
        gather_rows(index, line, gathering, rows, gathered);
    }
    SurveyLine read = gathering.finish(line, std::move(gathered));
    return piece ? piece_of(std::move(read), info.pieces[*piece]) : read;
}

void read_survey_lines(const SurveyIndex& index, LineTaker& taker, Pacer& pacer) {
    refuse_changed_survey(index.layout.path, index.stamp);
    ReadingAll reading(index, taker);
    PacedRows rows(index.layout, reading.gathering(), pacer);
    RowBlock block;
    while (rows.next(block)) reading.take(block);
    refuse_changed_survey(index.layout.path, index.stamp);
}

}  // namespace anomalis::intake
