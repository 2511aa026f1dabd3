#pragma once
// The progress dialog of a job that runs in steps: a bar from 0 to 100, the status text and
// a Stop button, over the panel logic of the background processing. The dialog is a window
// of its own, so that it stays live while the main window is disabled under it.

#include "sonic/BackgroundProcess.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace ba {

class CProgressDlg final : public QDialog {
    Q_OBJECT
public:
    CProgressDlg(const QString& jobName, CProgressPanel::IHostPoster& host);

    // The progress and finished posts of the job, as the event loop delivers them.
    void OnProgress(int percent);
    void OnFinished();

    const CProgressPanel& Panel() const { return m_panel; }
    QPushButton* StopButton() const { return m_stop; }
    QProgressBar* Bar() const { return m_bar; }
    QLabel* Status() const { return m_status; }

protected:
    // Closing the window asks for a stop, as the button does; the dialog goes when the job ends.
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    void PressStop();
    void ShowPanel();

    CProgressPanel m_panel;
    QProgressBar* m_bar = nullptr;
    QLabel* m_status = nullptr;
    QPushButton* m_stop = nullptr;
};

} // namespace ba
