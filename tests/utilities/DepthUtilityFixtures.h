#pragma once
// Small documents for the depth shift, resample and splice tests, and what every one of
// those utilities owes whatever it computes: a refusal reports one exact message and
// leaves the document's bytes and history alone; an applied change undoes to the exact
// bytes from before and redoes to the exact bytes from after.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ba::test {

inline constexpr float kNull = kNullValue;
inline constexpr std::size_t kIrregularAxisFlag = 2;

struct LineSetup {
    std::string name;
    std::string units;
    std::vector<float> depths; // display units
    std::vector<float> values;
    std::int32_t depthUnit = kDepthMetres;
};

// A line trace with its own pen and scale, so that a result can be seen to keep them;
// display depths are stored through the unit's factor (feet as metres, seconds as minutes).
inline CLineTrace& AddLine(CBoreAnalystDoc& doc, const LineSetup& setup)
{
    auto trace = std::make_unique<CLineTrace>(2, kPenDash, 3, -5.0f, 50.0f, setup.name, setup.units);
    trace->SetDepthUnit(setup.depthUnit);
    const double factor = DepthUnitFactor(setup.depthUnit);
    for (std::size_t i = 0; i < setup.depths.size(); ++i) {
        trace->AppendSample(static_cast<float>(setup.depths[i] / factor), setup.values.at(i));
    }
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

// Checks a trace's display depths and values against expected ones: within `tolerance`,
// and a null exactly where one is expected.
inline void ExpectSamples(const CTrace& trace, const std::vector<float>& depths, const std::vector<float>& values,
                          double tolerance)
{
    ASSERT_EQ(trace.SampleCount(), depths.size()) << trace.Name();
    const auto* line = dynamic_cast<const CLineTrace*>(&trace);
    for (std::size_t i = 0; i < depths.size(); ++i) {
        EXPECT_NEAR(trace.Depth(i), depths[i], tolerance) << trace.Name() << " depth " << i;
        if (line == nullptr || values.empty()) continue;
        if (IsNullSample(values[i])) EXPECT_TRUE(IsNullSample(line->Value(i))) << trace.Name() << " value " << i;
        else EXPECT_NEAR(line->Value(i), values[i], tolerance) << trace.Name() << " value " << i;
    }
}

// Runs `make` (which returns a change, given a sink) and expects exactly `message` and
// no change, with the document untouched.
template <typename Make>
void ExpectRefused(const CBoreAnalystDoc& doc, Make&& make, const std::string& message)
{
    const auto before = WriteDocumentBytes(doc);
    CollectingMessageSink sink;
    const std::unique_ptr<CDocumentChange> change = make(sink);
    EXPECT_EQ(change, nullptr);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{message});
    EXPECT_EQ(WriteDocumentBytes(doc), before);
    EXPECT_EQ(doc.History().Size(), 0u);
}

// Applies the change `make` returns, which must come without an error, under
// `description`; checks that undo gives back the bytes from before and redo the bytes
// from after. Returns the sink's messages.
template <typename Make>
std::vector<std::string> ApplyAndCheckHistory(CBoreAnalystDoc& doc, Make&& make, std::string_view description)
{
    const auto before = WriteDocumentBytes(doc);
    CollectingMessageSink sink;
    std::unique_ptr<CDocumentChange> change = make(sink);
    if (change == nullptr) {
        ADD_FAILURE() << "refused: " << (sink.messages.empty() ? "" : sink.messages.front().text);
        return sink.Texts();
    }
    EXPECT_EQ(change->Description(), description);
    doc.Apply(std::move(change));
    const auto after = WriteDocumentBytes(doc);
    EXPECT_NE(after, before);
    doc.Undo();
    EXPECT_EQ(WriteDocumentBytes(doc), before) << description << ": undo";
    doc.Redo();
    EXPECT_EQ(WriteDocumentBytes(doc), after) << description << ": redo";
    return sink.Texts();
}

} // namespace ba::test
