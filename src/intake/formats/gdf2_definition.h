#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "intake/formats/survey_layout.h"

// The definition file of an ASEG-GDF2 survey (Pratt 2003, "ASEG-GDF2 A standard for point located data
// exchange", draft 4): lines "DEFN n ST=RECD,RT=type; NAME:format:attributes".
namespace anomalis::intake {

enum class Gdf2Kind { text, whole, number };

/// One field of a record.
struct Gdf2Field {
    std::string name;
    Gdf2Kind kind = Gdf2Kind::number;
    std::size_t width = 0;  ///< bytes
    std::string unit, long_name, comment;
    std::vector<double> nulls;

    bool operator==(const Gdf2Field&) const = default;
};

struct Gdf2Record {
    std::string type;         ///< "COMM", "DATA"; "" for the one without a name
    bool type_field = false;  ///< rows begin with the type, RT:A4
    std::size_t type_width = 0;
    std::vector<Gdf2Field> fields;  ///< arrays taken apart, without the field of the type
};

struct Gdf2Definition {
    std::vector<Gdf2Record> records;

    const Gdf2Record* find(std::string_view type) const;
    /// The record of the measurements: the one with the most fields that is no comment and no projection.
    const Gdf2Record* data() const;
};

/// Reads the lines of a definition. `path` is for messages. Raises Fault where a line cannot be understood,
/// with its number, and where no record of data is defined.
Gdf2Definition parse_gdf2_definition(std::span<const std::string> lines, const std::string& path);

}  // namespace anomalis::intake
