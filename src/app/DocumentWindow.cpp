#include "app/DocumentWindow.h"

#include "view/LogPlotView.h"

#include <QCloseEvent>

namespace ba {

CDocumentWindow::CDocumentWindow(std::unique_ptr<CBoreAnalystDoc> doc, QWidget* parent)
    : QMdiSubWindow(parent), m_doc(std::move(doc))
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_view = new CLogPlotView(*m_doc, this);
    setWidget(m_view);
    // The window owns the document, so the updater never outlives what it captures.
    m_doc->AddViewUpdater([this] { DocumentChanged(); });
    setWindowTitle(TitleText());
    resize(700, 600);
}

QString CDocumentWindow::TitleText() const
{
    return QString::fromStdString(m_doc->DocumentTitle()) + (m_doc->IsModified() ? QStringLiteral("*") : QString());
}

void CDocumentWindow::DocumentChanged()
{
    setWindowTitle(TitleText());
    m_view->DocumentChanged();
    emit documentChanged();
}

void CDocumentWindow::closeEvent(QCloseEvent* event)
{
    if (m_closeGuard && !m_closeGuard(*this)) {
        event->ignore();
        return;
    }
    QMdiSubWindow::closeEvent(event);
}

} // namespace ba
