#pragma once
// Column storage for the rows of a LAS data section, and the rule that orders them by depth.
//
// Rows are kept column by column in blocks that double in size up to a limit, so a
// million-row file never reallocates (no moment with the old and the new copy of a column
// both alive) and a file with thousands of curves but one row costs a few hundred bytes
// per curve, not a block each.

#include <cstddef>
#include <memory>
#include <vector>

namespace ba {

class LasColumnStore {
public:
    static constexpr std::size_t kFirstBlockRows = 64;
    static constexpr std::size_t kLargestBlockRows = std::size_t{1} << 16;

    explicit LasColumnStore(std::size_t columns);

    std::size_t Columns() const { return m_columns; }
    std::size_t Rows() const { return m_rows; }
    // Appends one row: `row` holds one value per column.
    void Append(const float* row);
    // Writes column c, in row order or reversed, to out[0 .. Rows()).
    void CopyColumn(std::size_t c, float* out, bool reversed) const;
    // Frees column c's blocks; it reads as nothing afterwards.
    void ReleaseColumn(std::size_t c);

private:
    void AddBlock();

    std::size_t m_columns;
    std::vector<std::size_t> m_blockRows;                    // capacity of each block
    std::vector<std::vector<std::unique_ptr<float[]>>> m_blocks; // [column][block]
    std::vector<float*> m_current;                           // each column's last block
    std::size_t m_fill = 0;                                  // rows in the last block
    std::size_t m_rows = 0;
};

// The import's depth rule, for all curves at once (every curve of a row gets the row's
// depth, so every curve would decide the same): a row deeper than the deepest row so far
// goes at the deep end, one shallower than the shallowest at the shallow end, and one in
// between is not written. The first row is always taken. Rows added at the shallow end are
// kept in reading order and reversed once at the end, so a file logged upwards costs no
// more than one logged downwards.
class LasDepthOrderedRows {
public:
    enum class Placement { DeepEnd, ShallowEnd, Covered };

    explicit LasDepthOrderedRows(std::size_t columns);

    std::size_t Columns() const { return m_deep.Columns(); }
    // row[0] is the stored depth; the rest are the values of the columns.
    Placement Add(const float* row);
    std::size_t Rows() const { return m_deep.Rows() + m_shallow.Rows(); }
    float Shallowest() const { return m_shallowest; }
    float Deepest() const { return m_deepest; }
    // Writes column c with the depths ascending to out[0 .. Rows()).
    void CopyColumn(std::size_t c, float* out) const;
    void ReleaseColumn(std::size_t c);

private:
    LasColumnStore m_deep;
    LasColumnStore m_shallow; // the shallowest row last
    float m_shallowest = 0.0f;
    float m_deepest = 0.0f;
};

// Hands memory freed by released columns back to the system where the allocator keeps it
// otherwise (glibc); elsewhere it does nothing.
void ReturnFreedMemoryToSystem();

} // namespace ba
