#include "cli/JsonFormat.h"

#include "cli/NumberText.h"

#include <charconv>
#include <cmath>

namespace ba::cli {

Json FloatJson(float value)
{
    if (!std::isfinite(value)) return nullptr;
    const std::string text = ShortestText(value);
    double widened = 0.0;
    // The text is to_chars output for a finite float, which from_chars always reads whole.
    std::from_chars(text.data(), text.data() + text.size(), widened);
    return widened;
}

Json FloatArrayJson(std::span<const float> values)
{
    Json array = Json::array();
    array.get_ref<Json::array_t&>().reserve(values.size());
    for (const float v : values) array.push_back(FloatJson(v));
    return array;
}

Json RectJson(const CRect32& rect) { return Json::array({rect.left, rect.top, rect.right, rect.bottom}); }

namespace {

constexpr int kIndentStep = 2;

void AppendScalar(std::string& out, const Json& json)
{
    out += json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool HoldsOnlyScalars(const Json& array)
{
    for (const auto& element : array) {
        if (element.is_structured()) return false;
    }
    return true;
}

void AppendJson(std::string& out, const Json& json, int indent)
{
    const std::string inner(static_cast<std::size_t>(indent + kIndentStep), ' ');
    const std::string closing(static_cast<std::size_t>(indent), ' ');
    if (json.is_object()) {
        if (json.empty()) {
            out += "{}";
            return;
        }
        out += "{\n";
        bool first = true;
        for (const auto& [key, value] : json.items()) {
            if (!first) out += ",\n";
            first = false;
            out += inner;
            AppendScalar(out, Json(key));
            out += ": ";
            AppendJson(out, value, indent + kIndentStep);
        }
        out += "\n" + closing + "}";
    } else if (json.is_array()) {
        if (HoldsOnlyScalars(json)) {
            out += '[';
            bool first = true;
            for (const auto& element : json) {
                if (!first) out += ", ";
                first = false;
                AppendScalar(out, element);
            }
            out += ']';
            return;
        }
        out += "[\n";
        bool first = true;
        for (const auto& element : json) {
            if (!first) out += ",\n";
            first = false;
            out += inner;
            AppendJson(out, element, indent + kIndentStep);
        }
        out += "\n" + closing + "]";
    } else {
        AppendScalar(out, json);
    }
}

} // namespace

std::string JsonText(const Json& json)
{
    std::string out;
    AppendJson(out, json, 0);
    out += '\n';
    return out;
}

} // namespace ba::cli
