#include "live/History.h"

#include "live/LiveReading.h"

namespace cimhttp {

History::History(std::chrono::steady_clock::duration interval) : held_(interval / kSpan + 1) {}

void History::AddTo(Series& series, std::int64_t span, double number) {
    const bool isFirst = series.means[PlaceOf(series.newest)].count == 0;
    if (isFirst || span - series.newest >= static_cast<std::int64_t>(kSpans)) {
        series.means.fill({});
    } else {
        for (std::int64_t skipped = series.newest + 1; skipped <= span; ++skipped) {
            series.means[PlaceOf(skipped)] = {};
        }
    }
    series.newest = span;
    Mean& mean = series.means[PlaceOf(span)];
    ++mean.count;
    mean.value += (static_cast<float>(number) - mean.value) / static_cast<float>(mean.count);
}

void History::Add(const LiveReading& reading) {
    newest_ = SpanOf(reading.time);
    std::unordered_map<std::string, Instance> kept;
    kept.reserve(reading.rows.size());
    for (const LiveRow& row : reading.rows) {
        const auto known = instances_.find(row.path);
        Instance& instance = kept[row.path];
        if (known != instances_.end()) {
            instance = std::move(known->second);
            instances_.erase(known);
        }
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            if (row.cells[i].number) {
                AddTo(instance[reading.columns[i].name], newest_, *row.cells[i].number);
            }
        }
    }
    instances_ = std::move(kept);
}

History::Means History::Of(const std::string& path, const std::string& column) const {
    Means means;
    const auto instance = instances_.find(path);
    if (instance == instances_.end()) {
        return means;
    }
    const auto found = instance->second.find(column);
    if (found == instance->second.end()) {
        return means;
    }
    const Series& series = found->second;
    std::optional<double> last;
    std::int64_t age = 0;
    for (std::size_t i = 0; i < kSpans; ++i) {
        const std::int64_t span = newest_ - static_cast<std::int64_t>(kSpans - 1 - i);
        const bool isKnown = span <= series.newest && span > series.newest - static_cast<std::int64_t>(kSpans);
        const Mean mean = isKnown ? series.means[PlaceOf(span)] : Mean();
        if (mean.count > 0) {
            last = mean.value;
            age = 0;
        } else if (++age > held_) {
            last.reset();
        }
        means[i] = last;
    }
    return means;
}

} // namespace cimhttp
