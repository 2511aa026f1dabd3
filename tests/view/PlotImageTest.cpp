// Whole log plots of small fixed documents compared pixel for pixel with stored images:
// header, legends, grid, depth labels and curves together, so that a change anywhere in
// what the user sees shows up. The stored images were drawn with DejaVu Sans (the font a
// Debian machine without Arial uses); where another font is chosen the comparison is
// skipped rather than failed. After an intended change to the drawing, regenerate them:
//
//   BA_UPDATE_PLOT_IMAGES=1 build/bin/view_plot_tests --gtest_filter='PlotImage*'
//
// and look at every changed image before committing it.

#include "view/LogPlotRenderer.h"

#include "model/LineTrace.h"

#include <QFont>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>

namespace ba {
namespace {

const QString kImageFolder = QStringLiteral(BA_TEST_DATA_DIR "/view/data/");

CLineTrace& AddCurve(CBoreAnalystDoc& doc, const char* name, const char* units, std::int32_t track,
                     std::int32_t colour, float left, float right, const std::function<float(float)>& value)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, colour, left, right, name, units);
    trace->SetTrackIndex(track);
    for (int i = 0; i <= 600; ++i) {
        const float d = 100.0f + 0.1f * static_cast<float>(i);
        trace->AppendSample(d, value(d));
    }
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

// Gamma ray with a null stretch, resistivity that leaves its scale, caliper dashed and
// thick in a half track, and a hidden trace that keeps only its legend.
void BuildMetresDocument(CBoreAnalystDoc& doc)
{
    doc.Header().SetTitle("Plot image test well");
    AddCurve(doc, "GR", "API", 0, 2, 0.0f, 150.0f, [](float d) {
        if (d > 121.0f && d < 124.0f) return kNullValue;
        return static_cast<float>(70.0 + 45.0 * std::sin(d * 0.35) + 10.0 * std::sin(d * 2.1));
    });
    AddCurve(doc, "RES", "ohm.m", 2, 1, 0.0f, 100.0f,
             [](float d) { return d > 140.0f && d < 146.0f ? 180.0f : static_cast<float>(40.0 + 30.0 * std::cos(d * 0.2)); });
    AddCurve(doc, "CALI", "in", 3, 3, 6.0f, 16.0f, [](float d) { return static_cast<float>(8.5 + 1.5 * std::sin(d)); })
        .ChangePen(3, kPenDash, 3);
    AddCurve(doc, "SP", "mV", 1, 4, -100.0f, 100.0f, [](float) { return 0.0f; }).SetFlag(kHiddenTraceFlag, true);
}

// A reversed scale in feet with the first legend selected.
void BuildFeetDocument(CBoreAnalystDoc& doc)
{
    doc.Header().SetTitle("Feet");
    CLineTrace& nphi = AddCurve(doc, "NPHI", "v/v", 1, 3, 0.45f, -0.15f,
                                [](float d) { return static_cast<float>(0.15 + 0.12 * std::sin(d * 0.5)); });
    nphi.SetDepthUnit(kDepthFeet);
}

struct PlotCase {
    const char* file;
    void (*build)(CBoreAnalystDoc&);
    float topDepth;
    float verticalScale;
    bool selectFirst;
};

QImage Draw(const PlotCase& c)
{
    CBoreAnalystDoc doc;
    c.build(doc);
    PlotViewport viewport;
    viewport.topDepth = c.topDepth;
    viewport.verticalScale = c.verticalScale;
    viewport.pixelSize = QSize(850, 1100);
    viewport.dotsPerCentimetre = 37.8;
    if (c.selectFirst) viewport.selected.insert(&doc.Trace(0));
    QImage image(viewport.pixelSize, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    CLogPlotRenderer().Paint(painter, doc, viewport);
    painter.end();
    return image;
}

bool PlotFontIsDejaVu()
{
    QFont font;
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("DejaVu Sans")});
    return QFontInfo(font).family() == QLatin1String("DejaVu Sans");
}

TEST(PlotImage, SmallDocumentsLookAsStored)
{
    if (!PlotFontIsDejaVu()) GTEST_SKIP() << "the plot font here is not DejaVu Sans, which the stored images use";
    const PlotCase cases[] = {
        {"plot_metres.png", BuildMetresDocument, 100.0f, 5.0f, false},
        {"plot_feet_selected.png", BuildFeetDocument, 320.0f, 20.0f, true},
    };
    const bool update = !qEnvironmentVariableIsEmpty("BA_UPDATE_PLOT_IMAGES");
    for (const PlotCase& c : cases) {
        const QImage drawn = Draw(c);
        const QString stored = kImageFolder + QString::fromLatin1(c.file);
        if (update) {
            ASSERT_TRUE(drawn.save(stored)) << c.file;
            continue;
        }
        const QImage expected = QImage(stored).convertToFormat(QImage::Format_RGB32);
        ASSERT_FALSE(expected.isNull()) << "cannot read " << stored.toStdString();
        ASSERT_EQ(expected.size(), drawn.size()) << c.file;
        int differing = 0;
        QRect where;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                if (drawn.pixel(x, y) == expected.pixel(x, y)) continue;
                ++differing;
                where |= QRect(x, y, 1, 1);
            }
        }
        if (differing > 0) {
            const QString actual = QStringLiteral("actual_") + QString::fromLatin1(c.file);
            drawn.save(actual);
            ADD_FAILURE() << c.file << ": " << differing << " pixels differ within x " << where.left() << ".."
                          << where.right() << ", y " << where.top() << ".." << where.bottom()
                          << "; the drawing is in " << actual.toStdString() << " in the test's working folder";
        }
    }
    if (update) GTEST_SKIP() << "stored images rewritten";
}

} // namespace
} // namespace ba
