#include "sonic/BackgroundProcess.h"

#include "sonic/ProgressMessageLoop.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace ba {
namespace {

using test::MessageLoop;

// A job whose station i computes a value that depends on i alone, and which records what
// it handed over.
class CountingJob final : public CProcess {
public:
    explicit CountingJob(std::size_t stations, bool independent = false)
        : m_independent(independent), values(stations, 0.0f)
    {
    }
    std::string JobName() const override { return "Counting"; }
    std::size_t StationCount() const override { return values.size(); }
    bool StationsIndependent() const override { return m_independent; }
    void ComputeStation(std::size_t i) override
    {
        double sum = 0.0;
        for (std::size_t k = 1; k <= 50; ++k) sum += std::sin(static_cast<double>(i * k) * 1e-3) / static_cast<double>(k);
        values[i] = static_cast<float>(sum);
        if (!m_independent) computed.push_back(i); // not from several threads at once
    }
    void Finish(std::size_t stations) override { handedOver.push_back(stations); }

    bool m_independent;
    std::vector<float> values;
    std::vector<std::size_t> computed; // in order, for a job whose stations depend on each other
    std::vector<std::size_t> handedOver;
};

TEST(BackgroundProcess, ProgressRunsFromZeroToAHundredAStationAtATime)
{
    constexpr std::size_t kStations = 400;
    CountingJob job(kStations);
    MessageLoop loop;
    loop.panel.Open();
    EXPECT_EQ(loop.panel.StatusText(), "Processing..., Please Wait.");
    ASSERT_TRUE(loop.host.Start(job, loop));
    CountingJob other(3);
    EXPECT_FALSE(loop.host.Start(other, loop)); // one job at a time
    loop.Run();

    // 0 when the job starts, trunc(i * 100 / 400) after station i of the first 399, then a
    // full bar before the dialog closes.
    std::vector<int> expected = {0};
    for (std::size_t i = 1; i < kStations; ++i) expected.push_back(static_cast<int>(i / 4));
    expected.push_back(100);
    EXPECT_EQ(loop.progress, expected);
    EXPECT_EQ(std::vector<int>(loop.progress.begin(), loop.progress.begin() + 6),
              (std::vector<int>{0, 0, 0, 0, 1, 1}));
    EXPECT_EQ(loop.finished, 1);
    EXPECT_EQ(job.computed.size(), kStations);
    EXPECT_EQ(job.handedOver, std::vector<std::size_t>{kStations});
    EXPECT_FALSE(loop.host.Running());
    EXPECT_FALSE(loop.panel.IsOpen());
    EXPECT_EQ(job.StopFlag(), 1);
    EXPECT_EQ(ProgressPercent(1, 3), 33);
    EXPECT_EQ(ProgressPercent(2, 3), 66);
}

// Stop is pressed twice after `pressAfter` progress messages: one request, one change of
// text; the station under way completes and every computed station is handed over.
TEST(BackgroundProcess, AStopCompletesTheStationUnderWayAndKeepsTheOutputs)
{
    struct Case {
        std::size_t pressAfter; // progress messages delivered before the presses
        std::size_t kept;       // stations handed over
    };
    // Pressed before the first step, the stop is waiting when the first ready arrives: one
    // station still completes. Later, the station under way completes likewise.
    const Case cases[] = {{1, 1}, {2, 2}, {10, 10}};
    for (const Case& c : cases) {
        CountingJob job(400);
        MessageLoop loop;
        loop.panel.Open();
        ASSERT_TRUE(loop.host.Start(job, loop));
        bool pressed = false;
        std::size_t textChanges = 0;
        loop.Run([&] {
            if (pressed || loop.progress.size() != c.pressAfter) return;
            pressed = true;
            const std::string before = loop.panel.StatusText();
            EXPECT_TRUE(loop.panel.PressStop());
            if (loop.panel.StatusText() != before) ++textChanges;
            EXPECT_FALSE(loop.panel.PressStop());
        });
        EXPECT_EQ(loop.stopRequests, 1) << c.pressAfter;
        EXPECT_EQ(textChanges, 1u) << c.pressAfter;
        EXPECT_EQ(loop.panel.StatusText(),
                  "Waiting for processing to complete at current depth; this may take a minute or two...");
        EXPECT_EQ(job.handedOver, std::vector<std::size_t>{c.kept}) << c.pressAfter;
        EXPECT_EQ(job.computed.size(), c.kept) << c.pressAfter;
        EXPECT_EQ(loop.finished, 1);
        EXPECT_NE(loop.progress.back(), 100) << "a stopped job does not fill the bar";
        EXPECT_FALSE(loop.host.Running());
    }
}

// Without a panel a job runs to its end in one go; on several threads when its stations are
// independent, with the same results to the bit.
TEST(BackgroundProcess, RunWithoutPanelGivesTheSameResultsOnAnyNumberOfThreads)
{
    constexpr std::size_t kStations = 1000;
    CountingJob reference(kStations);
    RunWithoutPanel(reference);
    EXPECT_EQ(reference.handedOver, std::vector<std::size_t>{kStations});
    std::vector<std::size_t> inOrder(kStations);
    for (std::size_t i = 0; i < kStations; ++i) inOrder[i] = i;
    EXPECT_EQ(reference.computed, inOrder);

    for (const unsigned threads : {1u, 2u, 3u, 8u}) {
        CountingJob job(kStations, true);
        RunWithoutPanel(job, threads);
        EXPECT_EQ(job.handedOver, std::vector<std::size_t>{kStations}) << threads;
        for (std::size_t i = 0; i < kStations; ++i) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(job.values[i]), std::bit_cast<std::uint32_t>(reference.values[i]))
                << threads << " threads, station " << i;
        }
    }
}

} // namespace
} // namespace ba
