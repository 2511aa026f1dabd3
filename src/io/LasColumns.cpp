#include "io/LasColumns.h"

#include <algorithm>
#include <cstring>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace ba {

LasColumnStore::LasColumnStore(std::size_t columns)
    : m_columns(columns), m_blocks(columns), m_current(columns, nullptr)
{
}

void LasColumnStore::AddBlock()
{
    const std::size_t rows =
        m_blockRows.empty() ? kFirstBlockRows : std::min(m_blockRows.back() * 2, kLargestBlockRows);
    for (std::size_t c = 0; c < m_columns; ++c) {
        m_blocks[c].push_back(std::make_unique_for_overwrite<float[]>(rows));
        m_current[c] = m_blocks[c].back().get();
    }
    m_blockRows.push_back(rows);
    m_fill = 0;
}

void LasColumnStore::Append(const float* row)
{
    if (m_blockRows.empty() || m_fill == m_blockRows.back()) AddBlock();
    for (std::size_t c = 0; c < m_columns; ++c) m_current[c][m_fill] = row[c];
    ++m_fill;
    ++m_rows;
}

void LasColumnStore::CopyColumn(std::size_t c, float* out, bool reversed) const
{
    const auto& blocks = m_blocks.at(c);
    std::size_t written = 0;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        const std::size_t n = b + 1 == blocks.size() ? m_fill : m_blockRows[b];
        const float* block = blocks[b].get();
        if (!reversed) {
            std::memcpy(out + written, block, n * sizeof(float));
        } else {
            float* dest = out + (m_rows - written - n);
            std::reverse_copy(block, block + n, dest);
        }
        written += n;
    }
}

void LasColumnStore::ReleaseColumn(std::size_t c)
{
    std::vector<std::unique_ptr<float[]>>().swap(m_blocks.at(c));
    m_current[c] = nullptr;
}

void ReturnFreedMemoryToSystem()
{
#if defined(__GLIBC__)
    // Blocks live among other allocations on the heap, so freeing them alone gives no
    // memory back; without this the freed columns and the traces built from them would
    // both count against the process until it ends.
    malloc_trim(0);
#endif
}

LasDepthOrderedRows::LasDepthOrderedRows(std::size_t columns) : m_deep(columns), m_shallow(columns) {}

LasDepthOrderedRows::Placement LasDepthOrderedRows::Add(const float* row)
{
    const float depth = row[0];
    if (Rows() == 0) {
        m_shallowest = m_deepest = depth;
        m_deep.Append(row);
        return Placement::DeepEnd;
    }
    if (depth > m_deepest) {
        m_deepest = depth;
        m_deep.Append(row);
        return Placement::DeepEnd;
    }
    if (depth < m_shallowest) {
        m_shallowest = depth;
        m_shallow.Append(row);
        return Placement::ShallowEnd;
    }
    return Placement::Covered;
}

void LasDepthOrderedRows::CopyColumn(std::size_t c, float* out) const
{
    m_shallow.CopyColumn(c, out, true);
    m_deep.CopyColumn(c, out + m_shallow.Rows(), false);
}

void LasDepthOrderedRows::ReleaseColumn(std::size_t c)
{
    m_deep.ReleaseColumn(c);
    m_shallow.ReleaseColumn(c);
    ReturnFreedMemoryToSystem();
}

} // namespace ba
