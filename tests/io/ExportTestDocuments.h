#pragma once
// Documents for the export tests, small enough that every expected line can be worked
// out by hand, and a file export run in a folder of its own.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "support/TempDir.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ba::test {

// A trace of a kind other than a line trace. The model cannot yet load image traces from
// files, but a document may hold any trace kind, and the exports must pass over them.
class CStandInImageTrace final : public CTrace {
public:
    std::string_view ClassName() const override { return "CImageTrace"; }
    TraceKind Kind() const override { return TraceKind::Image; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<CStandInImageTrace>(*this); }
};

struct LineRecipe {
    std::string name = "GR";
    std::string units = "API";
    std::vector<std::pair<float, float>> samples; // stored depth, value
    std::int32_t depthUnit = kDepthMetres;
    std::int32_t track = 0;
    std::int32_t penWidth = 1;
    std::int32_t penStyle = kPenSolid;
    std::int32_t colourIndex = 0;
    float scaleLeft = 0.0f;
    float scaleRight = 100.0f;
    bool irregular = false;
};

inline std::unique_ptr<CLineTrace> MakeLine(const LineRecipe& recipe)
{
    auto line = std::make_unique<CLineTrace>(recipe.penWidth, recipe.penStyle, recipe.colourIndex, recipe.scaleLeft,
                                             recipe.scaleRight, recipe.name, recipe.units);
    line->SetDepthUnit(recipe.depthUnit);
    line->SetTrackIndex(recipe.track);
    line->SetFlag(2, recipe.irregular);
    for (const auto& [depth, value] : recipe.samples) line->AppendSample(depth, value);
    return line;
}

inline std::unique_ptr<CStandInImageTrace> MakeImage(std::vector<float> storedDepths, std::int32_t depthUnit)
{
    auto image = std::make_unique<CStandInImageTrace>();
    image->SetName("IMG");
    image->SetDepthUnit(depthUnit);
    for (const float d : storedDepths) image->StoredDepths().Add(d);
    return image;
}

// Gamma ray at 10, 10.5, 11, 11.5, 12 m: 20, 30, null, 50, 60.
inline LineRecipe GammaRay()
{
    LineRecipe recipe;
    recipe.name = "Gamma Ray";
    recipe.units = "api units";
    recipe.samples = {{10.0f, 20.0f}, {10.5f, 30.0f}, {11.0f, kNullValue}, {11.5f, 50.0f}, {12.0f, 60.0f}};
    return recipe;
}

// Resistivity at 10, 10.5, 11 m: 2.5, 4, 8.
inline LineRecipe Resistivity()
{
    LineRecipe recipe;
    recipe.name = "RES";
    recipe.units = "ohmm";
    recipe.samples = {{10.0f, 2.5f}, {10.5f, 4.0f}, {11.0f, 8.0f}};
    recipe.track = 1;
    return recipe;
}

inline std::unique_ptr<CBoreAnalystDoc> MakeDocument(std::string title, const std::vector<LineRecipe>& lines)
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    doc->SetDocumentTitle(std::move(title));
    for (const auto& recipe : lines) doc->AddTrace(MakeLine(recipe));
    return doc;
}

// A feet image trace at 9 and 13 m (29.52756 and 42.65092 ft), then the gamma ray: the
// first trace is not a line trace, and it reaches beyond the gamma ray at both ends.
inline std::unique_ptr<CBoreAnalystDoc> FeetImageThenGammaRay()
{
    auto doc = MakeDocument("W", {});
    doc->AddTrace(MakeImage({9.0f, 13.0f}, kDepthFeet));
    doc->AddTrace(MakeLine(GammaRay()));
    return doc;
}

// A document whose only trace is an image, so it has nothing to export.
inline std::unique_ptr<CBoreAnalystDoc> ImageOnlyDocument()
{
    auto doc = MakeDocument("W", {});
    doc->AddTrace(MakeImage({1.0f, 2.0f}, kDepthMetres));
    return doc;
}

// The lines of a text, each without its '\n'; a last line without one is kept too.
inline std::vector<std::string> SplitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// What a file export reported and left behind.
struct Exported {
    bool ok = false;
    std::vector<std::string> messages;
    std::vector<std::string> lines;
    std::vector<std::string> files; // what the folder holds afterwards
};

using FileExport = bool (*)(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink);

// Exports `doc` to `fileName` in an empty scratch folder.
inline Exported ExportInScratchFolder(FileExport exportTo, const CBoreAnalystDoc& doc, const std::string& fileName)
{
    TempDir dir;
    CollectingMessageSink sink;
    Exported result;
    result.ok = exportTo(doc, dir.Path(fileName), sink);
    result.messages = sink.Texts();
    result.lines = SplitLines(dir.Read(fileName));
    result.files = dir.FileNames();
    return result;
}

} // namespace ba::test
