#include "utilities/DepthsChange.h"

#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"

#include <utility>
#include <vector>

namespace ba {
namespace {

// Swapping both ways: the change holds whichever depths are out of the trace.
class DepthsSwap final : public CDocumentChange {
public:
    DepthsSwap(std::string description, std::size_t index, CFloatArray depths)
        : m_description(std::move(description)), m_index(index), m_depths(std::move(depths))
    {
    }
    std::string Description() const override { return m_description; }
    void Redo(CBoreAnalystDoc& doc) override { std::swap(doc.Trace(m_index).StoredDepths(), m_depths); }
    void Undo(CBoreAnalystDoc& doc) override { Redo(doc); }

private:
    std::string m_description;
    std::size_t m_index;
    CFloatArray m_depths;
};

} // namespace

std::unique_ptr<CDocumentChange> MakeDepthsResultChange(std::string description, const CTrace& trace,
                                                        std::size_t index, CFloatArray depths,
                                                        const std::string& newName)
{
    if (newName.empty()) return std::make_unique<DepthsSwap>(std::move(description), index, std::move(depths));
    auto copy = trace.Clone();
    copy->StoredDepths() = std::move(depths);
    copy->SetName(newName);
    std::vector<std::unique_ptr<CTrace>> added;
    added.push_back(std::move(copy));
    return MakeAddTracesChange(std::move(description), std::move(added));
}

} // namespace ba
