#include "window/tutorials/truth.h"

#include <stdexcept>

#include "core/body_parameters.h"
#include "surveys.h"

namespace anomalis::tutorials {

double true_value(const QString& example, const QString& name, const QString& caption) {
    std::vector<examples::Survey> all = examples::surveys();
    for (examples::Survey& survey : examples::riddles()) all.push_back(std::move(survey));
    for (examples::Survey& survey : examples::dyke_lines()) all.push_back(std::move(survey));
    for (const examples::Survey& survey : all) {
        if (survey.name != example.toStdString()) continue;
        for (const examples::ExampleBody& each : survey.bodies) {
            ModelBody body;
            each.truth(body);
            if (body.name != name.toStdString()) continue;
            for (const BodyParameter& row : body_parameters())
                if (row.grid.caption.of(body.type) == caption.toStdString())
                    return static_cast<double>((body.*row.slot).value);
        }
    }
    throw std::runtime_error("no truth of " + caption.toStdString() + " of " + name.toStdString() + " in " +
                             example.toStdString());
}

}  // namespace anomalis::tutorials
