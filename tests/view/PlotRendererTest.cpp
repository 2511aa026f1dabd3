#include "view/LogPlotRenderer.h"
#include "view/PlotCurve.h"

#include "model/LineTrace.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace ba {
namespace {

constexpr int kWidth = 850; // the document's plot width: one pixel per plot unit
constexpr int kHeight = 1100;

CLineTrace& AddLine(CBoreAnalystDoc& doc, const std::string& name, std::int32_t track, std::int32_t colourIndex,
                    float from, float to, float step, float (*valueAt)(float))
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, colourIndex, 0.0f, 100.0f, name, "API");
    trace->SetTrackIndex(track);
    for (float d = from; d <= to; d += step) trace->AppendSample(d, valueAt(d));
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

PlotViewport Viewport(float top)
{
    PlotViewport viewport;
    viewport.topDepth = top;
    viewport.verticalScale = 10.0f;
    viewport.pixelSize = QSize(kWidth, kHeight);
    viewport.dotsPerCentimetre = 37.8;
    return viewport;
}

QImage Render(const CBoreAnalystDoc& doc, const PlotViewport& viewport)
{
    QImage image(viewport.pixelSize, QImage::Format_RGB32);
    image.fill(Qt::magenta); // anything the renderer leaves unpainted shows up
    QPainter painter(&image);
    CLogPlotRenderer().Paint(painter, doc, viewport);
    return image;
}

// Pixel row of a depth, as the curve rows are counted.
int RowAt(const PlotLayout& layout, double depth)
{
    return layout.trackTop + static_cast<int>(std::floor((depth - layout.topDepth) * layout.rowsPerDepth));
}

bool RowHasColour(const QImage& image, int y, int fromX, int toX, QRgb colour)
{
    for (int x = fromX; x < toX; ++x) {
        if (image.pixel(x, y) == colour) return true;
    }
    return false;
}

const QRgb kRed = qRgb(255, 0, 0);
const QRgb kGreen = qRgb(0, 255, 0);
const QRgb kBlue = qRgb(0, 0, 255);

float Constant50(float) { return 50.0f; }
// 50 except nulls from 140 to 145 m and 600 (beyond the scale) from 170 to 175 m.
float WithGapAndOverflow(float d)
{
    if (d >= 140.0f && d <= 145.0f) return kNullValue;
    if (d >= 170.0f && d <= 175.0f) return 600.0f;
    return 50.0f;
}

TEST(LogPlotRenderer, CurvesLieWhereTheirValuesAndDepthsSay)
{
    CBoreAnalystDoc doc;
    doc.Header().SetTitle("Well 7");
    AddLine(doc, "GR", 0, 1, 100.0f, 200.0f, 0.1f, WithGapAndOverflow);
    AddLine(doc, "HALF-L", 2, 2, 100.0f, 200.0f, 0.1f, Constant50);
    AddLine(doc, "HALF-R", 3, 3, 100.0f, 200.0f, 0.1f, Constant50);
    const PlotViewport viewport = Viewport(100.0f);
    const PlotLayout layout = CLogPlotRenderer().Layout(doc, viewport);
    const QImage image = Render(doc, viewport);

    // 50 on a 0..100 scale is the middle of each track: 125 in the left track, 425 and
    // 675 in the two halves of the right track.
    const int at150 = RowAt(layout, 150.0);
    EXPECT_EQ(image.pixel(125, at150), kRed);
    EXPECT_EQ(image.pixel(425, at150), kGreen);
    EXPECT_EQ(image.pixel(675, at150), kBlue);

    // The null stretch leaves the track without the curve.
    EXPECT_FALSE(RowHasColour(image, RowAt(layout, 142.5), 0, kWidth, kRed));
    EXPECT_EQ(image.pixel(125, RowAt(layout, 139.0)), kRed);
    EXPECT_EQ(image.pixel(125, RowAt(layout, 146.0)), kRed);

    // A value beyond the scale runs along the track's right edge and stays out of the
    // depth column.
    const int at172 = RowAt(layout, 172.5);
    EXPECT_EQ(image.pixel(249, at172), kRed);
    EXPECT_FALSE(RowHasColour(image, at172, 250, kWidth, kRed));

    // Above the first sample and below the last there is no curve.
    EXPECT_FALSE(RowHasColour(image, RowAt(layout, 205.0), 0, kWidth, kRed));
    // Nothing is left unpainted.
    for (int y = 0; y < kHeight; y += 7) EXPECT_FALSE(RowHasColour(image, y, 0, kWidth, qRgb(255, 0, 255))) << y;
}

