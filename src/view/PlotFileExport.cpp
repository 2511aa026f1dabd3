#include "view/PlotFileExport.h"

#include "base/FileIO.h"
#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "view/LogPlotRenderer.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <cctype>
#include <cstdint>
#include <span>
#include <string>

namespace ba {
namespace {

constexpr double kScreenDotsPerInch = 96.0;
constexpr int kPdfDotsPerInch = 600;
constexpr double kCentimetresPerInch = 2.54;

// The name as the user gave it, in UTF-8 on every platform.
std::string Quoted(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return "\"" + std::string(text.begin(), text.end()) + "\"";
}

std::string CannotWrite(const std::filesystem::path& path, const std::string& reason)
{
    return "Error: cannot write " + Quoted(path) + ": " + reason + ".";
}

std::optional<QByteArray> PngBytes(const CBoreAnalystDoc& doc, const PlotFilePage& page,
                                   const std::filesystem::path& path, IMessageSink& sink)
{
    QImage image(page.pixelSize, QImage::Format_RGB32);
    if (image.isNull()) {
        sink.Error("Error: cannot make a plot of " + std::to_string(page.pixelSize.width()) + " x " +
                   std::to_string(page.pixelSize.height()) + " pixels for " + Quoted(path) + ": not enough memory.");
        return std::nullopt;
    }
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        CLogPlotRenderer().Paint(painter, doc, ScreenViewport(page));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        sink.Error(CannotWrite(path, "the PNG image could not be encoded"));
        return std::nullopt;
    }
    return bytes;
}

// The PDF's title: the well title the plot's header shows, or, when the header has none,
// the document's own title (its file name without the extension).
QString PdfTitle(const CBoreAnalystDoc& doc)
{
    const std::string& title = doc.Header().Title().empty() ? doc.DocumentTitle() : doc.Header().Title();
    return QString::fromStdString(title);
}

std::optional<QByteArray> PdfBytes(const CBoreAnalystDoc& doc, const PlotFilePage& page,
                                   const std::filesystem::path& path, IMessageSink& sink)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(PdfTitle(doc));
        writer.setCreator(QStringLiteral("BoreAnalyst " BA_VERSION));
        writer.setResolution(kPdfDotsPerInch);
        const QSizeF inches(page.pixelSize.width() / kScreenDotsPerInch, page.pixelSize.height() / kScreenDotsPerInch);
        // Exactly the plot's size: a near standard paper size would otherwise take its place.
        writer.setPageSize(QPageSize(inches, QPageSize::Inch, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        if (!PaintPlotPage(writer, doc, ScreenViewport(page))) {
            sink.Error(CannotWrite(path, "the PDF page could not be drawn"));
            return std::nullopt;
        }
    }
    return bytes;
}

} // namespace

std::optional<PlotFileFormat> PlotFileFormatOf(const std::filesystem::path& path, IMessageSink& sink)
{
    std::string extension = path.extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".png") return PlotFileFormat::Png;
    if (extension == ".pdf") return PlotFileFormat::Pdf;
    sink.Error("Error: cannot tell the format of " + Quoted(path) + ": the output name must end in .png or .pdf.");
    return std::nullopt;
}

PlotViewport ScreenViewport(const PlotFilePage& page)
{
    PlotViewport viewport;
    viewport.topDepth = page.topDepth;
    viewport.verticalScale = page.verticalScale;
    viewport.pixelSize = page.pixelSize;
    viewport.dotsPerCentimetre = kScreenDotsPerInch / kCentimetresPerInch;
    return viewport;
}

bool WritePlotFile(const CBoreAnalystDoc& doc, const PlotFilePage& page, const std::filesystem::path& path,
                   PlotFileFormat format, IMessageSink& sink)
{
    if (page.pixelSize.isEmpty()) {
        sink.Error("Error: cannot make a plot of " + std::to_string(page.pixelSize.width()) + " x " +
                   std::to_string(page.pixelSize.height()) + " pixels for " + Quoted(path) + ": it has no area.");
        return false;
    }
    const std::optional<QByteArray> bytes =
        format == PlotFileFormat::Png ? PngBytes(doc, page, path, sink) : PdfBytes(doc, page, path, sink);
    if (!bytes) return false;
    try {
        WriteFileAtomically(path, std::span(reinterpret_cast<const std::uint8_t*>(bytes->constData()),
                                            static_cast<std::size_t>(bytes->size())));
    } catch (const FileError& e) {
        sink.Error(CannotWrite(path, e.what()));
        return false;
    }
    return true;
}

bool PaintPlotPage(QPagedPaintDevice& device, const CBoreAnalystDoc& doc, PlotViewport viewport)
{
    QPainter painter;
    if (!painter.begin(&device)) return false;
    const QRect page = device.pageLayout().paintRectPixels(device.logicalDpiY());
    viewport.pixelSize = page.size();
    viewport.dotsPerCentimetre = device.logicalDpiY() / kCentimetresPerInch;
    viewport.printing = true;
    CLogPlotRenderer().Paint(painter, doc, viewport);
    return painter.end();
}

} // namespace ba
