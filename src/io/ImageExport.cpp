#include "io/ImageExport.h"

#include "io/ExportFileWriter.h"
#include "io/ExportReport.h"
#include "io/FixedText.h"

#include <charconv>

namespace ba {
namespace {

// "%5i" of a sample: right-aligned in five characters (no sample needs more).
void AppendSample(std::string& out, std::uint16_t sample)
{
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, sample).ptr;
    const auto length = static_cast<std::size_t>(end - digits);
    if (length < 5) out.append(5 - length, ' ');
    out.append(digits, length);
}

} // namespace

std::string ImageExportDefaultFileName(const CBoreAnalystDoc& doc) { return doc.DocumentTitle() + ".dat"; }

const CImageTrace* ImageTraceToExport(std::span<const CTrace* const> selected, IMessageSink& sink)
{
    const CImageTrace* first = nullptr;
    std::size_t images = 0;
    for (const CTrace* trace : selected) {
        const auto* image = dynamic_cast<const CImageTrace*>(trace);
        if (image == nullptr) continue;
        if (images++ == 0) first = image;
    }
    if (images == 0) {
        sink.Error(std::string(kNoImageTraceSelectedMessage));
        return nullptr;
    }
    if (images > 1) {
        sink.Error(std::string(kSeveralImageTracesSelectedMessage));
        return nullptr;
    }
    return first;
}

bool ExportImageAscii(const CImageTrace& image, const std::filesystem::path& path, IMessageSink& sink)
{
    try {
        CExportFileWriter file(path);
        std::string& out = file.Buffer();
        for (std::size_t i = 0; i < image.RowCount(); ++i) {
            AppendFixed(out, image.Depth(i), 9, 3);
            out.append(", ");
            const ImageRow& row = image.Row(i);
            for (std::size_t j = 0; j < row.size(); ++j) {
                if (j > 0) out.append(", ");
                AppendSample(out, row[j]);
            }
            out.push_back('\n');
            file.LineEnd();
        }
        file.Commit();
    } catch (const ExportFileError& error) {
        ReportExportFileError(error, sink);
        return false;
    }
    return true;
}

} // namespace ba
