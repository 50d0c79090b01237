#include "model/paced_rows.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "core/shared_pieces.h"
#include "core/workspace.h"
#include "core/zero_values.h"
#include "filter/filters.h"
#include "forward/body_price.h"
#include "model/regional.h"

namespace anomalis::model {

namespace {

bool sum_stands(const Channel& channel, const Workspace& workspace) {
    return channel.calculated_filtered &&
           channel.summed.size() == static_cast<std::size_t>(workspace.body_count);
}

bool has_channel(const Workspace& workspace, int code) {
    return code == channel_mag ? workspace.has_mag() : workspace.has_grav();
}

/// The tables of a channel stand aside while the rest of it is copied.
class TablesAside {
  public:
    explicit TablesAside(Channel& channel)
        : channel_(channel), data_(std::exchange(channel.data, {})), work_(std::exchange(channel.work, {})) {}
    ~TablesAside() {
        channel_.data = std::move(data_);
        channel_.work = std::move(work_);
    }
    TablesAside(const TablesAside&) = delete;
    TablesAside& operator=(const TablesAside&) = delete;

  private:
    Channel& channel_;
    ChannelTable data_, work_;
};

/// The rows of a channel that a calculation writes, and all else of it but its tables.
class KeptChannel {
  public:
    KeptChannel(Workspace& workspace, int code) : channel_(workspace.channel(code)) {
        const bool present = has_channel(workspace, code);
        // Without a body the calculated rows of both channels become 0.
        if (present || workspace.body_count <= 0)
            for (int row = row_raw; row <= row_total_gradient; ++row)
                rows_.push_back({row, stage_calculated});
        if (present && !channel_.observed_filtered) {
            for (int row = row_smoothed; row <= row_total_gradient; ++row)
                rows_.push_back({row, stage_observed});
        } else if (regional_in_force(workspace, code)) {
            rows_.push_back({workspace.residual_row, stage_observed});
        }
        copy_rows();
        const TablesAside aside(channel_);
        rest_ = channel_;
    }

    void put_back() {
        {
            const TablesAside aside(channel_);
            channel_ = std::move(rest_);
        }
        for (const KeptRow& kept : rows_) {
            const std::span<float> row = channel_.data.row(kept.row, kept.stage);
            if (kept.values.empty()) make_zero(row);
            std::ranges::copy(kept.values, row.begin());
        }
    }

  private:
    struct KeptRow {
        int row;
        Stage stage;
        std::vector<float> values = {};  ///< none for a row that is 0
    };

    /// A row is a piece: what takes long is that the system gives the memory.
    void copy_rows() {
        constexpr double copied = 1.5;  // nanoseconds a value
        const double work = copied * static_cast<double>(rows_.size()) * channel_.data.stations();
        for_each_piece(rows_.size(), worker_count(work, rows_.size()), no_pace(),
                       [&](PieceWorker&, std::size_t piece) {
                           KeptRow& kept = rows_[piece];
                           const auto row = std::as_const(channel_.data).row(kept.row, kept.stage);
                           if (!all_clear(row)) kept.values.assign(row.begin(), row.end());
                       });
    }

    Channel& channel_;
    std::vector<KeptRow> rows_;
    Channel rest_;
};

}  // namespace

double filter_work_ahead(const Workspace& workspace) {
    if (workspace.station_count <= 0) return 0;
    const bool responses = forward::work_ahead(workspace) > 0;
    int chains = 0;
    const auto count = [&](bool present, const Channel& channel) {
        if (!present) return;
        chains += channel.observed_filtered ? 0 : 1;
        chains += sum_stands(channel, workspace) && !responses ? 0 : 1;
    };
    count(workspace.has_mag(), workspace.mag);
    count(workspace.has_grav(), workspace.grav);
    return chains * filter::chain_work(workspace);
}

void with_rows_kept(Workspace& workspace, Pacer& pacer, const std::function<void(Pacer& filters)>& work) {
    if (filter_work_ahead(workspace) < TurnPacer::usual_turn) return work(no_pace());
    KeptChannel mag(workspace, channel_mag), grav(workspace, channel_grav);
    try {
        work(pacer);
    } catch (const Stopped&) {
        mag.put_back();
        grav.put_back();
        throw;
    }
}

}  // namespace anomalis::model
