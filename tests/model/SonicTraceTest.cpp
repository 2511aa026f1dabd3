#include "model/Archive.h"
#include "model/SonicTrace.h"

#include "model/ImageTraceSamples.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

using test::Hex;
using test::ToHex;

TEST(SonicTrace, ConstructionDefaults)
{
    const CSonicTrace named("RX 1", 0.0f, 100.0f, "us");
    EXPECT_EQ(named.ToolType(), "Unknown");
    EXPECT_EQ(named.Acquisition(), SonicAcquisition{});
    const CSonicTrace read;
    EXPECT_EQ(read.ToolType(), "");
}

TEST(SonicTrace, IntensityMultiplierKeepsTheGainCode)
{
    struct Case {
        std::int32_t gain;
        std::int32_t multiplier;
        std::int32_t expectedGain;
    };
    const Case cases[] = {{32, 3, 232}, {232, 1, 32}, {5, 10, 905}, {907, 2, 107}};
    for (const auto& c : cases) {
        CSonicTrace t;
        t.Acquisition().rxGain = c.gain;
        t.SetIntensityMultiplier(c.multiplier);
        EXPECT_EQ(t.Acquisition().rxGain, c.expectedGain) << c.gain;
        EXPECT_EQ(t.GainCode(), c.gain % 100) << c.gain;
        EXPECT_EQ(t.IntensityMultiplier(), c.multiplier) << c.gain;
    }
}

TEST(SonicAcquisitionText, WaveformToolsListEveryFieldAndOtherToolsOnlyTheSampleCount)
{
    struct Case {
        const char* toolType;
        SonicAcquisition acquisition;
        const char* expected;
    };
    const Case cases[] = {
        {"2SAA-1000", {20, 0, 4, 50, 1, 100, 50, 8, 24, 25, 205, 0},
         "Acquisition Properties:\nTool Type: 2SAA-1000\nTX Frequency: 20 KHz\nTX Mode: Monopole/Dipole\n"
         "TX Num Stacks: 4\nTX Stack Interval: 50 ms\nRX Mode: Dipole\nRX Num Samples 1: 100\n"
         "RX Num Samples 2: 50\nRX Sample Rate 1: 8 us\nRX Sample Rate 2: 24 us\nRX Holdoff Time: 250 us\n"
         "RX Gain: 5\n"},
        {"Mount Sopris CLP w/ FWS upgrade", {20, 3, 1, 0, 2, 512, 0, 4, 4, 0, 232, 0},
         "Acquisition Properties:\nTool Type: Mount Sopris CLP w/ FWS upgrade\nTX Frequency: 20 KHz\n"
         "TX Mode: Reverse Dipole Stacking\nTX Num Stacks: 1\nTX Stack Interval: 0 ms\n"
         "RX Mode: Reverse Dipole Stacking\nRX Num Samples 1: 512\nRX Num Samples 2: 0\n"
         "RX Sample Rate 1: 4 us\nRX Sample Rate 2: 4 us\nRX Holdoff Time: 0 us\nRX Gain: AGC"},
        {"Unknown", {}, // RX mode 0 is monopole
         "Acquisition Properties:\nTool Type: Unknown\nTX Frequency: 0 KHz\nTX Mode: Monopole/Dipole\n"
         "TX Num Stacks: 0\nTX Stack Interval: 0 ms\nRX Mode: Monopole\nRX Num Samples 1: 0\n"
         "RX Num Samples 2: 0\nRX Sample Rate 1: 0 us\nRX Sample Rate 2: 0 us\nRX Holdoff Time: 0 us\n"
         "RX Gain: 0\n"},
        {"2SNA-1000-S", {20, 0, 4, 50, 1, 1024, 50, 8, 24, 25, 232, 0},
         "Acquisition Properties:\nTool Type: 2SNA-1000-S\nNum Samples: 1024\n"},
        {"2GSA-1000", {0, 0, 0, 0, 0, 256, 0, 0, 0, 0, 0, 0},
         "Acquisition Properties:\nTool Type: 2GSA-1000\nNum Samples: 256\n"},
    };
    for (const auto& c : cases) {
        CSonicTrace t;
        t.SetToolType(c.toolType);
        t.Acquisition() = c.acquisition;
        EXPECT_EQ(SonicAcquisitionText(t), c.expected) << c.toolType;
    }
    EXPECT_FALSE(IsNonWaveformSonicTool("2sna-1000-s")); // the names are compared exactly
}

