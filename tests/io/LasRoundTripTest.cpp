// LAS file -> document -> LAS file -> document: names, units and the curves survive.
//
// The export samples every trace on its own grid (from the deepest depth up, by the first
// trace's step), so the second document's samples are the first document's curves read at
// the grid depths; the check is that each exported value is what the first document gives
// at that depth, to the four decimals the export writes.

#include "io/LasExport.h"
#include "io/LasImport.h"
#include "model/LineTrace.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace ba {
namespace {

std::filesystem::path Fixture(const std::string& name)
{
    return std::filesystem::path(BA_TEST_DATA_DIR) / "io" / "data" / "las" / name;
}

struct RoundTripCase {
    const char* fixture;
    std::int32_t depthUnit;
    std::vector<std::string> names;
    std::vector<std::string> units;
};

class LasRoundTrip : public testing::TestWithParam<RoundTripCase> {};

TEST_P(LasRoundTrip, KeepsNamesUnitsAndValues)
{
    const RoundTripCase& c = GetParam();
    test::TempDir dir;
    CollectingMessageSink sink;

    CBoreAnalystDoc first;
    ASSERT_TRUE(ImportLas(first, Fixture(c.fixture), sink).imported) << testing::PrintToString(sink.Texts());
    ASSERT_TRUE(ExportLas(first, dir.Path("again.las"), sink)) << testing::PrintToString(sink.Texts());
    CBoreAnalystDoc second;
    ASSERT_TRUE(ImportLas(second, dir.Path("again.las"), sink).imported) << testing::PrintToString(sink.Texts());

    ASSERT_EQ(second.TraceCount(), c.names.size());
    for (std::size_t t = 0; t < second.TraceCount(); ++t) {
        const auto& before = dynamic_cast<const CLineTrace&>(first.Trace(t));
        const auto& after = dynamic_cast<const CLineTrace&>(second.Trace(t));
        EXPECT_EQ(after.Name(), c.names[t]);
        EXPECT_EQ(after.Units(), c.units[t]);
        EXPECT_EQ(after.DepthUnit(), c.depthUnit);
        EXPECT_EQ(after.TrackIndex(), before.TrackIndex());
        ASSERT_GT(after.SampleCount(), 1u);
        // The grid spans the first document's depth range.
        EXPECT_NEAR(after.FirstDepth(), before.FirstDepth(), 0.001);
        EXPECT_NEAR(after.LastDepth(), before.LastDepth(), 0.001);
        for (std::size_t i = 0; i < after.SampleCount(); ++i) {
            // Depths are written with three decimals, so the value was taken up to half a
            // millimetre (or thousandth of a foot) away from the depth read back.
            const float d = after.Depth(i);
            const float readings[] = {before.ValueAt(d - 0.0005f), before.ValueAt(d), before.ValueAt(d + 0.0005f)};
            const auto nulls = std::count_if(std::begin(readings), std::end(readings), IsNullSample);
            const float got = after.Value(i);
            if (nulls == 3) {
                EXPECT_TRUE(IsNullSample(got)) << after.Name() << " at " << d;
            } else if (nulls == 0) {
                const auto [lo, hi] = std::minmax({readings[0], readings[1], readings[2]});
                EXPECT_GE(got, lo - 0.5e-4f) << after.Name() << " at " << d;
                EXPECT_LE(got, hi + 0.5e-4f) << after.Name() << " at " << d;
            }
            // A depth half a step from a null sample may read either way; it is not checked.
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Fixtures, LasRoundTrip,
    testing::Values(RoundTripCase{"basic_metres.las", kDepthMetres, {"GR", "RHOB"}, {"GAPI", "G/CC"}},
                    RoundTripCase{"feet_logged_upwards.las", kDepthFeet, {"SP", "CALI"}, {"MV", "IN"}}),
    [](const auto& param) { return param.param.depthUnit == kDepthMetres ? std::string("Metres") : std::string("Feet"); });

} // namespace
} // namespace ba
