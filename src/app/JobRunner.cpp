#include "app/JobRunner.h"

#include <QEventLoop>
#include <QMetaObject>
#include <QWidget>

#include <utility>

namespace ba {

CJobRunner::CJobRunner(QWidget& mainWindow) : QObject(&mainWindow), m_main(mainWindow) {}

CJobRunner::~CJobRunner()
{
    delete m_dialog; // a top-level window of its own, not a child of the main window
}

bool CJobRunner::Start(std::unique_ptr<CProcess> job)
{
    if (m_job != nullptr || m_host.Running()) return false;
    m_job = std::move(job);
    m_stopRequestsWaiting = 0;
    m_dialog = new CProgressDlg(QString::fromStdString(m_job->JobName()), *this);
    // Over the main window, which the user can only watch until the job ends.
    m_dialog->adjustSize();
    m_dialog->move(m_main.geometry().center() - m_dialog->rect().center());
    m_dialog->show();
    m_main.setEnabled(false);
    m_host.Start(*m_job, *this);
    return true;
}

void CJobRunner::WaitUntilIdle()
{
    if (!Running()) return;
    QEventLoop loop;
    connect(this, &CJobRunner::Idle, &loop, &QEventLoop::quit);
    loop.exec();
}

bool CJobRunner::PanelShowing() const { return m_dialog != nullptr && m_dialog->Panel().IsOpen(); }

void CJobRunner::PostProgress(int percent)
{
    QMetaObject::invokeMethod(
        this,
        [this, percent] {
            if (m_dialog == nullptr) return;
            m_dialog->OnProgress(percent);
            emit Progressed(percent);
        },
        Qt::QueuedConnection);
}

void CJobRunner::PostFinished()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_dialog != nullptr) m_dialog->OnFinished();
            EndJob();
        },
        Qt::QueuedConnection);
}

void CJobRunner::PostStopRequest()
{
    ++m_stopRequestsWaiting;
    QMetaObject::invokeMethod(
        this,
        [this] {
            --m_stopRequestsWaiting;
            m_host.OnStopRequest();
        },
        Qt::QueuedConnection);
}

void CJobRunner::PostReady()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_host.OnReady(m_stopRequestsWaiting > 0);
            // A job that ended with no dialog to tell (it was closed from outside) posts
            // no finished message.
            if (!m_host.Running() && !PanelShowing()) EndJob();
        },
        Qt::QueuedConnection);
}

void CJobRunner::EndJob()
{
    if (m_job == nullptr) return;
    if (m_dialog != nullptr) {
        m_dialog->hide();
        m_dialog->deleteLater();
        m_dialog = nullptr;
    }
    m_main.setEnabled(true);
    // The job handed its outputs over in its last step, and the host let it go then.
    m_job.reset();
    emit Idle();
}

} // namespace ba
