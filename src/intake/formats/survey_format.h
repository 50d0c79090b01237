#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "intake/formats/survey_layout.h"

// One small interface for every format of survey files; a further format is one file that makes one of these.
namespace anomalis::intake {

/// What kept rows of a survey file from being used.
struct RowLoss {
    std::string why;     ///< "a field is missing", "\"abc\" stands where a number is wanted"
    std::string column;  ///< its name; "" where it is about the row
    long count = 0;
    long first_line = 0;  ///< of the file, from 1
};

/// Bytes of a file from one line's begin to another line's end.
struct FileStretch {
    std::int64_t begin = 0, end = 0;
    long first_line = 1;  ///< number of its first line in the file

    bool operator==(const FileStretch&) const = default;
};

/// A stretch of rows, column by column.
struct RowBlock {
    std::size_t rows = 0;
    std::vector<std::vector<double>>
        values;  ///< one a wanted column; NaN where there is no value; units as in the layout said, converted
    std::vector<std::int32_t> line;  ///< index into `RowReader::line_names`; 0 where the file has no lines
    std::vector<long> file_line;     ///< number of the row's line in the file, from 1
    /// Where each row lies, with the header of its line where it is the first one below that. Empty where
    /// nobody can begin in the middle of the file: it is packed, or its bytes are not those of the text.
    std::vector<FileStretch> place;
};

/// Reads the rows of a survey file once, in blocks of bounded memory.
class RowReader {
  public:
    virtual ~RowReader() = default;
    /// The next rows, false at the end. Values are in m, nT, mGal, degrees; nulls are NaN; a date is a
    /// decimal year. Raises FileFault, and Fault with file, line and column.
    virtual bool next(RowBlock& block) = 0;
    /// The lines met so far, in the order of the file; a line that comes again later keeps its index. Never
    /// empty after a row.
    virtual std::span<const std::string> line_names() const = 0;
    /// True for the lines that the file calls ties.
    virtual bool is_tie(std::int32_t line) const = 0;
    virtual std::span<const RowLoss> losses() const = 0;
    /// Bytes of the file that were read so far, for progress.
    virtual double bytes_read() const = 0;
};

/// What a person says of a file against what is recognised; what is left open is recognised.
struct ReadAs {
    std::string format;             ///< a name of `survey_formats`
    std::optional<char> separator;  ///< ' ', '\t', ',' or ';'
    std::optional<bool> decimal_comma;
    std::optional<Encoding> encoding;

    bool operator==(const ReadAs&) const = default;
};

/// The head of a file as text, for recognition: UTF-8, unpacked.
struct SurveySample {
    std::string path;
    std::string definition_path;  ///< for formats of two files
    Encoding encoding = Encoding::utf8;
    bool packed = false;
    std::vector<std::string> lines;  ///< up to a few hundred
    bool whole = false;              ///< these are all
    ReadAs read_as;
};

/// The first rows as they stand, cell by cell, for a preview.
struct SurveyPreview {
    std::vector<std::vector<std::string>> rows;  ///< one cell a column of the layout
    std::vector<long> file_line;
};

class SurveyFormat {
  public:
    virtual ~SurveyFormat() = default;
    virtual std::string_view name() const = 0;
    /// The layout without roles, units and nulls beyond what the file itself says; nothing when it is none of
    /// this format. Raises Fault for a file that is of this format and broken (a .dfn without its .dat).
    virtual std::optional<SurveyLayout> recognise(const SurveySample& sample) const = 0;
    /// `wanted`: indices of columns whose values the blocks get, in this order.
    /// `stretch`: of the file, as the places of rows tell it; null for all of it.
    virtual std::unique_ptr<RowReader> open(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                            const FileStretch* stretch) const = 0;
    /// At most so many rows from the first one on.
    virtual SurveyPreview preview(const SurveyLayout& layout, std::size_t most) const = 0;
};

/// All formats, the most particular first.
std::span<const SurveyFormat* const> survey_formats();

/// Recognises a file: its format, then roles, units and nulls by names and by values. Raises FileFault, or
/// Fault with what is wrong, where, and what to do. `path` may be the .dfn or the .dat of a pair, and either
/// may be packed.
SurveyLayout recognise_survey(const std::string& path, const ReadAs& read_as = {});

/// Opens the rows by the layout's own format: all, or those of a stretch alone, which costs no more bytes.
std::unique_ptr<RowReader> open_rows(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                     const FileStretch* stretch = nullptr);

/// The first rows by the layout's own format, also where a value is missing or no number.
SurveyPreview preview_rows(const SurveyLayout& layout, std::size_t most);

/// Further candidates where several columns could have a role: "Bouguer" and "free air", raw and corrected
/// magnetics. The first is the one that was taken.
struct RoleQuestion {
    Role role = Role::none;
    std::vector<std::size_t> columns;
};
std::vector<RoleQuestion> open_questions(const SurveyLayout& layout);

}  // namespace anomalis::intake
