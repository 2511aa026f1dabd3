#include "view/PlotText.h"

#include <cmath>
#include <cstdio>

namespace ba {
namespace {

// Removes trailing zeros after the point, then the point itself; "-0" becomes "0".
std::string TrimFraction(std::string text)
{
    if (text.find('.') != std::string::npos) {
        while (!text.empty() && text.back() == '0') text.pop_back();
        if (!text.empty() && text.back() == '.') text.pop_back();
    }
    if (text == "-0") text = "0";
    return text;
}

std::string Format(double value, int decimals)
{
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, "%1.*f", decimals, value);
    // Values beyond what 64 characters hold (about 1e55) are not plot scales; show them
    // in exponent form rather than cut.
    if (length < 0 || length >= static_cast<int>(sizeof buffer)) {
        std::snprintf(buffer, sizeof buffer, "%g", value);
        return buffer;
    }
    return buffer;
}

} // namespace

std::string LegendNumberText(float value)
{
    if (!std::isfinite(value)) return Format(static_cast<double>(value), 7);
    return TrimFraction(Format(static_cast<double>(value), 7));
}

std::string DepthUnitCaption(std::int32_t depthUnit)
{
    switch (depthUnit) {
    case 0: return "ft";
    case 1: return "m";
    case 2: return "s";
    case 3: return "min";
    case 4: return "h";
    case 5: return "d";
    default: return "";
    }
}

double NiceDepthStep(double minimumStep)
{
    double power = std::pow(10.0, std::floor(std::log10(minimumStep)));
    for (;;) {
        for (const double mantissa : {1.0, 2.0, 5.0}) {
            if (mantissa * power >= minimumStep * (1.0 - 1e-12)) return mantissa * power;
        }
        power *= 10.0;
    }
}

std::string DepthLabelText(double depth, double step)
{
    const int decimals = step >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9));
    return TrimFraction(Format(depth, decimals));
}

} // namespace ba
