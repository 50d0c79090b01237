#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

// Long texts on their way out piece by piece, so that memory does not grow with them.
namespace anomalis {

/// Takes the next piece of a text. No piece ends within a character.
using TextSink = std::function<void(std::string_view piece)>;

/// Puts a whole text into a sink.
using TextSource = std::function<void(const TextSink& put)>;

/// All of a text at once.
std::string whole_text(const TextSource& source);

/// Rows `first` to `last`, numbered from 1, of a text behind what stands in `text`; called on any thread.
using FormRows = std::function<void(int first, int last, std::string& text)>;

/// Puts `rows` rows into a sink, in their order, in pieces of a few hundred kilobytes that are formed on all
/// cores. `bytes_a_row` is about the length of a row. What a row throws is raised here.
void put_rows(int rows, double bytes_a_row, const FormRows& form, const TextSink& put);

}  // namespace anomalis
