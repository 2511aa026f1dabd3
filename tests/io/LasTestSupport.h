#pragma once
// Helpers shared by the LAS import tests: building small LAS texts, reading them, and
// looking at what came out.

#include "base/MessageSink.h"
#include "io/LasReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace ba::test {

inline const std::string kLasFixtures = std::string(BA_TEST_DATA_DIR) + "/io/data/las/";

// A LAS 2.0 text: ~V (with `versionLines` added), ~W with the NULL line (none when
// `null` is empty), ~C with `curves` (one "MNEM.UNIT" per line), ~A with `data`.
inline std::string LasText(std::string_view curves, std::string_view data, std::string_view null = "-999.25",
                           std::string_view versionLines = " WRAP. NO :\n")
{
    std::string text = "~VERSION INFORMATION\n VERS. 2.0 : CWLS LOG ASCII STANDARD\n";
    text += versionLines;
    text += "~WELL INFORMATION\n";
    if (!null.empty()) text += " NULL. " + std::string(null) + " : NULL VALUE\n";
    text += "~CURVE INFORMATION\n";
    text += curves;
    text += "~A\n";
    text += data;
    return text;
}

inline LasReadResult ReadLasText(std::string_view text, CollectingMessageSink& sink,
                                 std::size_t chunkBytes = LasLineReader::kDefaultChunkBytes)
{
    LasMemorySource source(text);
    return ReadLas(source, "test.las", sink, chunkBytes);
}

// Column c of the rows read (0 is the stored index), depths ascending.
inline std::vector<float> Column(const LasReadResult& result, std::size_t c)
{
    std::vector<float> values(result.rows ? result.rows->Rows() : 0);
    if (result.rows) result.rows->CopyColumn(c, values.data());
    return values;
}

inline bool AnyMessageContains(const CollectingMessageSink& sink, std::string_view part)
{
    return std::any_of(sink.messages.begin(), sink.messages.end(),
                       [&](const Message& m) { return m.text.find(part) != std::string::npos; });
}

inline std::string AllMessages(const CollectingMessageSink& sink)
{
    std::string all;
    for (const Message& m : sink.messages) all += m.text + "\n";
    return all;
}

// Nothing reported when `expected` is empty; otherwise a message that contains it. A
// failure lists every message.
inline ::testing::AssertionResult ReportsMessageOrNothing(const CollectingMessageSink& sink, std::string_view expected)
{
    if (expected.empty() ? sink.messages.empty() : AnyMessageContains(sink, expected)) {
        return ::testing::AssertionSuccess();
    }
    auto failure = ::testing::AssertionFailure();
    if (expected.empty()) failure << "expected no message, got:\n";
    else failure << "expected a message containing \"" << expected << "\", got:\n";
    return failure << AllMessages(sink);
}

} // namespace ba::test
