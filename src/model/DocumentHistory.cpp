#include "model/DocumentHistory.h"

#include <stdexcept>

namespace ba {

std::string CDocumentHistory::UndoDescription() const
{
    return CanUndo() ? m_entries[m_position - 1]->Description() : std::string();
}

std::string CDocumentHistory::RedoDescription() const
{
    return CanRedo() ? m_entries[m_position]->Description() : std::string();
}

void CDocumentHistory::Push(std::unique_ptr<CDocumentChange> change)
{
    if (m_savedPosition && *m_savedPosition > m_position) m_savedPosition.reset();
    m_entries.resize(m_position);
    m_entries.push_back(std::move(change));
    m_position = m_entries.size();
}

CDocumentChange& CDocumentHistory::StepBack()
{
    if (!CanUndo()) throw std::logic_error("nothing to undo");
    return *m_entries[--m_position];
}

CDocumentChange& CDocumentHistory::StepForward()
{
    if (!CanRedo()) throw std::logic_error("nothing to redo");
    return *m_entries[m_position++];
}

} // namespace ba
