#include "numeric/OneBasedArrays.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba::numeric {
namespace {

TEST(OneBasedVector, EveryIndexFromLowToHighIsUsableAndContiguous)
{
    struct Case {
        int nl;
        int nh;
    };
    const Case cases[] = {{1, 5}, {0, 3}, {3, 7}, {-2, 2}, {1, 1}};
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::EquationFitter);
    for (const auto& c : cases) {
        float* v = vector(c.nl, c.nh, reporter);
        ASSERT_NE(v, nullptr) << c.nl << ".." << c.nh;
        for (int i = c.nl; i <= c.nh; ++i) v[i] = static_cast<float>(10 * i);
        for (int i = c.nl; i <= c.nh; ++i) EXPECT_EQ(v[i], static_cast<float>(10 * i));
        EXPECT_EQ(&v[c.nh] - &v[c.nl], c.nh - c.nl);
        // The spare element in front of the first one in use belongs to the block.
        v[c.nl - 1] = -1.0f;
        free_vector(v, c.nl, c.nh);

        std::int32_t* iv = ivector(c.nl, c.nh, reporter);
        ASSERT_NE(iv, nullptr);
        for (int i = c.nl; i <= c.nh; ++i) iv[i] = i;
        for (int i = c.nl; i <= c.nh; ++i) EXPECT_EQ(iv[i], i);
        free_ivector(iv, c.nl, c.nh);
    }
    EXPECT_TRUE(sink.messages.empty());
}

TEST(OneBasedMatrix, RowsAreOffsetIntoOneContiguousBlock)
{
    struct Case {
        int nrl, nrh, ncl, nch;
    };
    const Case cases[] = {{1, 3, 1, 4}, {0, 2, 1, 1}, {2, 5, -1, 1}, {1, 1, 1, 1}};
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::Flowmeter);
    for (const auto& c : cases) {
        float** m = matrix(c.nrl, c.nrh, c.ncl, c.nch, reporter);
        ASSERT_NE(m, nullptr);
        const int columns = c.nch - c.ncl + 1;
        for (int i = c.nrl; i <= c.nrh; ++i)
            for (int j = c.ncl; j <= c.nch; ++j) m[i][j] = static_cast<float>(100 * i + j);
        for (int i = c.nrl; i <= c.nrh; ++i)
            for (int j = c.ncl; j <= c.nch; ++j) EXPECT_EQ(m[i][j], static_cast<float>(100 * i + j));
        // Row after row without gaps: the last element of the last row is rows·columns - 1
        // elements after the first of the first.
        EXPECT_EQ(&m[c.nrh][c.nch] - &m[c.nrl][c.ncl], (c.nrh - c.nrl + 1) * columns - 1);
        free_matrix(m, c.nrl, c.nrh, c.ncl, c.nch);
    }
    EXPECT_TRUE(sink.messages.empty());
}

TEST(OneBasedAllocation, EmptyRangesAreValid)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::SpectralFit);
    float* v = vector(1, 0, reporter);
    float** m = matrix(1, 0, 1, 0, reporter);
    EXPECT_NE(v, nullptr);
    EXPECT_NE(m, nullptr);
    free_vector(v, 1, 0);
    free_matrix(m, 1, 0, 1, 0);
    EXPECT_TRUE(sink.messages.empty());
}

// Bounds that describe a negative size fail, show the text of the user's variant and hand
// back a null handle.
TEST(OneBasedAllocation, FailuresShowTheTextOfTheVariant)
{
    enum class Kind { Vector, IntVector, MatrixRows, MatrixBlock };
    struct Case {
        NumericVariant variant;
        Kind kind;
        const char* expected;
    };
    const Case cases[] = {
        {NumericVariant::EquationFitter, Kind::Vector, "Error: allocation failure in vector()"},
        {NumericVariant::EquationFitter, Kind::IntVector, "Error: allocation failure in ivector()"},
        {NumericVariant::EquationFitter, Kind::MatrixRows, "Error: allocation failure 1 in matrix()"},
        {NumericVariant::Flowmeter, Kind::MatrixRows, "Error: allocation failure 1 in matrix()"},
        {NumericVariant::Flowmeter, Kind::MatrixBlock, "Error: allocation failure 2 in matrix()"},
        {NumericVariant::PrincipalComponents, Kind::IntVector, "Error: Allocation failure in ivector()."},
        {NumericVariant::PrincipalComponents, Kind::MatrixBlock, "Error: allocation failure 2 in matrix()"},
        {NumericVariant::SpectralFit, Kind::Vector, "allocation failure in vector()"},
        {NumericVariant::SpectralFit, Kind::IntVector, "allocation failure in ivector()"},
        {NumericVariant::SpectralFit, Kind::MatrixRows, "allocation failure 1 in matrix()"},
        {NumericVariant::SpectralFit, Kind::MatrixBlock, "allocation failure 2 in matrix()"},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, c.variant);
        bool isNull = false;
        switch (c.kind) {
        case Kind::Vector: isNull = vector(5, 2, reporter) == nullptr; break;
        case Kind::IntVector: isNull = ivector(5, 2, reporter) == nullptr; break;
        case Kind::MatrixRows: isNull = matrix(1, -5, 1, 3, reporter) == nullptr; break;
        case Kind::MatrixBlock: isNull = matrix(1, 3, 1, -5, reporter) == nullptr; break;
        }
        EXPECT_TRUE(isNull) << c.expected;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.expected});
    }
}

} // namespace
} // namespace ba::numeric
