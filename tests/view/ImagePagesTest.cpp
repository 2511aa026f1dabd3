#include "view/SonicPropertiesDlg.h"

#include "model/BoreAnalystDoc.h"
#include "model/ImagePropertiesModel.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

#include <memory>

namespace ba {
namespace {

CSonicTrace& AddSonic(CBoreAnalystDoc& doc, const std::string& toolType)
{
    auto trace = std::make_unique<CSonicTrace>("RX 1", 100.0f, 2100.0f, "us");
    trace->SetToolType(toolType);
    trace->Acquisition().rxGain = 32;
    trace->Acquisition().rxNumSamples1 = 1000;
    trace->SetTrackIndex(2);
    return static_cast<CSonicTrace&>(doc.AddTrace(std::move(trace)));
}

TEST(SonicPage, ShowsTheTraceAndItsAcquisition)
{
    CBoreAnalystDoc doc;
    CSonicTrace& sonic = AddSonic(doc, "2SAA-1000");
    CollectingMessageSink sink;
    CSonicPropertiesDlg page(doc, sonic, sink);
    EXPECT_EQ(page.windowTitle(), QStringLiteral("Trace 1"));
    EXPECT_EQ(page.NameEdit()->text(), QStringLiteral("RX 1"));
    EXPECT_EQ(page.MinimumEdit()->value(), 100.0);
    EXPECT_EQ(page.MaximumEdit()->value(), 2100.0);
    EXPECT_EQ(page.UnitsEdit()->text(), QStringLiteral("us"));
    EXPECT_EQ(page.TrackButtons()->checkedId(), 2);
    EXPECT_EQ(page.TrackButtons()->checkedButton()->text(), QStringLiteral("RLeft"));
    EXPECT_EQ(page.MultiplierEdit()->text(), QStringLiteral("1"));
    ASSERT_NE(page.AcquisitionLabel(), nullptr);
    EXPECT_EQ(page.AcquisitionLabel()->text().toStdString(), SonicAcquisitionText(sonic));
    EXPECT_FALSE(page.MinimumEdit()->isReadOnly());
}

TEST(SonicPage, OkWritesTheMultiplierIntoTheGainWord)
{
    struct Case {
        const char* typed;
        bool accepted;
        std::int32_t gain;
    };
    const Case cases[] = {{"3", true, 232}, {"10", true, 932}, {"11", false, 32}, {"three", false, 32}};
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        CSonicTrace& sonic = AddSonic(doc, "2SAA-1000");
        CollectingMessageSink sink;
        CSonicPropertiesDlg page(doc, sonic, sink);
        page.MultiplierEdit()->setText(QString::fromLatin1(c.typed));
        page.HideCheck()->setChecked(true);
        page.TrackButtons()->button(1)->setChecked(true);
        EXPECT_EQ(page.ApplyToTrace(), c.accepted) << c.typed;
        EXPECT_EQ(sonic.Acquisition().rxGain, c.gain) << c.typed;
        EXPECT_EQ(sonic.IsHidden(), c.accepted) << c.typed;
        EXPECT_EQ(sonic.TrackIndex(), c.accepted ? 1 : 2) << c.typed;
        const std::vector<std::string> expected =
            c.accepted ? std::vector<std::string>{} : std::vector<std::string>{std::string(kIntensityMultiplierRangeMessage)};
        EXPECT_EQ(sink.Texts(), expected) << c.typed;
    }
}

TEST(SonicPage, NonWaveformToolsShowTheirNumbersReadOnly)
{
    CBoreAnalystDoc doc;
    CSonicTrace& sonic = AddSonic(doc, "2GSA-1000");
    CollectingMessageSink sink;
    CSonicPropertiesDlg page(doc, sonic, sink);
    EXPECT_TRUE(page.MinimumEdit()->isReadOnly());
    EXPECT_TRUE(page.MaximumEdit()->isReadOnly());
    EXPECT_TRUE(page.MultiplierEdit()->isReadOnly());
    EXPECT_EQ(page.AcquisitionLabel()->text(), QStringLiteral("Acquisition Properties:\nTool Type: 2GSA-1000\nNum Samples: 1000\n"));
    page.NameEdit()->setText("GSA");
    EXPECT_TRUE(page.ApplyToTrace());
    EXPECT_EQ(sonic.Name(), "GSA");
    EXPECT_EQ(sonic.ScaleRight(), 2100.0f);
}

TEST(ImagePage, SpectrumKeepsItsMultiplier)
{
    CBoreAnalystDoc doc;
    auto& spectrum = static_cast<CSpectralTrace&>(doc.AddTrace(std::make_unique<CSpectralTrace>("GRSP", 0.0f, 1024.0f, "cps")));
    CollectingMessageSink sink;
    CImagePropertiesDlg page(doc, spectrum, sink);
    EXPECT_EQ(page.AcquisitionLabel(), nullptr);
    EXPECT_EQ(page.MultiplierEdit()->text(), QStringLiteral("1"));
    page.MultiplierEdit()->setText("4");
    page.accept();
    EXPECT_EQ(page.result(), int(QDialog::Accepted));
    EXPECT_EQ(ImageIntensityMultiplier(spectrum), 4);
    CImagePropertiesDlg reopened(doc, spectrum, sink);
    EXPECT_EQ(reopened.MultiplierEdit()->text(), QStringLiteral("4"));
}

} // namespace
} // namespace ba
