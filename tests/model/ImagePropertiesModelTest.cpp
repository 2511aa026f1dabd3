#include "model/ImagePropertiesModel.h"

#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <gtest/gtest.h>

#include <memory>

namespace ba {
namespace {

template <typename Trace>
Trace& Add(CBoreAnalystDoc& doc, std::unique_ptr<Trace> trace)
{
    return static_cast<Trace&>(doc.AddTrace(std::move(trace)));
}

TEST(ImageProperties, MultiplierIsCheckedAndKeptWhereEachKindKeepsIt)
{
    struct Case {
        const char* name;
        std::int32_t multiplier;
        bool accepted;
    };
    const Case cases[] = {{"lowest", 1, true}, {"highest", 10, true}, {"zero", 0, false}, {"eleven", 11, false}};
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        auto& sonic = Add(doc, std::make_unique<CSonicTrace>("RX 1", 0.0f, 100.0f, "us"));
        sonic.Acquisition().rxGain = 32;
        auto& spectrum = Add(doc, std::make_unique<CSpectralTrace>("GRSP", 0.0f, 1024.0f, "cps"));
        CollectingMessageSink sink;
        ImagePropertyEdit edit;
        edit.intensityMultiplier = c.multiplier;
        EXPECT_EQ(ApplyImageProperties(doc, sonic, edit, sink), c.accepted) << c.name;
        EXPECT_EQ(ApplyImageProperties(doc, spectrum, edit, sink), c.accepted) << c.name;
        if (c.accepted) {
            EXPECT_TRUE(sink.messages.empty()) << c.name;
            EXPECT_EQ(sonic.Acquisition().rxGain, 32 + 100 * (c.multiplier - 1)) << c.name; // the AGC code stays
            EXPECT_EQ(ImageIntensityMultiplier(sonic), c.multiplier) << c.name;
            EXPECT_EQ(ImageIntensityMultiplier(spectrum), c.multiplier) << c.name;
            EXPECT_TRUE(doc.IsModified());
        } else {
            EXPECT_EQ(sink.Texts(), (std::vector<std::string>(2, std::string(kIntensityMultiplierRangeMessage))))
                << c.name;
            EXPECT_EQ(sonic.Acquisition().rxGain, 32) << c.name;
            EXPECT_EQ(ImageIntensityMultiplier(spectrum), 1) << c.name; // never set: 1
            EXPECT_FALSE(doc.IsModified());
        }
    }
}

TEST(ImageProperties, CommonEntriesFollowTheTraceSheetRules)
{
    CBoreAnalystDoc doc;
    auto& image = Add(doc, std::make_unique<CImageTrace>("IMG", 0.0f, 100.0f, "cps"));
    CollectingMessageSink sink;
    ImagePropertyEdit edit;
    edit.common.name = "  Density image ";
    edit.common.units = "g/cc";
    edit.common.scaleLeft = 5.0f;
    edit.common.scaleRight = 50.0f;
    edit.common.trackIndex = 3;
    edit.common.hidden = true;
    edit.intensityMultiplier = 4;
    ASSERT_TRUE(ApplyImageProperties(doc, image, edit, sink));
    const ImagePageValues values = ImagePageValuesOf(image);
    EXPECT_EQ(values.name, "Density image");
    EXPECT_EQ(values.units, "g/cc");
    EXPECT_EQ(values.minimum, 5.0f);
    EXPECT_EQ(values.maximum, 50.0f);
    EXPECT_EQ(values.trackIndex, 3);
    EXPECT_TRUE(values.hidden);
    EXPECT_EQ(values.intensityMultiplier, 4);
    EXPECT_TRUE(values.acquisitionText.empty());

    ImagePropertyEdit equalEnds;
    equalEnds.common.scaleLeft = 7.0f;
    equalEnds.common.scaleRight = 7.0f;
    equalEnds.intensityMultiplier = 2;
    EXPECT_FALSE(ApplyImageProperties(doc, image, equalEnds, sink));
    EXPECT_EQ(sink.Texts().back(), std::string(kEqualScaleEndsMessage));
    EXPECT_EQ(ImageIntensityMultiplier(image), 4); // nothing changed
}

TEST(ImageProperties, NonWaveformToolsLockTheirNumericFields)
{
    CBoreAnalystDoc doc;
    auto& sonic = Add(doc, std::make_unique<CSonicTrace>("RX 1", 0.0f, 100.0f, "us"));
    sonic.SetToolType("2SNA-1000-S");
    sonic.Acquisition().rxNumSamples1 = 512;
    const ImagePageValues values = ImagePageValuesOf(sonic);
    EXPECT_TRUE(values.numericFieldsLocked);
    EXPECT_EQ(values.acquisitionText, "Acquisition Properties:\nTool Type: 2SNA-1000-S\nNum Samples: 512\n");

    CollectingMessageSink sink;
    ImagePropertyEdit unchanged;
    unchanged.common.name = "RX 2";
    unchanged.common.scaleLeft = 0.0f;
    unchanged.common.scaleRight = 100.0f;
    unchanged.intensityMultiplier = 1;
    EXPECT_TRUE(ApplyImageProperties(doc, sonic, unchanged, sink));
    EXPECT_EQ(sonic.Name(), "RX 2");

    ImagePropertyEdit changed = unchanged;
    changed.common.scaleRight = 200.0f;
    EXPECT_FALSE(ApplyImageProperties(doc, sonic, changed, sink));
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{std::string(kLockedNumericFieldsMessage)});
    EXPECT_EQ(sonic.ScaleRight(), 100.0f);

    sonic.SetToolType("2SAA-1000");
    EXPECT_FALSE(ImagePageValuesOf(sonic).numericFieldsLocked);
    EXPECT_TRUE(ApplyImageProperties(doc, sonic, changed, sink));
}

TEST(ImageProperties, MultiplierTextMustBeAWholeNumberInRange)
{
    struct Case {
        const char* text;
        std::optional<std::int32_t> value;
    };
    const Case cases[] = {{"3", 3}, {" 10 ", 10}, {"1", 1}, {"0", std::nullopt}, {"11", std::nullopt},
                          {"2.5", std::nullopt}, {"", std::nullopt}, {"x", std::nullopt}, {"-1", std::nullopt},
                          {"99999999999", std::nullopt}};
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        EXPECT_EQ(ParseIntensityMultiplier(c.text, sink), c.value) << '"' << c.text << '"';
        const std::vector<std::string> expected =
            c.value ? std::vector<std::string>{} : std::vector<std::string>{std::string(kIntensityMultiplierRangeMessage)};
        EXPECT_EQ(sink.Texts(), expected) << '"' << c.text << '"';
    }
}

} // namespace
} // namespace ba
