#pragma once
// Long jobs (sonic processing, raw-data import) run a step at a time — one depth station per
// step — so that the program stays responsive and the user can stop them while they run.
//
// Three parties take part, and they talk only through posted messages, whatever front end
// carries them:
// - the job (CProcess), which computes one station per step and reports how far it is;
// - the host (CProcessHost): the main window's side, which holds the job that runs and
//   performs its next step each time the progress display is ready for it;
// - the progress panel (CProgressPanel): the progress dialog's logic, a bar from 0 to 100,
//   a status text and a stop button.
// A step runs only after the panel has shown the previous progress (progress -> ready ->
// step), so messages never pile up. A stop completes the station under way, and the job
// keeps every output computed up to it. One job runs at a time.
//
// The desktop application carries the messages through its event loop, the command-line
// tool runs jobs without a panel (RunWithoutPanel), and tests drive the parties directly.

#include <cstddef>
#include <string>
#include <string_view>

namespace ba {

inline constexpr std::string_view kProgressStatusText = "Processing..., Please Wait.";
inline constexpr std::string_view kProgressStoppingText =
    "Waiting for processing to complete at current depth; this may take a minute or two...";
inline constexpr std::string_view kProgressWindowTitle = "BoreAnalyst Thread Status";

// What the job posts to the progress panel. A front end delivers each post later, in order,
// and never drops one.
class IProgressPoster {
public:
    virtual ~IProgressPoster() = default;
    // Whether a progress panel is showing (the job posts nothing when it is not).
    virtual bool PanelShowing() const = 0;
    virtual void PostProgress(int percent) = 0;
    virtual void PostFinished() = 0;
};

// What the host asks of a job, in this order of slots.
class IProgressClient {
public:
    virtual ~IProgressClient() = default;
    // The job's own slot: the name under which it runs ("Sonic Velocity"), for the panel's
    // caption and the document's history.
    virtual std::string JobName() const = 0;
    // Sets the stop flag and nothing else; the job ends at its next step.
    virtual void RequestStop() = 0;
    // Computes one station, then posts progress, or finishes.
    virtual void DoNextStep() = 0;
};

// The base of every job. A job computes its stations in order; when the last is done, or a
// stop was asked for, it hands what it computed to the document once (Finish).
class CProcess : public IProgressClient {
public:
    CProcess() = default;
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    // Called by the host when the job starts: where it posts its progress.
    void Attach(IProgressPoster& poster) { m_poster = &poster; }

    void RequestStop() override { m_stop = 1; }
    void DoNextStep() override;

    // 0 while running; 1 once a stop was asked for or the job finished.
    int StopFlag() const { return m_stop; }
    bool Finished() const { return m_finished; }
    std::size_t StationsDone() const { return m_done; }

    // How many stations the job has; fixed once it starts.
    virtual std::size_t StationCount() const = 0;

    // Whether stations may be computed in any order and at once on several threads, each
    // writing only its own outputs (then every order gives the same results, bit for bit).
    virtual bool StationsIndependent() const { return false; }
    // Computes station i and keeps its results.
    virtual void ComputeStation(std::size_t i) = 0;

    // For a front end that computes the stations itself (without a panel, perhaps on
    // several threads): how many of the first stations are computed; then Complete ends
    // the job as its last step would.
    void MarkComputed(std::size_t stations) { m_done = stations; }
    void Complete();

protected:
    // Hands the outputs of the first `stations` stations to the document (one change that
    // can be undone), or reports why there is nothing to hand over.
    virtual void Finish(std::size_t stations) = 0;

private:
    IProgressPoster* m_poster = nullptr;
    int m_stop = 0;
    bool m_finished = false;
    std::size_t m_done = 0;
};

// The progress bar's value after `done` of `count` stations: trunc(done * 100 / count).
int ProgressPercent(std::size_t done, std::size_t count);

// The main window's side: holds the job that runs, and performs its steps.
class CProcessHost {
public:
    // Registers `job`, tells it where to post and posts the first progress, 0; the front end
    // shows its panel first. Refused (false) while another job runs.
    bool Start(CProcess& job, IProgressPoster& poster);
    bool Running() const { return m_job != nullptr; }
    const CProcess* Job() const { return m_job; }

    // The panel pressed stop.
    void OnStopRequest();
    // The panel has shown the last progress. When a stop request waits behind this message
    // (posted while the last step ran), it is passed on first; then the next step runs.
    // After the job's last step the host holds no job.
    void OnReady(bool stopRequestWaiting);

private:
    CProcess* m_job = nullptr;
};

// The progress dialog's logic, kept apart from any widget.
class CProgressPanel {
public:
    // What the panel posts to the host.
    class IHostPoster {
    public:
        virtual ~IHostPoster() = default;
        virtual void PostStopRequest() = 0;
        virtual void PostReady() = 0;
    };

    explicit CProgressPanel(IHostPoster& host) : m_host(host) {}

    // The dialog is up: bar at 0, the waiting text, the stop button live.
    void Open();
    // A progress post: the bar moves, then the host may run the next step.
    void OnProgress(int percent);
    // The stop button: the first press posts one stop request and changes the text; later
    // presses do nothing. Says whether this press did anything.
    bool PressStop();
    // The finished post: the dialog closes.
    void OnFinished() { m_open = false; }

    bool IsOpen() const { return m_open; }
    bool Stopping() const { return m_stopping; }
    int Percent() const { return m_percent; }
    const std::string& StatusText() const { return m_status; }

private:
    IHostPoster& m_host;
    bool m_open = false;
    bool m_stopping = false;
    int m_percent = 0;
    std::string m_status;
};

// Runs a job to its end without a panel, as the command-line tool does: stations in order,
// or on up to `threads` threads at once when they are independent. The results do not
// depend on the thread count.
void RunWithoutPanel(CProcess& job, unsigned threads = 1);

} // namespace ba
