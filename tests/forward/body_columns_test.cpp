#include "forward/body_columns.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <thread>

#include "core/body_parameters.h"
#include "exact/exact_line.h"
#include "support/response_values.h"

namespace anomalis::forward {
namespace {

/// What a fit would do with body 1 of a line: its own copy, its own bench.
struct Asker {
    explicit Asker(Line& line, int body = 1)
        : workspace(line.workspace), copy(line.body(body)), range{1, workspace.station_count} {}

    std::vector<double> values(int channel) {
        std::vector<double> out(range.count(), 1e30);
        body_values(workspace, copy, channel, range, bench, out, notes);
        return out;
    }
    std::vector<double> columns(int channel, std::span<const int> codes,
                                std::vector<double>* value = nullptr) {
        std::vector<double> out(range.count() * codes.size(), 1e30), at(range.count(), 1e30);
        body_columns(workspace, copy, channel, range, bench, codes, at, out, notes);
        if (value) *value = at;
        return out;
    }

    const Workspace& workspace;
    ModelBody copy;
    StationRange range;
    BodyBench bench;
    ExactNotes exact;
    Faults faults;
    BodyNotes notes{1, exact, faults};
};

std::vector<int> all_codes() {
    std::vector<int> codes;
    for (const BodyParameter& row : body_parameters()) codes.push_back(row.code);
    return codes;
}

std::vector<std::string> bare_texts(const Faults& faults) {
    std::vector<std::string> texts;
    for (const Faults::Entry& entry : faults.entries()) texts.push_back(entry.text);
    return texts;
}

/// With the classic formulas a sphere takes its strike from the profile, which counts from the next time on.
void add_settled(Line& line, const BodySample& sample, double distance = 470) {
    ModelBody& body = add_sample(line, sample, distance);
    if (sample.type == sphere) body.strike.value = static_cast<float>(line.workspace.azimuth + 90.0);
}

std::vector<double> part(const std::vector<double>& whole, const StationRange& range) {
    return {whole.begin() + range.first - 1, whole.begin() + range.last};
}

TEST(BodyValues, those_of_the_exact_formulas_are_the_exact_curve_bit_for_bit) {
    for (const BodySample& sample : body_samples) {
        ExactLine line(53);
        add_sample(line, sample);
        Asker asker(line);
        EXPECT_EQ(asker.values(channel_mag), line.curve(Curve::magnetic)) << sample.name;
        EXPECT_EQ(asker.values(channel_grav), line.curve(Curve::gravity)) << sample.name;
        EXPECT_TRUE(asker.faults.empty()) << sample.name;
    }
}

TEST(BodyValues, those_of_the_classic_formulas_are_the_response_in_single_precision) {
    for (const BodySample& sample : body_samples) {
        Line line(53, 10, 30, 60);
        add_settled(line, sample);
        Asker asker(line);  // what the edges told once, both must tell
        const std::vector<double> mag = line.response(1), grav = line.response(2);
        EXPECT_EQ(asker.values(channel_mag), mag) << sample.name;
        EXPECT_EQ(asker.values(channel_grav), grav) << sample.name;
        EXPECT_EQ(bare_texts(asker.faults), bare_texts(line.faults)) << sample.name;
    }
}

TEST(BodyValues, a_stretch_of_stations_is_that_stretch_of_the_line) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic})
        for (const BodySample& sample : body_samples) {
            ExactLine line(53);
            line.workspace.formulas = formulas;
            add_sample(line, sample);
            Asker whole(line), some(line);
            some.range = {12, 38};
            for (const int channel : {channel_mag, channel_grav}) {
                const std::vector<double> expected = part(whole.values(channel), some.range);
                EXPECT_LE(largest_difference(some.values(channel), expected), 1e-12 * peak_of(expected))
                    << sample.name;
            }
        }
}

TEST(BodyValues, the_workspace_its_bodies_and_the_table_of_the_copy_stay) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(20);
        line.workspace.formulas = formulas;
        add_sample(line, body_samples[5]);
        Asker asker(line);
        asker.copy.response(3, 1) = 77;
        asker.columns(channel_mag, all_codes());
        EXPECT_EQ(asker.copy.response(3, 1), 77);
        EXPECT_EQ(asker.copy.response.rows(), 20);
        for (const float value : all_values(line.body().response)) EXPECT_EQ(value, 0);
        for (const BodyParameter& row : body_parameters())
            EXPECT_EQ((asker.copy.*row.slot).value, (line.body().*row.slot).value) << row.name;
    }
}

TEST(BodyValues, a_body_that_is_off_gives_zeros_and_columns_of_zeros) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(20);
        line.workspace.formulas = formulas;
        add_sample(line, body_samples[1]).turned_off = 1;
        Asker asker(line);
        std::vector<double> values;
        EXPECT_EQ(peak_of(asker.columns(channel_mag, all_codes(), &values)), 0);
        EXPECT_EQ(peak_of(values), 0);
    }
}

