#pragma once
// One undoable change to a document. Every edit of a document — adding, removing or
// replacing traces, changing their samples or properties, imports, pastes and processing
// outputs — is a change object handed to CBoreAnalystDoc::Apply; the document keeps it in
// its history so that it can be undone and redone. A change holds only what it needs to
// go both ways (the traces it took out or put in), never a copy of the document.

#include <string>

namespace ba {

class CBoreAnalystDoc;

class CDocumentChange {
public:
    virtual ~CDocumentChange() = default;
    CDocumentChange() = default;
    CDocumentChange(const CDocumentChange&) = delete;
    CDocumentChange& operator=(const CDocumentChange&) = delete;

    // What the change does, in a few words ("Depth Shift GR"): Edit > Undo "<what>" and
    // the history list show it.
    virtual std::string Description() const = 0;

    // Carries the change out (the first time and on redo). Called only by the document,
    // on the state the change was made for.
    virtual void Redo(CBoreAnalystDoc& doc) = 0;
    // Takes it back, leaving the document as it was before Redo.
    virtual void Undo(CBoreAnalystDoc& doc) = 0;
};

} // namespace ba
