#pragma once
// The desktop's event loop in miniature, for tests of jobs that run under the background
// processing: posts queue up and are delivered in order, and the progress panel, the host
// and the job talk only through it.

#include "sonic/BackgroundProcess.h"

#include <deque>
#include <functional>
#include <vector>

namespace ba::test {

class MessageLoop final : public IProgressPoster, public CProgressPanel::IHostPoster {
public:
    MessageLoop() : panel(*this) {}

    bool PanelShowing() const override { return panel.IsOpen(); }
    void PostProgress(int percent) override
    {
        Post(Kind::Progress, [this, percent] {
            progress.push_back(percent);
            panel.OnProgress(percent);
        });
    }
    void PostFinished() override
    {
        Post(Kind::Finished, [this] {
            ++finished;
            panel.OnFinished();
        });
    }
    void PostStopRequest() override
    {
        ++stopRequests;
        Post(Kind::StopRequest, [this] { host.OnStopRequest(); });
    }
    void PostReady() override
    {
        Post(Kind::Ready, [this] { host.OnReady(StopRequestWaiting()); });
    }

    // Delivers messages until none is left, calling `between` before each.
    void Run(const std::function<void()>& between = {})
    {
        while (!queue.empty()) {
            if (between) between();
            const auto message = std::move(queue.front());
            queue.pop_front();
            message.deliver();
        }
    }

    CProgressPanel panel;
    CProcessHost host;
    std::vector<int> progress; // as the panel received them
    int finished = 0;
    int stopRequests = 0;

private:
    enum class Kind { Progress, Finished, StopRequest, Ready };
    struct Posted {
        Kind kind;
        std::function<void()> deliver;
    };
    void Post(Kind kind, std::function<void()> deliver) { queue.push_back({kind, std::move(deliver)}); }
    bool StopRequestWaiting() const
    {
        for (const Posted& p : queue) {
            if (p.kind == Kind::StopRequest) return true;
        }
        return false;
    }
    std::deque<Posted> queue;
};

} // namespace ba::test
