#include "view/LogPlotRenderer.h"

#include "model/ImageDrawing.h"
#include "model/SonicTrace.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace ba {
namespace {

constexpr int kWidth = 850; // one pixel per plot unit
constexpr int kHeight = 1100;
constexpr std::size_t kWords = 101;

QRgb Rgb(std::uint32_t colorRef)
{
    return qRgb(static_cast<int>(colorRef & 0xFF), static_cast<int>((colorRef >> 8) & 0xFF),
                static_cast<int>((colorRef >> 16) & 0xFF));
}

// A sonic trace in the left track with a recorded window of 0..1000 us over 101 words:
// every station has the first half of its waveform strongly positive and the second half
// strongly negative, stations from 100 m to 120 m every 5 cm.
CSonicTrace& AddSonic(CBoreAnalystDoc& doc, std::int32_t multiplier, std::uint16_t positive, std::uint16_t negative)
{
    auto trace = std::make_unique<CSonicTrace>("RX 1", 0.0f, 1000.0f, "us");
    trace->SetTrackIndex(0);
    trace->Acquisition().rxSampleRate1 = 10;
    trace->Acquisition().rxNumSamples1 = 100;
    trace->Acquisition().rxGain = 32;
    trace->SetIntensityMultiplier(multiplier);
    ImageRow row(kWords, negative);
    for (std::size_t j = 0; j < kWords / 2; ++j) row[j] = positive;
    for (int i = 0; i <= 400; ++i) trace->AppendRow(100.0f + 0.05f * static_cast<float>(i), row);
    return static_cast<CSonicTrace&>(doc.AddTrace(std::move(trace)));
}

PlotViewport Viewport()
{
    PlotViewport viewport;
    viewport.topDepth = 99.0f;
    viewport.verticalScale = 10.0f;
    viewport.pixelSize = QSize(kWidth, kHeight);
    return viewport;
}

QImage Render(const CBoreAnalystDoc& doc, const PlotViewport& viewport)
{
    QImage image(viewport.pixelSize, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    CLogPlotRenderer().Paint(painter, doc, viewport);
    return image;
}

int RowAt(const PlotLayout& layout, double depth)
{
    return layout.trackTop + static_cast<int>(std::floor((depth - layout.topDepth) * layout.rowsPerDepth));
}

TEST(ImageRendering, SonicStationsShowTimeAcrossAndAmplitudeAsColour)
{
    struct Case {
        const char* name;
        std::int32_t multiplier;
        std::uint16_t positive, negative;
    };
    const Case cases[] = {
        {"full swing", 1, 4095, 0},
        {"small swing", 1, 2147, 1947},
        {"small swing tripled", 3, 2147, 1947},
    };
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        AddSonic(doc, c.multiplier, c.positive, c.negative);
        const PlotViewport viewport = Viewport();
        const PlotLayout layout = CLogPlotRenderer().Layout(doc, viewport);
        const QImage image = Render(doc, viewport);
        const QRectF track = layout.tracks[0];
        const QRgb positive = Rgb(SonicWordColour(c.positive, c.multiplier));
        const QRgb negative = Rgb(SonicWordColour(c.negative, c.multiplier));
        ASSERT_NE(positive, negative);
        for (const double depth : {100.3, 110.02, 119.9}) {
            const int y = RowAt(layout, depth);
            // Early times (left) carry the positive half, late times (right) the negative.
            EXPECT_EQ(image.pixel(static_cast<int>(track.left()) + 5, y), positive) << c.name << " at " << depth;
            EXPECT_EQ(image.pixel(static_cast<int>(track.right()) - 5, y), negative) << c.name << " at " << depth;
        }
        // Above the first station and below the last the track is not painted.
        for (const double depth : {99.5, 121.0}) {
            const int y = RowAt(layout, depth);
            EXPECT_EQ(image.pixel(static_cast<int>(track.left()) + 5, y), qRgb(255, 255, 255)) << c.name << " at " << depth;
        }
        // The image stays inside its track.
        EXPECT_EQ(image.pixel(static_cast<int>(track.right()) + 3, RowAt(layout, 110.02)), qRgb(255, 255, 255)) << c.name;
    }
}

TEST(ImageRendering, PlainImageFillsItsTrackAndHiddenTracesDrawNothing)
{
    CBoreAnalystDoc doc;
    auto image = std::make_unique<CImageTrace>("IMG", 0.0f, 100.0f, "cps");
    image->SetTrackIndex(1);
    for (int i = 0; i <= 100; ++i) image->AppendRow(100.0f + 0.1f * static_cast<float>(i), ImageRow(64, 4095));
    CImageTrace& shown = static_cast<CImageTrace&>(doc.AddTrace(std::move(image)));
    CSonicTrace& hidden = AddSonic(doc, 1, 4095, 0);
    hidden.SetFlag(kHiddenTraceFlag, true);

    const PlotViewport viewport = Viewport();
    const PlotLayout layout = CLogPlotRenderer().Layout(doc, viewport);
    const QImage picture = Render(doc, viewport);
    const QRgb red = Rgb(ImageSampleColour(4095));
    const QRectF right = layout.tracks[1];
    const int y = RowAt(layout, 105.05);
    EXPECT_EQ(picture.pixel(static_cast<int>(right.center().x()), y), red);
    EXPECT_EQ(picture.pixel(static_cast<int>(right.right()) - 3, y), red);
    const QRgb underHidden = picture.pixel(static_cast<int>(layout.tracks[0].left()) + 5, y);
    EXPECT_TRUE(qRed(underHidden) == qGreen(underHidden) && qGreen(underHidden) == qBlue(underHidden)); // white or grid

    // The legend sample runs from the low colour to the high one.
    for (const LegendBox& legend : layout.legends) {
        if (legend.trace != &shown) continue;
        const int stripY = static_cast<int>(legend.box.top() + kLegendLineOffset * layout.unitScale);
        const QRgb low = picture.pixel(static_cast<int>(legend.box.left()) + 5, stripY);
        const QRgb high = picture.pixel(static_cast<int>(legend.box.right()) - 5, stripY);
        EXPECT_GT(qGreen(low), qRed(low));
        EXPECT_GT(qRed(high), qGreen(high));
    }
}

} // namespace
} // namespace ba
