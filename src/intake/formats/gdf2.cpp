#include <utility>

#include "intake/formats/column_heads.h"
#include "intake/formats/formats.h"
#include "intake/formats/gdf2_definition.h"
#include "intake/formats/gdf2_rows.h"
#include "intake/formats/table_reader.h"
#include "intake/formats/text_head.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t longest_definition = 20000;  // lines

Gdf2Definition definition_of(const std::string& path) {
    return parse_gdf2_definition(read_head(path, longest_definition).lines, path);
}

class Gdf2Sorter : public RowSorter {
  public:
    Gdf2Sorter(Gdf2Definition definition, bool typed) : definition_(std::move(definition)), typed_(typed) {}

    RowUse use_of(std::string_view line) const override { return gdf2_row_use(definition_, typed_, line); }

  private:
    Gdf2Definition definition_;
    bool typed_;
};

class Gdf2 : public SurveyFormat {
  public:
    std::string_view name() const override { return "ASEG-GDF2"; }

    std::optional<SurveyLayout> recognise(const SurveySample& sample) const override {
        if (sample.definition_path.empty()) return {};
        const Gdf2Definition definition = definition_of(sample.definition_path);
        SurveyLayout layout;
        layout.path = sample.path;
        layout.definition_path = sample.definition_path;
        layout.format = name();
        layout.encoding = sample.encoding;
        layout.packed = sample.packed;
        if (!fit_gdf2_rows(definition, sample, layout)) return {};
        tell_names_apart(layout);
        return layout;
    }

    std::unique_ptr<RowReader> open(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                    const FileStretch* stretch) const override {
        return open_table(layout, wanted, sorter(layout), stretch);
    }
    SurveyPreview preview(const SurveyLayout& layout, std::size_t most) const override {
        return preview_table(layout, most, *sorter(layout));
    }

  private:
    static std::unique_ptr<RowSorter> sorter(const SurveyLayout& layout) {
        return std::make_unique<Gdf2Sorter>(definition_of(layout.definition_path),
                                            !layout.record_type.empty());
    }
};

}  // namespace

const SurveyFormat& gdf2_format() {
    static const Gdf2 format;
    return format;
}

}  // namespace anomalis::intake
