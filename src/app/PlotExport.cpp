#include "app/PlotExport.h"

#include "app/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace ba {

namespace {
constexpr double kScreenDotsPerCentimetre = 96.0 / 2.54;
constexpr int kPdfResolution = 300;
} // namespace

PlotViewport PlotExtentViewport(const CBoreAnalystDoc& doc, float topDepth, float verticalScale)
{
    PlotViewport viewport;
    viewport.topDepth = topDepth;
    viewport.verticalScale = verticalScale;
    viewport.pixelSize = QSize(doc.PlotWidth(), doc.PlotHeight());
    viewport.dotsPerCentimetre = kScreenDotsPerCentimetre;
    return viewport;
}

bool WritePlotPng(const CBoreAnalystDoc& doc, const PlotViewport& viewport, const QString& path, IMessageSink& sink)
{
    QImage image(viewport.pixelSize, QImage::Format_RGB32);
    if (image.isNull()) {
        sink.Error("Error: cannot make a plot image of " + std::to_string(viewport.pixelSize.width()) + " x " +
                   std::to_string(viewport.pixelSize.height()) + " pixels for \"" + path.toStdString() + "\".");
        return false;
    }
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        CLogPlotRenderer().Paint(painter, doc, viewport);
    }
    // Written aside and renamed over the target, so a failed write leaves no half file.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        sink.Error("Error: cannot write the plot image \"" + path.toStdString() + "\": " +
                   file.errorString().toStdString() + ".");
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
    viewport.dotsPerCentimetre = device.logicalDpiY() / 2.54;
    viewport.printing = true;
    CLogPlotRenderer().Paint(painter, doc, viewport);
    return painter.end();
}

bool WritePlotPdf(const CBoreAnalystDoc& doc, const PlotViewport& viewport, const QString& path, IMessageSink& sink)
{
    QSaveFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    if (written) {
        QPdfWriter writer(&file);
        writer.setResolution(kPdfResolution);
        writer.setTitle(QString::fromStdString(doc.DocumentTitle()));
        writer.setCreator(QStringLiteral("BoreAnalyst " BA_VERSION));
        written = PaintPlotPage(writer, doc, viewport);
    }
    if (!written || !file.commit()) {
        sink.Error("Error: cannot write the plot document \"" + path.toStdString() + "\": " +
                   file.errorString().toStdString() + ".");
        return false;
    }
    return true;
}

} // namespace ba