TEST(BodyValues, a_body_that_is_no_number_counts_as_zero_and_is_named) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(20);
        line.workspace.formulas = formulas;
        add_sample(line, body_samples[1]).width.value = std::numeric_limits<float>::quiet_NaN();
        line.response(1);
        Asker asker(line);
        std::vector<double> values;
        EXPECT_EQ(peak_of(asker.columns(channel_mag, all_codes(), &values)), 0);
        EXPECT_EQ(peak_of(values), 0);
        asker.columns(channel_grav, all_codes(), &values);
        EXPECT_EQ(peak_of(values), 0);
        EXPECT_EQ(bare_texts(asker.faults), bare_texts(line.faults));
        EXPECT_FALSE(asker.faults.empty());
    }
}

TEST(BodyValues, a_body_of_another_number_is_named_by_it) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(20);
        line.workspace.formulas = formulas;
        for (int i = 0; i < 3; ++i) add_sample(line, body_samples[1]);
        line.body(3).width.value = std::numeric_limits<float>::quiet_NaN();
        Asker asker(line, 3);
        asker.notes.body_number = 3;
        asker.values(channel_mag);
        ASSERT_EQ(texts_of(asker.faults).size(), 1U);
        EXPECT_NE(texts_of(asker.faults)[0].find("body 3, Body 3"), std::string::npos);
    }
}

TEST(BodyValues, a_range_that_the_line_does_not_hold_is_refused) {
    ExactLine line(20);
    add_sample(line, body_samples[1]);
    for (const StationRange range : {StationRange{0, 5}, StationRange{3, 21}}) {
        Asker asker(line);
        asker.range = range;
        EXPECT_THROW(asker.values(channel_mag), Fault);
    }
    Asker asker(line);
    std::vector<double> values(20), columns(7);
    const int codes[] = {param_top};
    EXPECT_THROW(body_columns(line.workspace, asker.copy, channel_mag, asker.range, asker.bench, codes,
                              values, columns, asker.notes),
                 Fault);
}

TEST(BodyValues, one_bench_serves_lines_and_bodies_of_any_kind_in_turn) {
    BodyBench bench;
    for (const int stations : {31, 12, 31})
        for (const Formulas formulas : {Formulas::classic, Formulas::exact})
            for (const BodySample& sample : body_samples) {
                ExactLine line(stations, 7 + stations);
                line.workspace.formulas = formulas;
                add_settled(line, sample, 200);
                Asker asker(line);
                std::vector<double> values(asker.range.count());
                body_values(line.workspace, asker.copy, channel_mag, asker.range, bench, values, asker.notes);
                EXPECT_EQ(values, asker.values(channel_mag)) << sample.name;
            }
}

TEST(BodyValues, threads_with_a_bench_each_find_the_same) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(40);
        line.workspace.formulas = formulas;
        add_sample(line, body_samples[1]);
        Asker first(line), second(line);
        std::vector<double> one, other;
        {
            std::jthread a([&] { one = first.columns(channel_mag, all_codes()); });
            std::jthread b([&] { other = second.columns(channel_mag, all_codes()); });
        }
        EXPECT_EQ(one, other);
        EXPECT_GT(peak_of(one), 0);
    }
}

/// The columns against plain central differences of the values.
TEST(BodyColumns, are_the_slopes_of_the_values) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic})
        for (const BodySample& sample : body_samples) {
            ExactLine line(41);
            line.workspace.formulas = formulas;
            add_settled(line, sample, 203);
            Asker asker(line);
            const std::vector<int> codes = all_codes();
            for (const int channel : {channel_mag, channel_grav}) {
                std::vector<double> values;
                const std::vector<double> columns = asker.columns(channel, codes, &values);
                EXPECT_EQ(values, asker.values(channel));
                for (std::size_t k = 0; k < codes.size(); ++k) {
                    BodyParam& param = body_param(asker.copy, codes[k]);
                    const float kept = param.value;
                    if (kept == 0 && (codes[k] == param_length || codes[k] == param_depth_extent)) continue;
                    const float step = codes[k] == param_susc ? 64 : 1.0F / 64;
                    param.value = kept + step;
                    const std::vector<double> ahead = asker.values(channel);
                    param.value = kept - step;
                    const std::vector<double> behind = asker.values(channel);
                    param.value = kept;
                    const std::vector<double> slope = times(minus(ahead, behind), 0.5 / step);
                    const auto from = columns.begin() + static_cast<std::ptrdiff_t>(k * values.size());
                    const std::vector<double> column(from, from + static_cast<std::ptrdiff_t>(values.size()));
                    const double tolerance = formulas == Formulas::exact ? 1e-5 : 3e-2;
                    const double rounding = (formulas == Formulas::exact ? 1e-10 : 1e-5) * peak_of(values);
                    EXPECT_LE(largest_difference(column, slope),
                              tolerance * peak_of(slope) + rounding + 1e-11)
                        << sample.name << ' ' << param_name(codes[k]) << " channel " << channel;
                }
            }
        }
}

