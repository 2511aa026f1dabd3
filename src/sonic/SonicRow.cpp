#include "sonic/SonicRow.h"

#include "model/SonicTrace.h"

namespace ba {

bool Rate2SamplesUsable(const SonicBlock& block)
{
    if (block.n2 <= 0 || block.sampleRate1 == 0) return true;
    return block.sampleRate2 % block.sampleRate1 == 0;
}

std::int32_t Rate2Expansion(const SonicBlock& block)
{
    return block.sampleRate1 == 0 ? 0 : block.sampleRate2 / block.sampleRate1;
}

std::size_t SonicRowWords(const SonicBlock& block)
{
    return static_cast<std::size_t>(block.n1) +
           static_cast<std::size_t>(Rate2Expansion(block)) * static_cast<std::size_t>(block.n2);
}

void BuildSonicRow(const SonicBlock& block, bool useRate2, ImageRow& row)
{
    row.assign(SonicRowWords(block), 0);
    const std::size_t n1 = static_cast<std::size_t>(block.n1);
    const std::uint8_t* in = block.samples.data();
    std::uint16_t* out = row.data();
    for (std::size_t i = 0; i < n1; ++i) {
        out[i] = static_cast<std::uint16_t>(in[2 * i] | ((in[2 * i + 1] & 0x0F) << 8));
    }
    if (!useRate2) return;

    const std::int32_t k = Rate2Expansion(block);
    if (k == 0) return;
    std::int32_t previous = n1 > 0 ? out[n1 - 1] : kSonicZeroLine;
    std::size_t w = n1;
    const std::size_t n2 = static_cast<std::size_t>(block.n2);
    for (std::size_t j = 0; j < n2; ++j) {
        const std::int32_t s = block.Sample(n1 + j);
        const std::int32_t step = s - previous;
        for (std::int32_t m = 0; m < k; ++m) {
            // Integer division truncates toward zero, as the expansion rule asks.
            out[w++] = static_cast<std::uint16_t>(previous + step * (m + 1) / k);
        }
        previous = s;
    }
}

} // namespace ba