TEST(LogPlotRenderer, DepthAndPixelRowMapBothWays)
{
    CBoreAnalystDoc doc;
    AddLine(doc, "GR", 0, 1, 0.0f, 10.0f, 1.0f, Constant50);
    const CLogPlotRenderer renderer;
    const struct {
        float top;
        float scale;
        double dotsPerCm;
    } cases[] = {{0.0f, 10.0f, 37.8}, {1234.5f, 2.0f, 37.8}, {-50.0f, 100.0f, 118.1}, {3.0f, 0.5f, 37.8}};
    for (const auto& c : cases) {
        PlotViewport viewport = Viewport(c.top);
        viewport.verticalScale = c.scale;
        viewport.dotsPerCentimetre = c.dotsPerCm;
        const PlotLayout layout = renderer.Layout(doc, viewport);
        // The top depth sits on the first track row; one centimetre of device holds `scale`.
        EXPECT_DOUBLE_EQ(renderer.YAtDepth(doc, viewport, c.top), layout.trackTop);
        EXPECT_NEAR(renderer.YAtDepth(doc, viewport, c.top + c.scale) - layout.trackTop, c.dotsPerCm, 1e-6);
        for (const double y : {0.0, 100.0, 777.25, 1100.0})
            EXPECT_NEAR(renderer.YAtDepth(doc, viewport, renderer.DepthAtY(doc, viewport, y)), y, 1e-6);
        const double expectedBottom = c.top + (kHeight - layout.trackTop) / c.dotsPerCm * c.scale;
        EXPECT_NEAR(renderer.BottomDepth(doc, viewport), expectedBottom, std::abs(expectedBottom) * 1e-6 + 1e-4);
    }
}

TEST(LogPlotRenderer, LegendBoxesAndTracksAreFoundWhereDrawn)
{
    CBoreAnalystDoc doc;
    const CTrace& left = AddLine(doc, "LEFT", 0, 1, 0.0f, 10.0f, 1.0f, Constant50);
    const CTrace& right = AddLine(doc, "RIGHT", 1, 2, 0.0f, 10.0f, 1.0f, Constant50);
    const CTrace& halfLeft = AddLine(doc, "HL", 2, 3, 0.0f, 10.0f, 1.0f, Constant50);
    const CTrace& halfRight = AddLine(doc, "HR", 3, 4, 0.0f, 10.0f, 1.0f, Constant50);
    const CTrace& secondLeft = AddLine(doc, "LEFT2", 0, 5, 0.0f, 10.0f, 1.0f, Constant50);
    const CLogPlotRenderer renderer;
    const PlotViewport viewport = Viewport(0.0f);
    const PlotLayout layout = renderer.Layout(doc, viewport);

    ASSERT_EQ(layout.legends.size(), 5u);
    for (const LegendBox& legend : layout.legends) {
        EXPECT_EQ(renderer.TraceAtLegend(doc, viewport, legend.box.center().toPoint()), legend.trace);
        EXPECT_LE(legend.box.bottom(), layout.trackTop); // every box fits in the header band
    }
    const auto boxOf = [&](const CTrace& trace) {
        for (const LegendBox& legend : layout.legends)
            if (legend.trace == &trace) return legend.box;
        return QRectF();
    };
    // Boxes span their track; the halves' boxes sit side by side below the right track's.
    EXPECT_DOUBLE_EQ(boxOf(left).width(), 250.0);
    EXPECT_DOUBLE_EQ(boxOf(right).left(), 300.0);
    EXPECT_DOUBLE_EQ(boxOf(right).right(), 800.0);
    EXPECT_DOUBLE_EQ(boxOf(halfLeft).top(), boxOf(right).bottom());
    EXPECT_DOUBLE_EQ(boxOf(halfLeft).top(), boxOf(halfRight).top());
    EXPECT_DOUBLE_EQ(boxOf(secondLeft).top(), boxOf(left).bottom());
    EXPECT_EQ(renderer.TraceAtLegend(doc, viewport, QPoint(820, 40)), nullptr);

    const int y = layout.trackTop + 200;
    const struct {
        int x;
        int y;
        int track;
    } hits[] = {{10, y, 0}, {249, y, 0}, {275, y, -1}, {310, y, 2}, {560, y, 3}, {825, y, -1}, {100, 5, -1}};
    for (const auto& hit : hits) EXPECT_EQ(renderer.TrackAt(doc, viewport, QPoint(hit.x, hit.y)), hit.track) << hit.x;
}

TEST(LogPlotRenderer, SelectedLegendIsHighlightedOnScreenOnly)
{
    CBoreAnalystDoc doc;
    const CTrace& trace = AddLine(doc, "GR", 0, 1, 0.0f, 10.0f, 1.0f, Constant50);
    PlotViewport viewport = Viewport(0.0f);
    viewport.selected.insert(&trace);
    const QRectF box = CLogPlotRenderer().Layout(doc, viewport).legends.at(0).box;
    const QPoint inside = (box.topLeft() + QPointF(6, 6)).toPoint(); // above the line, left of the name
    EXPECT_NE(Render(doc, viewport).pixel(inside), qRgb(255, 255, 255));
    viewport.printing = true;
    EXPECT_EQ(Render(doc, viewport).pixel(inside), qRgb(255, 255, 255));
}