TEST(BodyColumns, are_the_same_where_the_values_are_not_asked_for) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic})
        for (const BodySample& sample : body_samples) {
            ExactLine line(30);
            line.workspace.formulas = formulas;
            add_settled(line, sample, 200);
            const std::vector<int> codes = all_codes();
            Asker asker(line), other(line);
            std::vector<double> columns(asker.range.count() * codes.size());
            body_columns(line.workspace, asker.copy, channel_mag, asker.range, asker.bench, codes, {},
                         columns, asker.notes);
            EXPECT_EQ(columns, other.columns(channel_mag, codes)) << sample.name;
        }
}

TEST(BodyColumns, are_numbers_for_any_numbers) {
    constexpr float odd[] = {0,
                             1e-30F,
                             -1e-3F,
                             1,
                             45,
                             90,
                             -90,
                             180,
                             1e-3F,
                             360,
                             1e6F,
                             -1e6F,
                             1e30F,
                             -1e30F,
                             std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()};
    std::mt19937 dice(50);
    const std::vector<int> codes = all_codes();
    for (const Formulas formulas : {Formulas::exact, Formulas::classic})
        for (int turn = 0; turn < 300; ++turn) {
            ExactLine line(7);
            line.workspace.formulas = formulas;
            ModelBody& body = add_sample(line, body_samples[dice() % body_samples.size()], 30);
            if (dice() % 10 == 0) body.type = wire;
            if (dice() % 10 == 0) body.type = polygon;
            body.include_demagnetisation = dice() % 8 == 0 ? 1 : 0;
            for (int changes = 0; changes < 3; ++changes)
                body_param(body, codes[dice() % codes.size()]).value = odd[dice() % std::size(odd)];
            Asker asker(line);
            for (const int channel : {channel_mag, channel_grav})
                for (const double slope : asker.columns(channel, codes)) ASSERT_TRUE(std::isfinite(slope));
        }
}

TEST(BodyColumns, no_end_has_no_slope) {
    ExactLine line(41);
    add_sample(line, body_samples[0]);
    Asker asker(line);
    const int codes[] = {param_depth_extent, param_length};
    EXPECT_EQ(peak_of(asker.columns(channel_mag, codes)), 0);
}

TEST(BodyColumns, all_but_pipes_have_them_in_closed_form_with_the_exact_formulas) {
    for (const BodySample& sample : body_samples) {
        ExactLine line(3);
        const ModelBody& body = add_sample(line, sample);
        EXPECT_EQ(has_derivative(line.workspace, body, channel_mag, param_distance), sample.type != pipe)
            << sample.name;
        EXPECT_TRUE(has_derivative(line.workspace, body, channel_mag, param_susc)) << sample.name;
        EXPECT_TRUE(has_derivative(line.workspace, body, channel_grav, param_density)) << sample.name;
    }
    Line classic(3);
    const ModelBody& body = add_sample(classic, body_samples[1]);
    EXPECT_FALSE(has_derivative(classic.workspace, body, channel_mag, param_distance));
    EXPECT_TRUE(has_derivative(classic.workspace, body, channel_mag, param_susc));
}

/// What a calculation tells a pacer of its work.
class CountingPacer : public Pacer {
  public:
    void done(double units) override { units_ += units; }
    double units() const { return units_; }

  private:
    double units_ = 0;
};

TEST(BodyColumns, of_an_amplitude_cost_no_calculation_but_that_of_the_values) {
    ExactLine line(200);
    add_sample(line, body_samples[7]);  // a pipe
    const auto work_of = [&](std::span<const int> codes) {
        CountingPacer pacer;
        Asker asker(line);
        BodyNotes notes{1, asker.exact, asker.faults, pacer};
        std::vector<double> values(200), columns(200 * codes.size());
        body_columns(line.workspace, asker.copy, channel_mag, asker.range, asker.bench, codes, values,
                     columns, notes);
        return pacer.units();
    };
    const int amplitude[] = {param_susc}, other_channel[] = {param_density}, shape[] = {param_width};
    EXPECT_EQ(work_of(amplitude), work_of({}));
    EXPECT_EQ(work_of(other_channel), work_of({}));
    EXPECT_GT(work_of(shape), 2.5 * work_of({}));
}

TEST(BodyColumns, an_amplitude_of_zero_has_a_slope) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        ExactLine line(41);
        line.workspace.formulas = formulas;
        ModelBody& body = add_sample(line, body_samples[7]);
        body.susc.value = body.density.value = 0;
        const int susc[] = {param_susc}, density[] = {param_density};
        Asker asker(line);
        EXPECT_GT(peak_of(asker.columns(channel_mag, susc)), 0);
        EXPECT_GT(peak_of(asker.columns(channel_grav, density)), 0);
    }
}

}  // namespace
}  // namespace anomalis::forward