// Rows, name, units, the ten header values, depths, tool type, and the acquisition
// fields 1..12 of SampleSonic without RX mode (5).
std::vector<std::uint8_t> SampleSonicClipboardImage()
{
    return test::Concat({Hex("02 00 00 00 | 02 00 00 00 01 00 ff 0f | 00 00 00 00"), test::Fixed25("RX 1"),
                         test::Fixed25("us"),
                         Hex("00 00 00 00 | 00 00 c8 42 | 01 00 00 00 | 00 00 00 00"
                             "| 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 | 00 00 20 41 | 01 00 00 00"
                             "| 02 00 00 00 | 00 00 80 3f 00 00 00 40"),
                         test::Fixed25("2SAA-1000"),
                         Hex("01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 06 00 00 00 07 00 00 00"
                             "08 00 00 00 09 00 00 00 0a 00 00 00 0b 00 00 00 0c 00 00 00")});
}

TEST(SonicClipboardImage, MatchesTheHandComputedLayout)
{
    EXPECT_EQ(ToHex(test::SampleSonic()->ClipboardImage()), ToHex(SampleSonicClipboardImage()));
}

TEST(SonicClipboardImage, RoundTripDropsRxModeAndKeepsTheRest)
{
    auto original = test::SampleSonic();
    original->SetFlag(kHiddenTraceFlag, true);
    original->SetDepthUnit(kDepthFeet);
    original->SetHeaderBox({1, -2, 3, -4});
    const auto pasted = CSonicTrace::FromClipboardImage(original->ClipboardImage());
    SonicAcquisition expected = original->Acquisition();
    expected.rxMode = 0;
    EXPECT_EQ(pasted->Acquisition(), expected);
    EXPECT_EQ(pasted->Acquisition().reserved, 12);
    EXPECT_EQ(pasted->ToolType(), "2SAA-1000");
    EXPECT_EQ(pasted->Name(), "RX 1");
    EXPECT_EQ(pasted->Units(), "us");
    EXPECT_EQ(pasted->Rows(), original->Rows());
    EXPECT_EQ(pasted->StoredDepths().Items().size(), 2u);
    EXPECT_EQ(pasted->StoredDepth(1), 2.0f);
    EXPECT_EQ(pasted->DepthUnit(), kDepthFeet);
    EXPECT_TRUE(pasted->IsHidden());
    EXPECT_EQ(pasted->HeaderBox(), (CRect32{1, -2, 3, -4}));
    EXPECT_EQ(pasted->TrackIndex(), 1);
}

TEST(SonicClipboardImage, MalformedImagesAreRefusedWithTheOffsetInTheBlock)
{
    const auto image = SampleSonicClipboardImage();
    constexpr std::size_t kBase = 12;
    for (std::size_t n = 0; n < image.size(); ++n) {
        try {
            CSonicTrace::FromClipboardImage(std::span(image).first(n), kBase);
            ADD_FAILURE() << "prefix " << n << " accepted";
        } catch (const ArchiveException& e) {
            EXPECT_GE(e.Offset(), kBase) << "prefix " << n;
            EXPECT_LE(e.Offset(), kBase + n) << "prefix " << n << ": " << e.what();
        }
    }
    auto longer = image;
    longer.push_back(0);
    try {
        CSonicTrace::FromClipboardImage(longer, kBase);
        ADD_FAILURE() << "a trailing byte was accepted";
    } catch (const ArchiveException& e) {
        EXPECT_EQ(e.Offset(), kBase + image.size());
        EXPECT_STREQ(e.what(), "a sonic trace clipboard image: 1 bytes follow the end of the sonic trace clipboard "
                               "image (byte offset 199)");
    }
    auto hugeRows = image;
    hugeRows[3] = 0x7F;
    try {
        CSonicTrace::FromClipboardImage(hugeRows, kBase);
        ADD_FAILURE() << "a row count past the image was accepted";
    } catch (const ArchiveException& e) {
        EXPECT_EQ(e.Fault(), ArchiveFault::BadCount);
        EXPECT_EQ(e.Offset(), kBase);
    }
}

} // namespace
} // namespace ba
