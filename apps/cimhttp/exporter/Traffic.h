#pragma once

#include "connection/OperationStatistics.h"
#include "exporter/MetricPage.h"

#include <memory>
#include <utility>

namespace cimhttp {

/// What is asked of a server in one scrape, over a connection that is kept for several. Nothing until it begins.
class Traffic {
  public:
    void Begin(std::shared_ptr<const OperationStatistics> statistics) {
        statistics_ = std::move(statistics);
        before_ = statistics_->All();
    }

    OperationStatistics::Totals Since() const {
        if (!statistics_) {
            return {};
        }
        const OperationStatistics::Totals now = statistics_->All();
        return {now.requests - before_.requests, now.sent - before_.sent, now.received - before_.received};
    }

    void WriteTo(MetricPage& page) const {
        const OperationStatistics::Totals since = Since();
        const MetricPage::Family bytes{"cim_bytes", "Bytes of CIM-XML in this scrape"};
        page.AddOwn({"cim_requests", "Requests that the server has answered in this scrape"}, {},
                    static_cast<double>(since.requests));
        page.AddOwn(bytes, {{"direction", "sent"}}, static_cast<double>(since.sent));
        page.AddOwn(bytes, {{"direction", "received"}}, static_cast<double>(since.received));
    }

  private:
    std::shared_ptr<const OperationStatistics> statistics_;
    OperationStatistics::Totals before_;
};

} // namespace cimhttp
