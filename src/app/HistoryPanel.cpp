#include "app/HistoryPanel.h"

#include "model/BoreAnalystDoc.h"

#include <QListWidget>
#include <QSignalBlocker>

namespace ba {

CHistoryPanel::CHistoryPanel(QWidget* parent) : QDockWidget(tr("History"), parent)
{
    setObjectName("historyPanel");
    m_list = new QListWidget(this);
    m_list->setObjectName("historyList");
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    setWidget(m_list);
    connect(m_list, &QListWidget::currentRowChanged, this, &CHistoryPanel::OnRowClicked);
}

QString CHistoryPanel::OriginText() { return tr("<Opened>"); }

void CHistoryPanel::ShowDocument(CBoreAnalystDoc* doc)
{
    m_doc = doc;
    Refresh();
}

void CHistoryPanel::Refresh()
{
    // Filling the list must not be taken for a click.
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    if (!m_doc) return;
    const CDocumentHistory& history = m_doc->History();
    m_list->addItem(OriginText());
    for (std::size_t i = 0; i < history.Size(); ++i) {
        auto* item = new QListWidgetItem(QString::fromStdString(history.Entry(i).Description()), m_list);
        // Undone changes stay listed, greyed, until a new change drops them.
        if (i >= history.Position()) item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    m_list->setCurrentRow(static_cast<int>(history.Position()));
}

void CHistoryPanel::OnRowClicked(int row)
{
    if (!m_doc || row < 0) return;
    m_doc->ReturnTo(static_cast<std::size_t>(row));
}

} // namespace ba
