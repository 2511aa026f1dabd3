#include "model/DocumentChanges.h"

#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ba {

// The changes' way into the document's trace list, which nothing else may edit.
class CDocumentEditor {
public:
    static void InsertEntry(CBoreAnalystDoc& doc, std::size_t entry, std::unique_ptr<CTrace> trace)
    {
        doc.InsertEntry(entry, std::move(trace));
    }
    static std::unique_ptr<CTrace> TakeTrace(CBoreAnalystDoc& doc, std::size_t i, std::size_t& entry)
    {
        return doc.TakeTrace(i, entry);
    }
    static std::unique_ptr<CTrace> SwapTrace(CBoreAnalystDoc& doc, std::size_t i, std::unique_ptr<CTrace> trace)
    {
        return doc.SwapTrace(i, std::move(trace));
    }
    static std::size_t EntryCount(const CBoreAnalystDoc& doc) { return doc.m_entries.size(); }
    static std::size_t EntryOfTrace(const CBoreAnalystDoc& doc, std::size_t i)
    {
        return i < doc.TraceCount() ? doc.m_traceEntries[i] : doc.m_entries.size();
    }
};

namespace {

class DescribedChange : public CDocumentChange {
public:
    explicit DescribedChange(std::string description) : m_description(std::move(description)) {}
    std::string Description() const override { return m_description; }

private:
    std::string m_description;
};

// Puts traces in at given entry places and takes them out again. Redo inserts in
// ascending entry order and undo takes them out in descending order, so every trace comes
// back at exactly the entry it had, among entries of unknown kinds too.
class TraceSetChange : public DescribedChange {
public:
    struct Placed {
        std::size_t entry = 0;
        std::unique_ptr<CTrace> trace; // held while the trace is out of the document
    };

    TraceSetChange(std::string description, std::vector<Placed> placed, bool insertOnRedo)
        : DescribedChange(std::move(description)), m_placed(std::move(placed)), m_insertOnRedo(insertOnRedo)
    {
        std::sort(m_placed.begin(), m_placed.end(),
                  [](const Placed& a, const Placed& b) { return a.entry < b.entry; });
    }

    void Redo(CBoreAnalystDoc& doc) override { m_insertOnRedo ? PutIn(doc) : TakeOut(doc); }
    void Undo(CBoreAnalystDoc& doc) override { m_insertOnRedo ? TakeOut(doc) : PutIn(doc); }

private:
    void PutIn(CBoreAnalystDoc& doc)
    {
        for (Placed& p : m_placed) CDocumentEditor::InsertEntry(doc, p.entry, std::move(p.trace));
    }

    void TakeOut(CBoreAnalystDoc& doc)
    {
        for (auto p = m_placed.rbegin(); p != m_placed.rend(); ++p) {
            const std::size_t index = TraceIndexOfEntry(doc, p->entry);
            std::size_t entry = 0;
            p->trace = CDocumentEditor::TakeTrace(doc, index, entry);
        }
    }

    static std::size_t TraceIndexOfEntry(const CBoreAnalystDoc& doc, std::size_t entry)
    {
        for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
            if (CDocumentEditor::EntryOfTrace(doc, i) == entry) return i;
        }
        throw std::logic_error("a change met a document it was not made for");
    }

    std::vector<Placed> m_placed;
    bool m_insertOnRedo;
};

class ReplaceTraceChange final : public DescribedChange {
public:
    ReplaceTraceChange(std::string description, std::size_t index, std::unique_ptr<CTrace> other)
        : DescribedChange(std::move(description)), m_index(index), m_other(std::move(other))
    {
    }
    // Swapping both ways: the change holds whichever trace is out of the document.
    void Redo(CBoreAnalystDoc& doc) override { m_other = CDocumentEditor::SwapTrace(doc, m_index, std::move(m_other)); }
    void Undo(CBoreAnalystDoc& doc) override { Redo(doc); }

private:
    std::size_t m_index;
    std::unique_ptr<CTrace> m_other;
};

void SetAppearance(CBoreAnalystDoc& doc, CTrace& trace, const TraceAppearance& a)
{
    trace.SetName(a.name);
    trace.SetUnits(a.units);
    trace.SetScale(a.scaleLeft, a.scaleRight);
    trace.SetTrackIndex(a.trackIndex);
    trace.SetTrack(doc.TrackAt(a.trackIndex));
    trace.SetFlags(a.flags);
    trace.SetViewParameter(a.viewParameter);
    if (auto* line = dynamic_cast<CLineTrace*>(&trace)) {
        line->ChangePen(a.penWidth, a.penStyle, a.colourIndex, a.colour);
    }
    if (auto* sonic = dynamic_cast<CSonicTrace*>(&trace)) sonic->Acquisition().rxGain = a.sonicGainWord;
}

class AppearanceChange final : public DescribedChange {
public:
    AppearanceChange(std::string description, std::size_t index, TraceAppearance after)
        : DescribedChange(std::move(description)), m_index(index), m_after(std::move(after))
    {
    }
    void Redo(CBoreAnalystDoc& doc) override
    {
        CTrace& trace = doc.Trace(m_index);
        m_before = CaptureAppearance(trace);
        SetAppearance(doc, trace, m_after);
    }
    void Undo(CBoreAnalystDoc& doc) override { SetAppearance(doc, doc.Trace(m_index), m_before); }

private:
    std::size_t m_index;
    TraceAppearance m_after;
    TraceAppearance m_before;
};

