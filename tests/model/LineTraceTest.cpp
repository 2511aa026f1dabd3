#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <vector>

namespace ba {
namespace {

// Depths 10..13 m with values 1, 2, null, 4.
CLineTrace FourSamplesWithANull()
{
    CLineTrace t(1, kPenSolid, 0, 0.0f, 10.0f, "GR", "API");
    t.AppendSample(10.0f, 1.0f);
    t.AppendSample(11.0f, 2.0f);
    t.AppendSample(12.0f, kNullValue);
    t.AppendSample(13.0f, 4.0f);
    return t;
}

TEST(LineTraceValueAt, InterpolatesAndPassesNullsThrough)
{
    struct Case {
        const char* name;
        bool irregular;
        float d;
        float expected;
    };
    const Case cases[] = {
        {"first sample", false, 10.0f, 1.0f},
        {"halfway", false, 10.5f, 1.5f},
        {"quarter way", false, 10.25f, 1.25f},
        {"a sample reached from below", false, 11.0f, 2.0f},
        {"next to a null", false, 11.5f, kNullValue},
        {"the last sample is bracketed with the null before it", false, 13.0f, kNullValue},
        {"the last sample on an irregular axis is matched exactly", true, 13.0f, 4.0f},
        {"the null sample itself", true, 12.0f, kNullValue},
        {"within two steps past the end", false, 14.0f, 4.0f},
        {"within two steps above the top", false, 9.0f, 1.0f},
        {"far outside", false, 20.0f, kNullValue},
    };
    for (const auto& c : cases) {
        CLineTrace t = FourSamplesWithANull();
        t.SetFlag(2, c.irregular);
        EXPECT_FLOAT_EQ(t.ValueAt(c.d), c.expected) << c.name;
    }
}

TEST(LineTraceValueAt, EmptyAndSingleSampleTraces)
{
    const CLineTrace empty;
    EXPECT_EQ(empty.ValueAt(0.0f), kNullValue);
    CLineTrace one;
    one.AppendSample(5.0f, 42.0f);
    EXPECT_EQ(one.ValueAt(5.0f), 42.0f);
    EXPECT_EQ(one.ValueAt(5.01f), kNullValue);
    EXPECT_EQ(one.ValueAt(4.99f), kNullValue);
}

TEST(LineTraceValueAt, WorksInDisplayFeet)
{
    CLineTrace t;
    t.SetDepthUnit(kDepthFeet);
    t.AppendSample(1.0f, 100.0f); // 3.28084 ft
    t.AppendSample(2.0f, 200.0f); // 6.56168 ft
    t.AppendSample(3.0f, 300.0f); // 9.84252 ft
    EXPECT_NEAR(t.ValueAt(4.92126f), 150.0f, 1e-3);
    EXPECT_EQ(t.ValueAt(2.0f), 100.0f);      // within two steps (4.37 ft) above the top
    EXPECT_EQ(t.ValueAt(-1.5f), kNullValue); // beyond them
}

TEST(LineTraceRange, MinimumSkipsNullsButMaximumDoesNot)
{
    CLineTrace t = FourSamplesWithANull();
    t.Values()[0] = -3.0f;
    const ValueRange range = t.MinMax();
    EXPECT_EQ(range.minimum, -3.0f);
    EXPECT_EQ(range.maximum, 4.0f);

    CLineTrace allNull;
    allNull.AppendSample(1.0f, kNullValue);
    allNull.AppendSample(2.0f, kNullValue);
    EXPECT_EQ(allNull.MinMax().minimum, 1.0e6f);
    EXPECT_EQ(allNull.MinMax().maximum, kNullValue);

    const CLineTrace empty;
    EXPECT_EQ(empty.MinMax().minimum, 1.0e6f);
    EXPECT_EQ(empty.MinMax().maximum, -1.0e6f);

    CLineTrace belowNull; // a value below the null still lowers the minimum
    belowNull.AppendSample(1.0f, -20000.0f);
    belowNull.AppendSample(2.0f, kNullValue);
    EXPECT_EQ(belowNull.MinMax().minimum, -20000.0f);
    EXPECT_EQ(belowNull.MinMax().maximum, kNullValue);
}

TEST(LineTraceEditing, RemoveKeepsArraysAlignedWithExactCapacity)
{
    CLineTrace t = FourSamplesWithANull();
    t.AppendSample(14.0f, 5.0f);
    ASSERT_GT(t.Values().Capacity(), 5u);
    t.RemoveSample(4);
    EXPECT_EQ(t.SampleCount(), 4u);
    EXPECT_EQ(t.Values().Size(), 4u);
    EXPECT_EQ(t.Values().Capacity(), 4u);
    EXPECT_EQ(t.StoredDepths().Capacity(), 4u);
    t.RemoveSample(1);
    EXPECT_EQ(t.StoredDepth(1), 12.0f);
    EXPECT_EQ(t.Value(1), kNullValue);
    EXPECT_EQ(t.StoredDepth(2), 13.0f);
    EXPECT_EQ(t.Value(2), 4.0f);
    EXPECT_EQ(t.Values().Capacity(), 3u);
    t.RemoveSample(7); // past the end: nothing changes
    EXPECT_EQ(t.SampleCount(), 3u);
}

TEST(LineTraceEditing, InsertOpensTheArraysOrExtendsThem)
{
    CLineTrace t;
    t.AppendSample(1.0f, 10.0f);
    t.AppendSample(3.0f, 30.0f);
    t.InsertSample(1, 2.0f, 20.0f);
    ASSERT_EQ(t.SampleCount(), 3u);
    EXPECT_EQ(t.StoredDepth(1), 2.0f);
    EXPECT_EQ(t.Value(1), 20.0f);
    EXPECT_EQ(t.StoredDepth(2), 3.0f);
    EXPECT_EQ(t.Value(2), 30.0f);

    t.InsertSample(5, 6.0f, 60.0f);
    ASSERT_EQ(t.SampleCount(), 6u);
    ASSERT_EQ(t.Values().Size(), 6u);
    EXPECT_EQ(t.StoredDepth(3), 0.0f);
    EXPECT_EQ(t.Value(4), 0.0f);
    EXPECT_EQ(t.StoredDepth(5), 6.0f);
    EXPECT_EQ(t.Value(5), 60.0f);
}

TEST(LineTracePen, ColoursComeFromTheTable)
{
    const std::uint32_t expected[] = {0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0xFF00FF, 0xFFFF00, 0x00FFFF};
    for (std::int32_t i = 0; i < kLineColourCount; ++i) {
        const CLineTrace t(2, kPenDash, i, 0.0f, 1.0f, "X", "");
        EXPECT_EQ(t.Colour(), expected[i]) << i;
    }
    EXPECT_EQ(LineColourFromIndex(7), 0u);
    CLineTrace t;
    EXPECT_EQ(t.Name(), "Unnamed");
    EXPECT_EQ(t.ScaleLeft(), 0.0f);
    EXPECT_EQ(t.ScaleRight(), 100.0f);
    EXPECT_EQ(t.VerticalScale(), 10.0f);
    EXPECT_EQ(t.DepthUnit(), kDepthMetres);
    t.ChangePen(3, kPenDot, 4);
    EXPECT_EQ(t.PenWidth(), 3);
    EXPECT_EQ(t.PenStyle(), kPenDot);
    EXPECT_EQ(t.Colour(), 0xFF00FFu);
    t.ChangePen(1, kPenSolid, 2, 0x123456);
    EXPECT_EQ(t.ColourIndex(), 2);
    EXPECT_EQ(t.Colour(), 0x123456u);
}

TEST(GrowableArray, GrowsByAnEighthClampedToFourAndTenTwentyFour)
{
    CFloatArray a;
    struct Step {
        std::size_t size;
        std::size_t capacity;
    };
    // After each listed size is reached by single appends, the capacity is as shown.
    const Step steps[] = {{1, 4}, {4, 4}, {5, 8}, {33, 36}, {37, 40}, {65, 70}, {8193, 8254}, {9217, 9278}};
    for (const auto& s : steps) {
        while (a.Size() < s.size) a.Add(0.0f);
        EXPECT_EQ(a.Capacity(), s.capacity) << s.size;
    }
    CFloatArray fixed(100);
    fixed.Add(1.0f);
    EXPECT_EQ(fixed.Capacity(), 100u);
}

// A copy shares the storage until either side changes; each change, made to the copy or to
// the original, leaves the other with the elements it had.
TEST(GrowableArray, CopiesShareUntilOneChanges)
{
    struct Change {
        const char* name;
        void (*apply)(CFloatArray&);
        std::vector<float> after;
    };
    const Change changes[] = {
        {"element", [](CFloatArray& a) { a[1] = 9.0f; }, {1.0f, 9.0f, 3.0f}},
        {"data", [](CFloatArray& a) { a.Data()[0] = 9.0f; }, {9.0f, 2.0f, 3.0f}},
        {"add", [](CFloatArray& a) { a.Add(4.0f); }, {1.0f, 2.0f, 3.0f, 4.0f}},
        {"insert", [](CFloatArray& a) { a.InsertAt(0, 0.0f); }, {0.0f, 1.0f, 2.0f, 3.0f}},
        {"remove", [](CFloatArray& a) { a.RemoveAt(2); }, {1.0f, 2.0f}},
        {"size", [](CFloatArray& a) { a.SetSize(4); }, {1.0f, 2.0f, 3.0f, 0.0f}},
        {"assign", [](CFloatArray& a) { a.Assign(std::vector<float>{5.0f}); }, {5.0f}},
        {"clear", [](CFloatArray& a) { a.Clear(); }, {}},
    };
    const std::vector<float> before = {1.0f, 2.0f, 3.0f};
    for (const Change& c : changes) {
        for (const bool changeTheCopy : {true, false}) {
            CFloatArray original;
            original.Assign(before);
            CFloatArray copy = original;
            ASSERT_TRUE(copy.SharesStorageWith(original));
            CFloatArray& changed = changeTheCopy ? copy : original;
            const CFloatArray& kept = changeTheCopy ? original : copy;
            c.apply(changed);
            const auto items = [](const CFloatArray& a) { return std::vector<float>(a.Items().begin(), a.Items().end()); };
            EXPECT_EQ(items(changed), c.after) << c.name;
            EXPECT_EQ(items(kept), before) << c.name;
            EXPECT_FALSE(copy.SharesStorageWith(original)) << c.name;
        }
    }
    // A copy made by a change has exactly the copied size as its capacity, as before sharing.
    CFloatArray grown;
    for (int i = 0; i < 5; ++i) grown.Add(1.0f);
    CFloatArray copy = grown;
    copy[0] = 2.0f;
    EXPECT_EQ(copy.Capacity(), 5u);
    EXPECT_EQ(grown.Capacity(), 8u);
}

} // namespace
} // namespace ba
