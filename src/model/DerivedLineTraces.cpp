#include "model/DerivedLineTraces.h"

#include "model/BoreAnalystDoc.h"

namespace ba {

namespace {

// What a derived trace of a document without traces takes.
constexpr std::int32_t kEmptyDocumentDepthUnit = kDepthMetres;
constexpr float kEmptyDocumentVerticalScale = 10.0f;

} // namespace

std::vector<std::string> LineTraceNames(const CBoreAnalystDoc& doc)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (dynamic_cast<const CLineTrace*>(&doc.Trace(i)) != nullptr) names.push_back(doc.Trace(i).Name());
    }
    return names;
}

const CLineTrace* FindLineTrace(const CBoreAnalystDoc& doc, std::string_view name)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const auto* line = dynamic_cast<const CLineTrace*>(&doc.Trace(i));
        if (line != nullptr && line->Name() == name) return line;
    }
    return nullptr;
}

std::string NoLineTraceMessage(std::string_view name)
{
    return "Error: No line trace named \"" + std::string(name) + "\" in the document.";
}

std::unique_ptr<CLineTrace> MakeDerivedLineTrace(const CBoreAnalystDoc& doc, float scaleLeft, float scaleRight,
                                                 std::string name, std::string units)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, scaleLeft, scaleRight, std::move(name), std::move(units));
    const bool empty = doc.TraceCount() == 0;
    trace->SetDepthUnit(empty ? kEmptyDocumentDepthUnit : doc.Trace(0).DepthUnit());
    trace->SetVerticalScale(empty ? kEmptyDocumentVerticalScale : doc.Trace(0).VerticalScale());
    return trace;
}

} // namespace ba
