#include "view/CoherenceMapPainter.h"

#include "base/FileIO.h"
#include "base/MessageSink.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace ba {
namespace {

// A step between axis labels of about `span` / 6 from 1, 2 or 5 times a power of ten.
double TickStep(double span)
{
    if (!(span > 0.0)) return 1.0;
    const double raw = span / 6.0;
    const double decade = std::pow(10.0, std::floor(std::log10(raw)));
    for (const double m : {1.0, 2.0, 5.0, 10.0}) {
        if (m * decade >= raw) return m * decade;
    }
    return 10.0 * decade;
}

QString Number(double v) { return QString::number(v, 'g', 6); }

} // namespace

unsigned CoherenceColour(float rho)
{
    // Stops of the ramp: dark blue, blue, cyan, green, yellow, red.
    struct Stop {
        float at;
        int r, g, b;
    };
    static constexpr std::array<Stop, 6> stops = {
        Stop{0.0f, 10, 10, 60}, {0.3f, 30, 60, 200}, {0.5f, 0, 190, 220}, {0.7f, 40, 200, 60}, {0.85f, 250, 230, 0},
        {1.0f, 220, 20, 20}};
    const float x = std::clamp(std::isfinite(rho) ? rho : 0.0f, 0.0f, 1.0f);
    std::size_t k = 1;
    while (k + 1 < stops.size() && x > stops[k].at) ++k;
    const Stop& a = stops[k - 1];
    const Stop& b = stops[k];
    const float f = (x - a.at) / (b.at - a.at);
    const auto mix = [f](int p, int q) { return static_cast<unsigned>(std::lround(p + (q - p) * f)); };
    return 0xFF000000u | (mix(a.r, b.r) << 16) | (mix(a.g, b.g) << 8) | mix(a.b, b.b);
}

void DrawCoherenceMap(QPainter& painter, const QRectF& area, const CoherenceMapPicture& picture)
{
    const CoherenceMap& map = picture.map;
    painter.save();
    painter.fillRect(area, Qt::white);
    const QFontMetricsF metrics(painter.font());
    const double line = metrics.height();
    const QRectF plot = area.adjusted(metrics.horizontalAdvance(QStringLiteral("00000 us")) + 8, 3.3 * line + 6, -12,
                                      -1.5 * line - 4);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(area.left(), area.top() + 2, area.width(), line), Qt::AlignHCenter, picture.title);
    if (map.slowness.empty() || map.time.empty() || plot.width() < 4 || plot.height() < 4) {
        painter.drawText(plot, Qt::AlignCenter, QStringLiteral("No coherence at this station"));
        painter.restore();
        return;
    }

    // The map itself, one image pixel per grid cell, scaled into the plot.
    const int columns = static_cast<int>(map.slowness.size());
    const int rows = static_cast<int>(map.time.size());
    QImage cells(columns, rows, QImage::Format_RGB32);
    for (int r = 0; r < rows; ++r) {
        auto* pixels = reinterpret_cast<QRgb*>(cells.scanLine(r));
        for (int c = 0; c < columns; ++c) pixels[c] = CoherenceColour(map.At(static_cast<std::size_t>(r), static_cast<std::size_t>(c)));
    }
    painter.drawImage(plot, cells);
    painter.drawRect(plot);

    const double s0 = map.slowness.front();
    const double s1 = map.slowness.back();
    const double t0 = map.time.front();
    const double t1 = map.time.back();
    const auto x = [&](double s) { return plot.left() + (s1 > s0 ? (s - s0) / (s1 - s0) : 0.5) * plot.width(); };
    const auto y = [&](double t) { return plot.top() + (t1 > t0 ? (t - t0) / (t1 - t0) : 0.5) * plot.height(); };

    // Axes: slowness along the top, time down the left.
    const double sStep = TickStep(s1 - s0);
    for (double s = std::ceil(s0 / sStep) * sStep; s <= s1 + 1e-9; s += sStep) {
        painter.drawLine(QPointF(x(s), plot.top()), QPointF(x(s), plot.top() - 4));
        painter.drawText(QRectF(x(s) - 40, plot.top() - 4 - line, 80, line), Qt::AlignHCenter, Number(s));
    }
    painter.drawText(QRectF(plot.left(), area.top() + 2 + line, plot.width(), line), Qt::AlignHCenter,
                     QStringLiteral("Slowness (%1)").arg(picture.slownessUnit));
    const double tStep = TickStep(t1 - t0);
    for (double t = std::ceil(t0 / tStep) * tStep; t <= t1 + 1e-9; t += tStep) {
        painter.drawLine(QPointF(plot.left() - 4, y(t)), QPointF(plot.left(), y(t)));
        painter.drawText(QRectF(area.left(), y(t) - line / 2, plot.left() - area.left() - 6, line),
                         Qt::AlignRight | Qt::AlignVCenter, Number(t) + QStringLiteral(" us"));
    }

    // The labelled arrivals.
    const std::array<std::pair<const std::optional<CoherencePeak>*, QString>, 3> picks = {{
        {&picture.picks.compressional, QStringLiteral("P")},
        {&picture.picks.shear, QStringLiteral("S")},
        {&picture.picks.stoneley, QStringLiteral("St")},
    }};
    QFont bold = painter.font();
    bold.setBold(true);
    painter.setFont(bold);
    for (const auto& [pick, label] : picks) {
        if (!pick->has_value()) continue;
        const QPointF at(x((*pick)->slowness), y((*pick)->time));
        painter.setPen(QPen(Qt::white, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(at, 6, 6);
        const QString text =
            QStringLiteral("%1 %2 (%3)").arg(label, Number((*pick)->slowness), QString::number((*pick)->rho, 'f', 2));
        QPainterPath path;
        path.addText(at + QPointF(9, -5), bold, text);
        painter.strokePath(path, QPen(Qt::black, 3));
        painter.fillPath(path, Qt::white);
    }

    // The colour scale under the plot.
    const QRectF scale(plot.left(), plot.bottom() + 4, std::min(200.0, plot.width() / 2), line * 0.8);
    for (int i = 0; i < 100; ++i) {
        painter.fillRect(QRectF(scale.left() + scale.width() * i / 100.0, scale.top(), scale.width() / 100.0 + 0.5,
                                scale.height()),
                         QColor::fromRgb(CoherenceColour(static_cast<float>(i) / 99.0f)));
    }
    painter.setFont(QFont());
    painter.setPen(Qt::black);
    painter.drawText(QRectF(scale.right() + 6, scale.top() - line * 0.1, plot.width(), line), Qt::AlignLeft,
                     QStringLiteral("coherence 0 to 1"));
    painter.restore();
}

bool WriteCoherenceMapPng(const CoherenceMapPicture& picture, QSize size, const std::filesystem::path& path,
                          IMessageSink& sink)
{
    const std::string name = "\"" + path.string() + "\"";
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) {
        sink.Error("Error: cannot make a map of " + std::to_string(size.width()) + " x " + std::to_string(size.height()) +
                   " pixels for " + name + ": not enough memory.");
        return false;
    }
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        DrawCoherenceMap(painter, QRectF(QPointF(0, 0), QSizeF(size)), picture);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        sink.Error("Error: cannot write " + name + ": the PNG image could not be encoded.");
        return false;
    }
    try {
        WriteFileAtomically(path, std::span(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                            static_cast<std::size_t>(bytes.size())));
    } catch (const FileError& e) {
        sink.Error("Error: cannot write " + name + ": " + e.what() + ".");
        return false;
    }
    return true;
}

} // namespace ba
