#include "intake/formats/formats.h"
#include "intake/formats/free_table.h"
#include "intake/formats/table_reader.h"

namespace anomalis::intake {

namespace {

/// Any table of numbers as text: separated or at fixed places, with names of its columns or without.
class TextTable : public SurveyFormat {
  public:
    std::string_view name() const override { return "Text table"; }
    std::optional<SurveyLayout> recognise(const SurveySample& sample) const override {
        return recognise_free_table(sample, false, name());
    }
    std::unique_ptr<RowReader> open(const SurveyLayout& layout,
                                    std::span<const std::size_t> wanted) const override {
        return open_table(layout, wanted, table_sorter(layout));
    }
    SurveyPreview preview(const SurveyLayout& layout, std::size_t most) const override {
        return preview_table(layout, most, *table_sorter(layout));
    }
};

}  // namespace

const SurveyFormat& text_table_format() {
    static const TextTable format;
    return format;
}

}  // namespace anomalis::intake
