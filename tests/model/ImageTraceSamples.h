#pragma once
// Small image, sonic and spectrum traces whose document records are written out by hand
// in the tests, and the record bytes they must produce.

#include "model/ImageTrace.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include "support/Bytes.h"

#include <memory>
#include <string>
#include <vector>

namespace ba::test {

// Depths 1 m and 2 m, scale 0..100, track 1, vertical scale 10, metres; the first row
// holds the smallest and largest 12-bit samples, the second row is empty.
template <typename T>
std::unique_ptr<T> TwoRowTrace(const std::string& name)
{
    auto t = std::make_unique<T>(name, 0.0f, 100.0f, "us");
    t->SetTrackIndex(1);
    return t;
}

inline void AddTwoRows(CImageTrace& t)
{
    t.AppendRow(1.0f, {0x0001, 0x0FFF});
    t.AppendRow(2.0f, {});
}

// The common trace fields of TwoRowTrace, then its two rows.
inline std::vector<std::uint8_t> TwoRowRecord(const std::string& name)
{
    return Concat({Fixed25(name), Fixed25("us"),
                   Hex("02 00 00 00 | 00 00 00 00 | 00 00 c8 42 | 01 00 00 00 | 00 00 00 00"
                       "| 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                       "| 00 00 00 00 | 00 00 20 41 | 00 00 00 00 | 01 00 00 00"
                       "| 00 00 80 3f 00 00 00 40"
                       "| 02 00 00 00 | 02 00 00 00 01 00 ff 0f | 00 00 00 00")});
}

inline std::unique_ptr<CImageTrace> SampleImage()
{
    auto t = TwoRowTrace<CImageTrace>("IMG");
    AddTwoRows(*t);
    return t;
}

inline std::vector<std::uint8_t> SampleImageRecord() { return TwoRowRecord("IMG"); }

// Tool "2SAA-1000", acquisition fields 1..12 in stored order (so RX mode is 5).
inline std::unique_ptr<CSonicTrace> SampleSonic()
{
    auto t = TwoRowTrace<CSonicTrace>("RX 1");
    AddTwoRows(*t);
    t->SetToolType("2SAA-1000");
    t->Acquisition() = SonicAcquisition{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    return t;
}

inline std::vector<std::uint8_t> SampleSonicRecord()
{
    return Concat({TwoRowRecord("RX 1"), Hex("09 '2SAA-1000'"),
                   Hex("01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00"
                       "07 00 00 00 08 00 00 00 09 00 00 00 0a 00 00 00 0b 00 00 00 0c 00 00 00")});
}

// Text "K", value 7; acquisition times 1 and 2 s, total times 10 and 100 s,
// temperatures 0 and -2 degrees, high voltages 0.5 and 1 V.
inline std::unique_ptr<CSpectralTrace> SampleSpectral()
{
    auto t = TwoRowTrace<CSpectralTrace>("GRSP");
    t->AppendSpectrum(1.0f, {0x0001, 0x0FFF}, 1.0f, 10.0f, 0.0f, 0.5f);
    t->AppendSpectrum(2.0f, {}, 2.0f, 100.0f, -2.0f, 1.0f);
    t->SetText("K");
    t->SetValue(7);
    return t;
}

inline std::vector<std::uint8_t> SampleSpectralRecord()
{
    return Concat({TwoRowRecord("GRSP"), Hex("02 00 00 00 | 01 'K' | 07 00 00 00"),
                   Hex("00 00 80 3f 00 00 00 40 | 00 00 20 41 00 00 c8 42"
                       "| 00 00 00 00 00 00 00 c0 | 00 00 00 3f 00 00 80 3f")});
}

} // namespace ba::test
