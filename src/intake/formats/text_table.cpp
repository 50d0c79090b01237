#include "intake/formats/formats.h"
#include "intake/formats/free_table.h"

namespace anomalis::intake {

namespace {

/// Any table of numbers as text: separated or at fixed places, with names of its columns or without.
class TextTable : public FreeTableFormat {
  public:
    std::string_view name() const override { return "Text table"; }
    std::optional<SurveyLayout> recognise(const SurveySample& sample) const override {
        return recognise_free_table(sample, false, name());
    }
};

}  // namespace

const SurveyFormat& text_table_format() {
    static const TextTable format;
    return format;
}

}  // namespace anomalis::intake
