#include "utilities/ValuesChange.h"

#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"

#include <stdexcept>
#include <utility>

namespace ba {
namespace {

CLineTrace& LineTraceOf(CBoreAnalystDoc& doc, std::size_t index)
{
    auto* line = dynamic_cast<CLineTrace*>(&doc.Trace(index));
    if (line == nullptr) throw std::logic_error("a change met a document it was not made for");
    return *line;
}

// Swapping both ways: the change holds whichever values are out of the trace.
class ValuesSwap final : public CDocumentChange {
public:
    ValuesSwap(std::string description, std::size_t index, CFloatArray values)
        : m_description(std::move(description)), m_index(index), m_values(std::move(values))
    {
    }
    std::string Description() const override { return m_description; }
    void Redo(CBoreAnalystDoc& doc) override { std::swap(LineTraceOf(doc, m_index).Values(), m_values); }
    void Undo(CBoreAnalystDoc& doc) override { Redo(doc); }

private:
    std::string m_description;
    std::size_t m_index;
    CFloatArray m_values;
};

class PatchSwap final : public CDocumentChange {
public:
    PatchSwap(std::string description, std::size_t index, ValuePatch patch)
        : m_description(std::move(description)), m_index(index), m_patch(std::move(patch))
    {
    }
    std::string Description() const override { return m_description; }
    void Redo(CBoreAnalystDoc& doc) override
    {
        float* values = LineTraceOf(doc, m_index).Values().Data();
        for (std::size_t k = 0; k < m_patch.indices.size(); ++k) std::swap(values[m_patch.indices[k]], m_patch.values[k]);
    }
    void Undo(CBoreAnalystDoc& doc) override { Redo(doc); }

private:
    std::string m_description;
    std::size_t m_index;
    ValuePatch m_patch;
};

std::unique_ptr<CDocumentChange> AddCopy(std::string description, std::unique_ptr<CTrace> copy,
                                         const std::string& newName)
{
    copy->SetName(newName);
    std::vector<std::unique_ptr<CTrace>> added;
    added.push_back(std::move(copy));
    return MakeAddTracesChange(std::move(description), std::move(added));
}

} // namespace

std::unique_ptr<CDocumentChange> MakeValuesResultChange(std::string description, const CLineTrace& trace,
                                                        std::size_t index, CFloatArray values,
                                                        const std::string& newName)
{
    if (newName.empty()) return std::make_unique<ValuesSwap>(std::move(description), index, std::move(values));
    auto copy = trace.Clone();
    static_cast<CLineTrace&>(*copy).Values() = std::move(values);
    return AddCopy(std::move(description), std::move(copy), newName);
}

std::unique_ptr<CDocumentChange> MakePatchResultChange(std::string description, const CLineTrace& trace,
                                                       std::size_t index, ValuePatch patch,
                                                       const std::string& newName)
{
    if (newName.empty()) return std::make_unique<PatchSwap>(std::move(description), index, std::move(patch));
    auto copy = trace.Clone();
    float* values = static_cast<CLineTrace&>(*copy).Values().Data();
    for (std::size_t k = 0; k < patch.indices.size(); ++k) values[patch.indices[k]] = patch.values[k];
    return AddCopy(std::move(description), std::move(copy), newName);
}

} // namespace ba
