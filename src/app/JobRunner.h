#pragma once
// Runs the jobs of the background processing in the desktop application: one at a time, a
// step per turn of the event loop, under a progress dialog, with the main window disabled
// exactly while a job runs. The job, the dialog and the main window's host talk through
// posts that the event loop delivers in order (queued calls), never directly.

#include "sonic/BackgroundProcess.h"
#include "view/ProgressDlg.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QWidget;

namespace ba {


class CJobRunner final : public QObject, public IProgressPoster, public CProgressPanel::IHostPoster {
    Q_OBJECT
public:
    explicit CJobRunner(QWidget& mainWindow);
    ~CJobRunner() override;

    // Starts `job` under a progress dialog; false, and nothing happens, while another runs.
    bool Start(std::unique_ptr<CProcess> job);
    bool Running() const { return m_job != nullptr; }
    // Keeps the event loop turning until no job runs (for commands that report their
    // outcome when the job has ended).
    void WaitUntilIdle();
    // The dialog of the job that runs, else null.
    CProgressDlg* Dialog() const { return m_dialog; }

    // IProgressPoster: what the job posts to the dialog.
    bool PanelShowing() const override;
    void PostProgress(int percent) override;
    void PostFinished() override;
    // CProgressPanel::IHostPoster: what the dialog posts to the main window.
    void PostStopRequest() override;
    void PostReady() override;

signals:
    // A progress post reached the dialog.
    void Progressed(int percent);
    // The job has ended and the main window is enabled again.
    void Idle();

private:
    void EndJob();

    QWidget& m_main;
    CProcessHost m_host;
    std::unique_ptr<CProcess> m_job;
    QPointer<CProgressDlg> m_dialog;
    int m_stopRequestsWaiting = 0; // posted, not yet delivered
};

} // namespace ba
