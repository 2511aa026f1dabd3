#include "sonic/BackgroundProcess.h"

#include "numeric/ParallelParts.h"

#include <algorithm>

namespace ba {

int ProgressPercent(std::size_t done, std::size_t count)
{
    if (count == 0) return 100;
    return static_cast<int>(static_cast<double>(done) * 100.0 / static_cast<double>(count));
}

void CProcess::DoNextStep()
{
    if (m_finished) return;
    const std::size_t count = StationCount();
    if (m_done < count) {
        ComputeStation(m_done);
        ++m_done;
    }
    const bool showing = m_poster != nullptr && m_poster->PanelShowing();
    if (m_done < count && m_stop == 0 && showing) {
        m_poster->PostProgress(ProgressPercent(m_done, count));
        return;
    }
    Complete();
}

void CProcess::Complete()
{
    if (m_finished) return;
    m_stop = 1;
    m_finished = true;
    if (m_poster != nullptr && m_poster->PanelShowing()) {
        // A full bar before the dialog closes, when every station was computed.
        if (m_done == StationCount()) m_poster->PostProgress(100);
        m_poster->PostFinished();
    }
    Finish(m_done);
}

bool CProcessHost::Start(CProcess& job, IProgressPoster& poster)
{
    if (m_job != nullptr) return false;
    m_job = &job;
    job.Attach(poster);
    poster.PostProgress(0);
    return true;
}

void CProcessHost::OnStopRequest()
{
    if (m_job != nullptr) m_job->RequestStop();
}

void CProcessHost::OnReady(bool stopRequestWaiting)
{
    if (m_job == nullptr) return;
    if (stopRequestWaiting) m_job->RequestStop();
    CProcess& job = *m_job;
    job.DoNextStep();
    if (job.Finished()) m_job = nullptr;
}

void CProgressPanel::Open()
{
    m_open = true;
    m_stopping = false;
    m_percent = 0;
    m_status = std::string(kProgressStatusText);
}

void CProgressPanel::OnProgress(int percent)
{
    if (m_open) m_percent = std::clamp(percent, 0, 100);
    m_host.PostReady();
}

bool CProgressPanel::PressStop()
{
    if (!m_open || m_stopping) return false;
    m_host.PostStopRequest();
    m_stopping = true;
    m_status = std::string(kProgressStoppingText);
    return true;
}

void RunWithoutPanel(CProcess& job, unsigned threads)
{
    const std::size_t count = job.StationCount();
    if (threads > 1 && job.StationsIndependent() && count > 1) {
        // Stations in chunks, handed out as threads come free; each writes only its own
        // outputs, so the order does not show in the results.
        constexpr std::size_t kStationsPerChunk = 16;
        numeric::ForEachChunk(count, kStationsPerChunk, std::min<std::size_t>(threads, count),
                              [&job](std::size_t, std::size_t begin, std::size_t end) {
                                  for (std::size_t i = begin; i < end; ++i) job.ComputeStation(i);
                              });
        job.MarkComputed(count);
        job.Complete();
        return;
    }
    for (std::size_t i = job.StationsDone(); i < count && job.StopFlag() == 0; ++i) {
        job.ComputeStation(i);
        job.MarkComputed(i + 1);
    }
    job.Complete();
}

} // namespace ba
