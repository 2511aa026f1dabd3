#include "units/UnitVocabulary.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <stdexcept>
#include <unordered_map>

namespace ba {
namespace {

// A family of spellings of one canonical unit: every stem followed by every ending. A
// plain list of whole spellings has the single empty ending.
struct SpellingFamily {
    std::string_view canonical;
    std::span<const std::string_view> stems;
    std::span<const std::string_view> endings;
};

struct Recogniser {
    UnitType type;
    std::span<const SpellingFamily> families;
};

constexpr std::string_view kWhole[] = {""};

// --- whole spellings (all upper case: labels are upper-cased before matching)
constexpr std::string_view kInchSpellings[] = {"IN", "INCH", "INCHES"};
constexpr std::string_view kMetreSpellings[] = {"M", "METERS", "MTRS"};
constexpr std::string_view kCentimetreSpellings[] = {"CM"};
constexpr std::string_view kMillimetreSpellings[] = {"MM"};
constexpr std::string_view kOhmMetreSpellings[] = {"OHM-M", "OHM-MTR", "OHM-MTRS"};
constexpr std::string_view kOhmCentimetreSpellings[] = {"OHM-CM", "OHM-CMTR", "OHM-CMTRS"};
constexpr std::string_view kMinuteSpellings[] = {"MIN", "MINUTES", "MINUTE"};
constexpr std::string_view kSecondSpellings[] = {"S", "SEC", "SECONDS"};
constexpr std::string_view kMillisecondSpellings[] = {"M-S",      "MS",        "M-SEC",        "MSEC",
                                                      "MILLISEC", "MILLI-SEC", "MILLISECONDS", "MILLI-SECONDS"};
constexpr std::string_view kMicrosecondSpellings[] = {"U-S",      "US",        "U-SEC",        "USEC",
                                                      "MICROSEC", "MICRO-SEC", "MICROSECONDS", "MICRO-SECONDS"};
constexpr std::string_view kLitreSpellings[] = {"L", "LITERS", "LITER"};
constexpr std::string_view kGallonSpellings[] = {"GAL", "GALLON", "GALLONS"};
constexpr std::string_view kCubicFootSpellings[] = {"FT^3",       "FEET^3",   "CUBIC-FT",
                                                    "CUBIC-FEET", "CUBIC FT", "CUBIC FEET"};
constexpr std::string_view kCubicYardSpellings[] = {"YRDS^3",      "YARDS^3",    "CUBIC-YRDS",
                                                    "CUBIC-YARDS", "CUBIC YRDS", "CUBIC YARDS"};
constexpr std::string_view kCubicMetreSpellings[] = {"M^3", "MTR^3", "MTRS^3", "METER^3", "METERS^3"};
// "CELCIUS" is the spelling labels have always used, and "DEGREES C" was never accepted
// although "DEGREES F" is; both are kept so that existing labels classify as before.
constexpr std::string_view kCelsiusSpellings[] = {
    "CELCIUS",         "CENTIGRADE",         "C",        "DEG CELCIUS", "DEG CENTIGRADE", "DEG C",
    "DEGREES CELCIUS", "DEGREES CENTIGRADE", "DEGREESC", "DEGCELCIUS",  "DEGCENTIGRADE",  "DEGC",
    "DEGREESCELCIUS",  "DEGREESCENTIGRADE"};
// "CUBIC METERS" at the end never matches here: Volume is tried first and takes it.
constexpr std::string_view kFahrenheitSpellings[] = {
    "FAHRENHEIT",         "F",    "DEG F",         "DEG FAHRENHEIT", "DEGREES F",
    "DEGREES FAHRENHEIT", "DEGF", "DEGFAHRENHEIT", "DEGREESF",       "DEGREESFAHRENHEIT",
    "CUBIC METERS"};

// --- stems and endings of the spelling families
constexpr std::string_view kFeetWords[] = {"FT", "FEET"};
constexpr std::string_view kMetreWords[] = {"M", "MTRS", "METERS"};
constexpr std::string_view kPerSecondVelocity[] = {"/SEC", "/S", "/SECOND"};
constexpr std::string_view kPerMinuteVelocity[] = {"/MIN", "/M", "/MINUTE"};
constexpr std::string_view kMicrosecondWords[] = {"US",  "USEC",  "USECONDS",  "MICROSEC",  "MICROSECONDS",
                                                  "U-S", "U-SEC", "U-SECONDS", "MICRO-SEC", "MICRO-SECONDS"};
constexpr std::string_view kPerMetreSlowness[] = {"/METER", "/MTR", "/M"};
constexpr std::string_view kPerFootSlowness[] = {"/FOOT", "/FT"};

constexpr std::string_view kMhoWords[] = {"MHO", "S", "SIEMENS", "SMN", "SMNS"};
constexpr std::string_view kMillimhoWords[] = {"MMHO",     "MS",     "MSIEMENS",     "MSMN",     "MSMNS",
                                               "MILLIMHO", "MILLIS", "MILLISIEMENS", "MILLISMN", "MILLISMNS"};
constexpr std::string_view kMicromhoWords[] = {"UMHO",     "US",     "USIEMENS",     "USMN",     "USMNS",
                                               "MICROMHO", "MICROS", "MICROSIEMENS", "MICROSMN", "MICROSMNS"};
constexpr std::string_view kPerCentimetre[] = {"/CM", "/CMTR", "/CMTRS"};
constexpr std::string_view kPerMetre[] = {"/M", "/MTR", "/MTRS"};

constexpr std::string_view kGallonWords[] = {"G", "GAL", "GALLON"};
constexpr std::string_view kLitreWords[] = {"L", "LITER"};
constexpr std::string_view kPerMinute[] = {"/M", "/MIN", "/MINUTE"};
constexpr std::string_view kPerSecond[] = {"/S", "/SEC", "/SECOND"};
constexpr std::string_view kPerDay[] = {"/D", "/DAY"};

constexpr std::string_view kSquareFeetWords[] = {"SQUARE FEET", "SQ FEET", "SQUARE FT", "SQ FT", "FEET^2", "FT^2"};
constexpr std::string_view kSquareMetreWords[] = {"SQUARE METERS", "SQUARE METER", "SQ METERS", "SQ METER",
                                                  "SQUARE MTRS",   "SQUARE MTR",   "SQ MTRS",   "SQ MTR",
                                                  "METERS^2",      "METER^2",      "MTRS^2",    "MTR^2"};

constexpr std::string_view kCubicWords[] = {"CUBIC-", "CUBIC "};
constexpr std::string_view kCubicMetreEndings[] = {"M", "MTR", "MTRS", "METER", "METERS"};

// --- the recognisers, each with its families in the order they are compared
constexpr SpellingFamily kLength[] = {
    {"ft", kFeetWords, kWhole},           {"in", kInchSpellings, kWhole},       {"m", kMetreSpellings, kWhole},
    {"cm", kCentimetreSpellings, kWhole}, {"mm", kMillimetreSpellings, kWhole},
};

constexpr SpellingFamily kVelocitySlowness[] = {
    {"m/s", kMetreWords, kPerSecondVelocity},       {"ft/s", kFeetWords, kPerSecondVelocity},
    {"m/min", kMetreWords, kPerMinuteVelocity},     {"ft/min", kFeetWords, kPerMinuteVelocity},
    {"us/m", kMicrosecondWords, kPerMetreSlowness}, {"us/ft", kMicrosecondWords, kPerFootSlowness},
};

constexpr SpellingFamily kResistivityOhmMho[] = {
    {"ohm-m", kOhmMetreSpellings, kWhole},
    {"ohm-cm", kOhmCentimetreSpellings, kWhole},
    {"mho/cm", kMhoWords, kPerCentimetre},
    {"mho/m", kMhoWords, kPerMetre},
};

constexpr SpellingFamily kResistivityMilliMicro[] = {
    {"mmho/cm", kMillimhoWords, kPerCentimetre},
    {"mmho/m", kMillimhoWords, kPerMetre},
    {"umho/cm", kMicromhoWords, kPerCentimetre},
    {"umho/m", kMicromhoWords, kPerMetre},
};

// Gallons are "g/min" and "g/s" here, while the offered units and the conversion table
// spell them "gal/min" and "gal/s": a gallon flow label finds no factor (see CUnitConversion).
constexpr SpellingFamily kFlow[] = {
    {"g/min", kGallonWords, kPerMinute},
    {"g/s", kGallonWords, kPerSecond},
    {"l/min", kLitreWords, kPerMinute},
    {"l/s", kLitreWords, kPerSecond},
};

constexpr SpellingFamily kTransmissivityFeet[] = {
    {"ft^2/s", kSquareFeetWords, kPerSecond},
    {"ft^2/min", kSquareFeetWords, kPerMinute},
    {"ft^2/day", kSquareFeetWords, kPerDay},
};

constexpr SpellingFamily kTransmissivityMetres[] = {
    {"m^2/s", kSquareMetreWords, kPerSecond},
    {"m^2/min", kSquareMetreWords, kPerMinute},
    {"m^2/day", kSquareMetreWords, kPerDay},
};

constexpr SpellingFamily kTime[] = {
    {"min", kMinuteSpellings, kWhole},
    {"s", kSecondSpellings, kWhole},
    {"ms", kMillisecondSpellings, kWhole},
    {"us", kMicrosecondSpellings, kWhole},
};

constexpr SpellingFamily kVolume[] = {
    {"liters", kLitreSpellings, kWhole},   {"gal", kGallonSpellings, kWhole},
    {"ft^3", kCubicFootSpellings, kWhole}, {"yards^3", kCubicYardSpellings, kWhole},
    {"m^3", kCubicMetreSpellings, kWhole}, {"m^3", kCubicWords, kCubicMetreEndings},
};

constexpr SpellingFamily kTemperature[] = {
    {"Deg C", kCelsiusSpellings, kWhole},
    {"Deg F", kFahrenheitSpellings, kWhole},
};

// The order in which the recognisers are tried; the first that accepts a label wins.
constexpr Recogniser kRecognisers[] = {
    {UnitType::Length, kLength},
    {UnitType::VelocitySlowness, kVelocitySlowness},
    {UnitType::ResistivityConductivity, kResistivityOhmMho},
    {UnitType::ResistivityConductivity, kResistivityMilliMicro},
    {UnitType::Flow, kFlow},
    {UnitType::Transmissivity, kTransmissivityFeet},
    {UnitType::Transmissivity, kTransmissivityMetres},
    {UnitType::Time, kTime},
    {UnitType::Volume, kVolume},
    {UnitType::Temperature, kTemperature},
};

template <typename Visit>
void ForEachSpelling(Visit&& visit)
{
    for (std::size_t r = 0; r < std::size(kRecognisers); ++r) {
        const Recogniser& recogniser = kRecognisers[r];
        for (const SpellingFamily& family : recogniser.families) {
            for (std::string_view stem : family.stems) {
                for (std::string_view ending : family.endings) {
                    std::string spelling;
                    spelling.reserve(stem.size() + ending.size());
                    spelling.append(stem).append(ending);
                    visit(r, UnitClassification{recogniser.type, family.canonical}, std::move(spelling));
                }
            }
        }
    }
}

struct TransparentHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

// Every spelling mapped to the unit of the first recogniser that lists it, so that one
// lookup gives what trying the recognisers in order would give.
// Labels are upper-cased into a buffer of this size on the stack; every spelling fits.
constexpr std::size_t kLongestSpelling = 32;

struct SpellingIndex {
    std::unordered_map<std::string, UnitClassification, TransparentHash, std::equal_to<>> units;

    SpellingIndex()
    {
        ForEachSpelling([this](std::size_t, const UnitClassification& unit, std::string spelling) {
            if (spelling.size() > kLongestSpelling) throw std::logic_error("unit spelling longer than the buffer");
            units.try_emplace(std::move(spelling), unit);
        });
    }
};

const SpellingIndex& Index()
{
    static const SpellingIndex index;
    return index;
}

constexpr char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

} // namespace

UnitClassification ClassifyUnits(std::string_view label)
{
    const SpellingIndex& index = Index();
    // A label longer than every spelling cannot match, whatever its length.
    std::array<char, kLongestSpelling> upper{};
    if (label.size() > upper.size()) return {};
    std::transform(label.begin(), label.end(), upper.begin(), UpperAscii);
    const auto found = index.units.find(std::string_view(upper.data(), label.size()));
    return found != index.units.end() ? found->second : UnitClassification{};
}

std::vector<AcceptedSpelling> AcceptedSpellings()
{
    std::vector<AcceptedSpelling> spellings;
    ForEachSpelling([&spellings](std::size_t recogniser, const UnitClassification& unit, std::string spelling) {
        spellings.push_back({recogniser, unit, std::move(spelling)});
    });
    return spellings;
}

} // namespace ba
