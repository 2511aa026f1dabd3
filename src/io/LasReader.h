#pragma once
// Reads a LAS file (1.2, 2.0 or 3.0) into its header items, the definitions of its curves
// and the columns of its data, reporting every repair as it goes. It knows nothing of
// documents: LasImport turns the result into traces.
//
// Which data is read: the log data (~A, ~ASCII, ~Log_Data) with its curves (~C, ~Curve,
// ~Log_Definition). A LAS 3.0 file without log data gives its first data section instead
// (~Drilling_Data | Drilling_Definition, ...), and says so. Anything after the data that
// was read is not imported.

#include "base/MessageSink.h"
#include "io/LasColumns.h"
#include "io/LasDataParser.h"
#include "io/LasHeader.h"
#include "io/LasText.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

struct LasCurve {
    std::string mnemonic; // as written (UTF-8)
    std::string unit;     // the unit token, trimmed (UTF-8)
    std::size_t line = 0;
    std::size_t column = 0; // in the data, from 1 (the index is column 1)
    bool text = false;    // LAS 3.0 format {S} and the like: text, not imported
};

struct LasReadResult {
    bool ok = false;
    LasFileHeader header;
    std::string dataSection; // the name of the data section read, "A" for "~A"
    std::size_t dataSectionLine = 0;
    LasCurve index;
    LasIndexUnit indexUnit;
    std::vector<LasCurve> curves; // the numeric curves after the index, in column order
    // Columns: the index (stored metres or minutes) then one per curve; depths ascending.
    std::unique_ptr<LasDepthOrderedRows> rows;
    std::size_t dataLines = 0; // lines of the data section read
    std::size_t rowsRead = 0;  // rows met in them
};

// Reads the whole input. Messages name `fileName`. On a refusal, reports an "Error: " and
// returns ok = false.
LasReadResult ReadLas(ILasByteSource& source, std::string_view fileName, IMessageSink& sink,
                      std::size_t chunkBytes = LasLineReader::kDefaultChunkBytes);

} // namespace ba