// A rough curve with nulls, many samples per pixel row where zoomed out.
float Rough(float d)
{
    const double wave = std::sin(d * 0.37) * 40.0 + std::sin(d * 7.3) * 25.0 + std::sin(d * 91.0) * 20.0;
    if (std::fmod(d, 37.0f) < 0.6f) return kNullValue;
    return static_cast<float>(50.0 + wave);
}

// Mostly nulls: lone samples and short pieces, several to a row where zoomed out, rows
// apart where zoomed in.
float Speckled(float d)
{
    if (std::fmod(d, 1.3f) >= 0.12f) return kNullValue;
    return static_cast<float>(50.0 + std::sin(d * 5.1) * 45.0);
}

TEST(LogPlotRenderer, ReducedDrawingPaintsTheSamePixelsAsEverySample)
{
    const struct {
        std::int32_t width;
        float top;
        float scale;
    } cases[] = {{1, 0.0f, 200.0f}, {1, 40.0f, 1.0f}, {3, 0.0f, 200.0f}, {2, 150.0f, 20.0f}};
    for (const auto& c : cases) {
        CBoreAnalystDoc doc;
        CLineTrace& trace = AddLine(doc, "R", 0, 3, 0.0f, 5000.0f, 0.05f, Rough);
        trace.ChangePen(c.width, kPenSolid, 3);
        trace.SetScale(10.0f, 90.0f); // part of the curve runs past both edges
        AddLine(doc, "S", 1, 1, 0.0f, 5000.0f, 0.5f, Rough).SetScale(100.0f, 0.0f); // reversed scale
        AddLine(doc, "P", 2, 2, 0.0f, 5000.0f, 0.05f, Speckled).ChangePen(c.width, kPenSolid, 2);
        PlotViewport viewport = Viewport(c.top);
        viewport.verticalScale = c.scale;
        const QImage reduced = Render(doc, viewport);
        viewport.drawEverySample = true;
        const QImage every = Render(doc, viewport);
        int differing = 0;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) differing += reduced.pixel(x, y) != every.pixel(x, y) ? 1 : 0;
        EXPECT_EQ(differing, 0) << "pen " << c.width << " top " << c.top << " scale " << c.scale;
    }
}

TEST(PlotCurve, PenFollowsTheTracesWidthStyleAndColour)
{
    EXPECT_EQ(ColourFromColorRef(0x0000FF), QColor(255, 0, 0));
    EXPECT_EQ(ColourFromColorRef(0xFF0000), QColor(0, 0, 255));
    EXPECT_EQ(ColourFromColorRef(0x00FFFF), QColor(255, 255, 0));
    EXPECT_EQ(ColourFromColorRef(0x123456), QColor(0x56, 0x34, 0x12));
    const struct {
        std::int32_t style;
        Qt::PenStyle expected;
    } styles[] = {{kPenSolid, Qt::SolidLine},        {kPenDash, Qt::DashLine},   {kPenDot, Qt::DotLine},
                  {kPenDashDot, Qt::DashDotLine},    {kPenDashDotDot, Qt::DashDotDotLine},
                  {kPenNull, Qt::NoPen},             {99, Qt::SolidLine}};
    for (const auto& s : styles) {
        CLineTrace trace(2, s.style, 4, 0.0f, 1.0f, "T", "");
        const QPen pen = TracePen(trace, 2.0);
        EXPECT_EQ(pen.style(), s.expected) << s.style;
        EXPECT_DOUBLE_EQ(pen.widthF(), 4.0);
        EXPECT_EQ(pen.color(), QColor(255, 0, 255));
    }
    EXPECT_DOUBLE_EQ(TracePen(CLineTrace(0, kPenSolid, 0, 0.0f, 1.0f, "T", ""), 1.0).widthF(), 1.0);
}

TEST(LogPlotRenderer, NullPenDrawsNoCurve)
{
    CBoreAnalystDoc doc;
    AddLine(doc, "GR", 0, 1, 100.0f, 200.0f, 0.1f, Constant50).ChangePen(1, kPenNull, 1);
    const PlotViewport viewport = Viewport(100.0f);
    const PlotLayout layout = CLogPlotRenderer().Layout(doc, viewport);
    const QImage image = Render(doc, viewport);
    for (int y = layout.trackTop; y < kHeight; y += 3) EXPECT_FALSE(RowHasColour(image, y, 0, kWidth, kRed)) << y;
}

} // namespace
} // namespace ba
