#pragma once

#include <string>
#include <string_view>

// Tables as data-frame libraries read them without options.
namespace anomalis::output {

/// Builds a comma-separated table. A text that holds a comma or a quote is quoted; one that a spreadsheet
/// would take for a formula is quoted with an apostrophe in front, which spreadsheets read as "a text
/// follows".
class CsvText {
  public:
    /// The header row.
    void name(std::string_view column) { next() += column; }
    /// The shortest text with a point or an exponent that reads back as the same number; nothing for a value
    /// that is missing.
    void number(double value);
    void number(float value);
    void whole(int value);
    void nothing() { next(); }
    /// On one line and in UTF-8: a byte that belongs to no character of it is taken as Latin-1.
    void words(std::string_view value);
    void end_row();
    const std::string& text() const { return text_; }

  private:
    std::string& next();

    std::string text_;
    bool first_ = true;
};

}  // namespace anomalis::output
