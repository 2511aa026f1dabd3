#include "view/ProgressDlg.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace ba {

CProgressDlg::CProgressDlg(const QString& jobName, CProgressPanel::IHostPoster& host) : QDialog(nullptr), m_panel(host)
{
    setWindowTitle(jobName);
    setModal(false);
    m_status = new QLabel(this);
    m_status->setWordWrap(true);
    m_status->setMinimumWidth(360);
    m_bar = new QProgressBar(this);
    m_bar->setRange(0, 100);
    m_stop = new QPushButton(tr("Stop"), this);
    connect(m_stop, &QPushButton::clicked, this, &CProgressDlg::PressStop);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addWidget(m_stop, 0, Qt::AlignRight);
    m_panel.Open();
    ShowPanel();
}

void CProgressDlg::ShowPanel()
{
    m_bar->setValue(m_panel.Percent());
    m_status->setText(QString::fromStdString(m_panel.StatusText()));
    m_stop->setEnabled(m_panel.IsOpen() && !m_panel.Stopping());
}

void CProgressDlg::OnProgress(int percent)
{
    m_panel.OnProgress(percent);
    ShowPanel();
}

void CProgressDlg::OnFinished()
{
    m_panel.OnFinished();
    hide();
}

void CProgressDlg::PressStop()
{
    if (m_panel.PressStop()) ShowPanel();
}

void CProgressDlg::closeEvent(QCloseEvent* event)
{
    if (m_panel.IsOpen()) {
        PressStop();
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

void CProgressDlg::reject()
{
    if (m_panel.IsOpen()) PressStop(); // Escape stops rather than closes
    else QDialog::reject();
}

} // namespace ba