class CompositeChange final : public DescribedChange {
public:
    CompositeChange(std::string description, std::vector<std::unique_ptr<CDocumentChange>> parts)
        : DescribedChange(std::move(description)), m_parts(std::move(parts))
    {
    }
    void Redo(CBoreAnalystDoc& doc) override
    {
        for (auto& part : m_parts) part->Redo(doc);
    }
    void Undo(CBoreAnalystDoc& doc) override
    {
        for (auto part = m_parts.rbegin(); part != m_parts.rend(); ++part) (*part)->Undo(doc);
    }

private:
    std::vector<std::unique_ptr<CDocumentChange>> m_parts;
};

// Adding goes through the document as it stands when the change is first applied: the
// entries are appended after the last one then.
class AddTracesChange final : public DescribedChange {
public:
    AddTracesChange(std::string description, std::vector<std::unique_ptr<CTrace>> traces)
        : DescribedChange(std::move(description)), m_traces(std::move(traces))
    {
    }
    void Redo(CBoreAnalystDoc& doc) override
    {
        if (!m_placed) {
            std::vector<TraceSetChange::Placed> placed;
            std::size_t entry = CDocumentEditor::EntryCount(doc);
            for (auto& trace : m_traces) placed.push_back({entry++, std::move(trace)});
            m_placed = std::make_unique<TraceSetChange>(Description(), std::move(placed), true);
        }
        m_placed->Redo(doc);
    }
    void Undo(CBoreAnalystDoc& doc) override { m_placed->Undo(doc); }

private:
    std::vector<std::unique_ptr<CTrace>> m_traces;
    std::unique_ptr<TraceSetChange> m_placed;
};

class InsertTraceChange final : public DescribedChange {
public:
    InsertTraceChange(std::string description, std::size_t index, std::unique_ptr<CTrace> trace)
        : DescribedChange(std::move(description)), m_index(index), m_trace(std::move(trace))
    {
    }
    void Redo(CBoreAnalystDoc& doc) override
    {
        if (!m_placed) {
            std::vector<TraceSetChange::Placed> placed;
            placed.push_back({CDocumentEditor::EntryOfTrace(doc, m_index), std::move(m_trace)});
            m_placed = std::make_unique<TraceSetChange>(Description(), std::move(placed), true);
        }
        m_placed->Redo(doc);
    }
    void Undo(CBoreAnalystDoc& doc) override { m_placed->Undo(doc); }

private:
    std::size_t m_index;
    std::unique_ptr<CTrace> m_trace;
    std::unique_ptr<TraceSetChange> m_placed;
};

class RemoveTracesChange final : public DescribedChange {
public:
    RemoveTracesChange(std::string description, std::vector<std::size_t> indices)
        : DescribedChange(std::move(description)), m_indices(std::move(indices))
    {
    }
    void Redo(CBoreAnalystDoc& doc) override
    {
        if (!m_placed) {
            std::vector<TraceSetChange::Placed> placed;
            for (const std::size_t i : m_indices) placed.push_back({CDocumentEditor::EntryOfTrace(doc, i), nullptr});
            m_placed = std::make_unique<TraceSetChange>(Description(), std::move(placed), false);
        }
        m_placed->Redo(doc);
    }
    void Undo(CBoreAnalystDoc& doc) override { m_placed->Undo(doc); }

private:
    std::vector<std::size_t> m_indices;
    std::unique_ptr<TraceSetChange> m_placed;
};

} // namespace

TraceAppearance CaptureAppearance(const CTrace& trace)
{
    TraceAppearance a;
    a.name = trace.Name();
    a.units = trace.Units();
    a.scaleLeft = trace.ScaleLeft();
    a.scaleRight = trace.ScaleRight();
    a.trackIndex = trace.TrackIndex();
    a.flags = trace.Flags();
    a.viewParameter = trace.ViewParameter();
    if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
        a.penWidth = line->PenWidth();
        a.penStyle = line->PenStyle();
        a.colourIndex = line->ColourIndex();
        a.colour = line->Colour();
    }
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) a.sonicGainWord = sonic->Acquisition().rxGain;
    return a;
}

std::unique_ptr<CDocumentChange> MakeAddTracesChange(std::string description,
                                                     std::vector<std::unique_ptr<CTrace>> traces)
{
    return std::make_unique<AddTracesChange>(std::move(description), std::move(traces));
}

std::unique_ptr<CDocumentChange> MakeInsertTraceChange(std::string description, std::size_t index,
                                                       std::unique_ptr<CTrace> trace)
{
    return std::make_unique<InsertTraceChange>(std::move(description), index, std::move(trace));
}

std::unique_ptr<CDocumentChange> MakeRemoveTracesChange(std::string description, std::vector<std::size_t> indices)
{
    return std::make_unique<RemoveTracesChange>(std::move(description), std::move(indices));
}

std::unique_ptr<CDocumentChange> MakeReplaceTraceChange(std::string description, std::size_t index,
                                                        std::unique_ptr<CTrace> replacement)
{
    return std::make_unique<ReplaceTraceChange>(std::move(description), index, std::move(replacement));
}

std::unique_ptr<CDocumentChange> MakeTraceAppearanceChange(std::string description, std::size_t index,
                                                           TraceAppearance after)
{
    return std::make_unique<AppearanceChange>(std::move(description), index, std::move(after));
}

std::unique_ptr<CDocumentChange> MakeCompositeChange(std::string description,
                                                     std::vector<std::unique_ptr<CDocumentChange>> parts)
{
    return std::make_unique<CompositeChange>(std::move(description), std::move(parts));
}

} // namespace ba
