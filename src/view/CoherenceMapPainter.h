#pragma once
// A station's slowness-time coherence as a picture: slowness across (fast on the left),
// window start time down, the coherence 0..1 as colour from dark blue through green and
// yellow to red, the labelled arrivals ringed and named (P, S, St). The QC view of the
// desktop and the map command's PNG files draw it here.

#include "sonic/ModePicking.h"
#include "sonic/Semblance.h"

#include <QSize>
#include <QString>

#include <filesystem>

class QPainter;
class QRectF;

namespace ba {

class IMessageSink;

struct CoherenceMapPicture {
    CoherenceMap map;
    ModePicks picks;
    QString slownessUnit; // "us/ft" or "us/m"
    QString title;        // e.g. the station's depth
};

// The colour of a coherence, as 0xAARRGGBB.
unsigned CoherenceColour(float rho);

void DrawCoherenceMap(QPainter& painter, const QRectF& area, const CoherenceMapPicture& picture);

// Draws the picture at `size` and writes it as a PNG file, whole or not at all. False, with
// an error naming the file, when it cannot.
bool WriteCoherenceMapPng(const CoherenceMapPicture& picture, QSize size, const std::filesystem::path& path,
                          IMessageSink& sink);

} // namespace ba
