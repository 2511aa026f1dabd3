// Imports every file of the real-world LAS corpus and checks it against
// data/las_corpus_expectations.tsv, which takes its curve and row counts from the corpus's
// own MANIFEST.tsv unless it states an override and its reason, and holds values read off a
// sample of the files by hand.

#include "LasTestSupport.h"

#include "io/LasImport.h"
#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

namespace ba {
namespace {

using test::AllMessages;

std::vector<std::string> SplitTabs(const std::string& line)
{
    std::vector<std::string> fields;
    std::stringstream stream(line);
    std::string field;
    while (std::getline(stream, field, '\t')) fields.push_back(field);
    return fields;
}

// Rows of a tab-separated file with a header line, keyed by the first column. Lines
// starting with '#' are comments.
std::map<std::string, std::map<std::string, std::string>> ReadTable(const std::filesystem::path& path)
{
    std::ifstream in(path);
    std::map<std::string, std::map<std::string, std::string>> table;
    std::vector<std::string> header;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        const std::vector<std::string> fields = SplitTabs(line);
        if (header.empty()) {
            header = fields;
            continue;
        }
        auto& row = table[fields.at(0)];
        for (std::size_t i = 0; i < header.size() && i < fields.size(); ++i) row[header[i]] = fields[i];
    }
    return table;
}

std::size_t CountOrManifest(const std::string& field, const std::string& manifestValue, long offset)
{
    const long n = std::stol(field == "manifest" ? manifestValue : field);
    return static_cast<std::size_t>(field == "manifest" ? n + offset : n);
}

void ExpectNear(float actual, const std::string& expected, const std::string& what)
{
    if (expected == "-") return;
    if (expected == "null") {
        EXPECT_TRUE(IsNullSample(actual)) << what << ": " << actual;
        return;
    }
    const double e = std::stod(expected);
    EXPECT_NEAR(actual, e, 1e-6 * std::max(1.0, std::fabs(e))) << what;
}

TEST(LasCorpus, EveryFileImportsOrIsRefusedAsExpected)
{
    const std::filesystem::path corpus = BA_LAS_CORPUS_DIR;
    if (!std::filesystem::exists(corpus / "MANIFEST.tsv")) {
        GTEST_SKIP() << "the LAS corpus is not at " << corpus << " (it lives beside the checkout in shared/corpus/las)";
    }
    const auto manifest = ReadTable(corpus / "MANIFEST.tsv");
    const auto expectations = ReadTable(std::filesystem::path(BA_TEST_DATA_DIR) / "io/data/las_corpus_expectations.tsv");
    ASSERT_FALSE(manifest.empty());
    EXPECT_EQ(expectations.size(), manifest.size()) << "every corpus file needs one line of expectations";

    std::size_t imported = 0;
    std::size_t refused = 0;
    std::size_t handChecked = 0;
    for (const auto& [path, m] : manifest) {
        const auto found = expectations.find(path);
        ASSERT_NE(found, expectations.end()) << path << " has no expectations";
        const auto& e = found->second;

        CBoreAnalystDoc doc;
        CollectingMessageSink sink;
        const LasImportResult result = ImportLas(doc, corpus / path, sink);
        if (e.at("outcome") == "refused") {
            ++refused;
            EXPECT_FALSE(result.imported) << path;
            EXPECT_EQ(doc.TraceCount(), 0u) << path;
            ASSERT_FALSE(sink.messages.empty()) << path;
            EXPECT_EQ(sink.messages.back().severity, Severity::Error) << path;
            EXPECT_NE(sink.messages.back().text.find(e.at("error")), std::string::npos)
                << path << "\n" << AllMessages(sink);
            continue;
        }
        ++imported;
        ASSERT_TRUE(result.imported) << path << "\n" << AllMessages(sink);
        const std::size_t traces = CountOrManifest(e.at("traces"), m.at("ncurves"), -1);
        const std::size_t samples = CountOrManifest(e.at("samples"), m.at("data_lines"), 0);
        EXPECT_EQ(doc.TraceCount(), traces) << path << ": " << e.at("reason");
        EXPECT_EQ(result.samplesPerTrace, samples) << path << ": " << e.at("reason");
        if (e.at("depth_unit") != "-") {
            EXPECT_EQ(result.depthUnit, std::stoi(e.at("depth_unit"))) << path;
        }
        for (const Message& message : sink.messages) EXPECT_NE(message.severity, Severity::Error) << path;
        for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
            const CTrace& trace = doc.Trace(i);
            ASSERT_EQ(trace.SampleCount(), samples) << path;
            for (std::size_t k = 1; k < trace.SampleCount(); ++k) {
                ASSERT_LT(trace.StoredDepth(k - 1), trace.StoredDepth(k)) << path << " trace " << i;
            }
        }
        if (e.at("first_trace") == "-" || doc.TraceCount() == 0) continue;
        ++handChecked;
        const auto& first = dynamic_cast<const CLineTrace&>(doc.Trace(0));
        EXPECT_EQ(first.Name(), e.at("first_trace")) << path;
        ExpectNear(first.FirstDepth(), e.at("min_depth"), path + " shallowest depth");
        ExpectNear(first.LastDepth(), e.at("max_depth"), path + " deepest depth");
        ExpectNear(first.Value(0), e.at("value_at_min"), path + " value at the shallowest depth");
        ExpectNear(first.Value(first.SampleCount() - 1), e.at("value_at_max"), path + " value at the deepest depth");
    }
    EXPECT_GE(handChecked, 30u);
    std::cout << "LAS corpus: " << imported << " files imported, " << refused << " refused, " << handChecked
              << " checked against values read by hand\n";
}

} // namespace
} // namespace ba
