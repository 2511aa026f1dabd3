#pragma once
// The changes made to a document in this session, oldest first, and how far along them
// the document stands: entries before the position are applied, the rest were undone and
// wait for redo. A new change drops the undone entries. The position at which the
// document was last saved tells whether it holds unsaved changes.

#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ba {

class CDocumentHistory {
public:
    std::size_t Size() const { return m_entries.size(); }
    // How many entries are applied.
    std::size_t Position() const { return m_position; }
    const CDocumentChange& Entry(std::size_t i) const { return *m_entries.at(i); }

    bool CanUndo() const { return m_position > 0; }
    bool CanRedo() const { return m_position < m_entries.size(); }
    // The description of the entry that undo or redo would take; empty when there is none.
    std::string UndoDescription() const;
    std::string RedoDescription() const;

    // Appends an entry that has just been applied, after dropping the undone ones.
    void Push(std::unique_ptr<CDocumentChange> change);
    // The entry that undo takes back (position moves one back), or redo repeats.
    CDocumentChange& StepBack();
    CDocumentChange& StepForward();

    // The document was saved at the current position.
    void MarkSaved() { m_savedPosition = m_position; }
    // The document holds changes that are not in its file.
    bool IsAwayFromSaved() const { return m_savedPosition != m_position; }

private:
    std::vector<std::unique_ptr<CDocumentChange>> m_entries;
    std::size_t m_position = 0;
    // Empty once the saved state can no longer be reached by undo or redo.
    std::optional<std::size_t> m_savedPosition = 0;
};

} // namespace ba
