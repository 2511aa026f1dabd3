#include "io/LasImport.h"

#include "io/LasColumns.h"
#include "io/LasCurveNames.h"
#include "io/LasReader.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"

#include <filesystem>

#include <cmath>
#include <memory>
#include <vector>

namespace ba {
namespace {

constexpr std::string_view kDefaultTitlePrefix = "BoreAnalyst";

std::string AxisWord(bool time) { return time ? "time" : "depth"; }

} // namespace

float LasViewTopDepth(const CBoreAnalystDoc& doc)
{
    bool any = false;
    float smallest = 0.0f;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        if (trace.SampleCount() == 0) continue;
        const float first = trace.FirstDepth();
        if (!any || first < smallest) smallest = first;
        any = true;
    }
    if (!any) return 0.0f;
    const double whole = std::trunc(static_cast<double>(smallest));
    return static_cast<float>(std::floor(whole / 100.0) * 100.0);
}

LasImportResult ImportLas(CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink)
{
    const auto source = LasFileSource::Open(path);
    if (!source) {
        sink.Error(std::string(kLasOpenFailedMessage));
        return {};
    }
    return ImportLas(doc, *source, path.string(), path.stem().string(), sink);
}

LasImportResult ImportLas(CBoreAnalystDoc& doc, ILasByteSource& source, std::string_view fileName,
                          std::string_view title, IMessageSink& sink, std::size_t chunkBytes)
{
    LasReadResult read = ReadLas(source, fileName, sink, chunkBytes);
    if (!read.ok) return {};

    const bool fileIsTime = read.indexUnit.axis == LasAxis::Time;
    if (doc.TraceCount() > 0 && doc.IsTimeIndexed() != fileIsTime) {
        sink.Error("Error: \"" + std::string(fileName) + "\" line " + std::to_string(read.index.line) + ": the index " +
                   read.index.mnemonic + " (unit \"" + read.index.unit + "\") is a " + AxisWord(fileIsTime) +
                   " axis but the document is " + AxisWord(!fileIsTime) + "-indexed; nothing was imported.");
        return {};
    }

    const std::vector<LasTraceText> texts = MakeLasTraceTexts(read.curves, fileName, sink);
    const std::size_t samples = read.rows->Rows();
    const std::int32_t depthUnit = read.indexUnit.depthUnitCode;

    // Built aside first, each curve's column freed as soon as its trace holds it, so the
    // samples are never held three times over.
    std::vector<std::unique_ptr<CLineTrace>> staged;
    staged.reserve(read.curves.size());
    for (std::size_t k = 0; k < read.curves.size(); ++k) {
        auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, texts[k].name, texts[k].units);
        trace->SetDepthUnit(depthUnit);
        if (staged.empty()) {
            trace->StoredDepths().SetSize(samples);
            read.rows->CopyColumn(0, trace->StoredDepths().Data());
        } else {
            trace->StoredDepths() = staged.front()->StoredDepths(); // one copy of the index for all curves
        }
        trace->Values().SetSize(samples);
        read.rows->CopyColumn(k + 1, trace->Values().Data());
        read.rows->ReleaseColumn(k + 1);
        staged.push_back(std::move(trace));
    }
    read.rows.reset();
    ReturnFreedMemoryToSystem();

    const std::size_t existing = doc.TraceCount();
    const std::size_t added = staged.size();
    std::vector<std::unique_ptr<CTrace>> traces;
    traces.reserve(added);
    for (auto& trace : staged) {
        // Left track when this trace makes the count odd, right track otherwise.
        trace->SetTrackIndex((existing + traces.size() + 1) % 2 == 1 ? 0 : 1);
        traces.push_back(std::move(trace));
    }
    // The title first, so that the views see it when they are told of the new traces.
    if (std::string_view(doc.DocumentTitle()).substr(0, kDefaultTitlePrefix.size()) == kDefaultTitlePrefix) {
        doc.SetDocumentTitle(std::string(title));
    }
    doc.Apply(MakeAddTracesChange("Import " + std::filesystem::path(fileName).filename().string(),
                                  std::move(traces)));

    LasImportResult result;
    result.imported = true;
    result.tracesAdded = added;
    result.samplesPerTrace = samples;
    result.dataLines = read.dataLines;
    result.rowsRead = read.rowsRead;
    result.depthUnit = depthUnit;
    result.viewTopDepth = LasViewTopDepth(doc);
    return result;
}

} // namespace ba
