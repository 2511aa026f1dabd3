#pragma once
// The History panel: the changes made to the active document in this session, oldest
// first under the state it was opened in, with the current point selected. A click on a
// row undoes or redoes changes until the document stands at that row.

#include <QDockWidget>

class QListWidget;

namespace ba {

class CBoreAnalystDoc;

class CHistoryPanel final : public QDockWidget {
    Q_OBJECT
public:
    explicit CHistoryPanel(QWidget* parent = nullptr);

    // The document whose history is shown; null shows nothing.
    void ShowDocument(CBoreAnalystDoc* doc);
    // Lists the history again (after the document changed).
    void Refresh();

    QListWidget* List() const { return m_list; }

    // The first row: the document as it was opened or made.
    static QString OriginText();

private:
    void OnRowClicked(int row);

    CBoreAnalystDoc* m_doc = nullptr;
    QListWidget* m_list = nullptr;
};

} // namespace ba
