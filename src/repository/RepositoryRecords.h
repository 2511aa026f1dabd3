#pragma once
// One record type per repository table. Each lists its columns through Bind in the order
// the table binds them, which is also the order the table is created with and the order
// the command-line tool prints; the member's C++ type fixes the column type (Long =
// int32, Short = int16, Single = float, Double = double, Text = string). ID is numbered
// by the database and never written by the program.

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>

namespace ba {

enum class ColumnType { Long, Short, Single, Double, Text };

template <class T>
constexpr ColumnType ColumnTypeOf()
{
    if constexpr (std::is_same_v<T, std::int32_t>) return ColumnType::Long;
    else if constexpr (std::is_same_v<T, std::int16_t>) return ColumnType::Short;
    else if constexpr (std::is_same_v<T, float>) return ColumnType::Single;
    else if constexpr (std::is_same_v<T, double>) return ColumnType::Double;
    else {
        static_assert(std::is_same_v<T, std::string>, "a repository column is Long, Short, Single, Double or Text");
        return ColumnType::Text;
    }
}

inline constexpr const char* kIdColumn = "ID";

namespace repository_detail {
inline std::string Numbered(const char* prefix, int k, const char* suffix = "")
{
    return prefix + std::to_string(k) + suffix;
}
inline std::string Numbered(const char* prefix, int k, const char* middle, int j)
{
    return prefix + std::to_string(k) + middle + std::to_string(j);
}
} // namespace repository_detail

// Spectral gamma models in which test k has k isotope values and k errors (a triangle).
struct BSpectraModelRecord {
    static constexpr const char* kTable = "BSpectraModels";
    static constexpr const char* kRecordsetClass = "CBSpectraModelsRepository";
    std::int32_t id = 0;
    std::string name;
    std::string description;
    std::array<std::string, 5> testName;
    std::array<std::array<float, 5>, 5> isotope{}; // [test][isotope], isotope < test + 1
    std::array<std::array<float, 5>, 5> error{};
    std::array<float, 5> leftSpectrum{};
    std::array<float, 5> rightSpectrum{};
    std::array<std::string, 5> spectrum;
    std::array<float, 5> timeSpectrum{};

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        using repository_detail::Numbered;
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("Description", r.description);
        for (int k = 1; k <= 5; ++k) v(Numbered("Tst", k, "Name", k), r.testName[k - 1]);
        for (int k = 1; k <= 5; ++k) {
            for (int i = 1; i <= k; ++i) v(Numbered("Tst", k, "Iso", i), r.isotope[k - 1][i - 1]);
            for (int i = 1; i <= k; ++i) v(Numbered("Tst", k, "Err", i), r.error[k - 1][i - 1]);
        }
        for (int k = 1; k <= 5; ++k) v(Numbered("LeftSpectrum", k), r.leftSpectrum[k - 1]);
        for (int k = 1; k <= 5; ++k) v(Numbered("RightSpectrum", k), r.rightSpectrum[k - 1]);
        for (int k = 1; k <= 5; ++k) v(Numbered("Spectrum", k), r.spectrum[k - 1]);
        for (int k = 1; k <= 5; ++k) v(Numbered("TimeSpectrum", k), r.timeSpectrum[k - 1]);
    }
};

// Cement bond log models.
struct CblModelRecord {
    static constexpr const char* kTable = "CBL";
    static constexpr const char* kRecordsetClass = "CCBLModelsRepository";
    std::int32_t id = 0;
    std::string name;
    std::string description;
    std::int32_t windowLength = 0;
    double bondedAmplitude = 0.0;
    double unbondedAmplitude = 0.0;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("Description", r.description);
        v("WindowLength", r.windowLength);
        v("BondedAmplitude", r.bondedAmplitude);
        v("UnbondedAmplitude", r.unbondedAmplitude);
    }
};

// Equation models: five coefficients and the number of the equation in the equation list.
struct EquationModelRecord {
    static constexpr const char* kTable = "EquationModels";
    static constexpr const char* kRecordsetClass = "CEquationModelsRepository";
    std::int32_t id = 0;
    std::string name;
    std::string description;
    std::array<float, 5> coef{};
    std::int32_t formula = 0;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("Description", r.description);
        for (int k = 1; k <= 5; ++k) v(repository_detail::Numbered("Coef", k), r.coef[k - 1]);
        v("Formula", r.formula);
    }
};

// Logs computed from a formula text.
struct FormulaLogRecord {
    static constexpr const char* kTable = "FormulaLogs";
    static constexpr const char* kRecordsetClass = "CFormulaLogRepository";
    std::int32_t id = 0;
    std::string name;
    std::string logName;
    std::string formula;
    std::string description;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("LogName", r.logName);
        v("Formula", r.formula);
        v("Description", r.description);
    }
};

// Graphical (cross-plot) models of up to four constituents.
struct GraphicalModelRecord {
    struct Constituent {
        std::string name;
        float x = 0.0f;
        float y = 0.0f;
        float z = 0.0f;
    };
    static constexpr const char* kTable = "GraphicalModels";
    static constexpr const char* kRecordsetClass = "CGraphicalModelsRepository";
    std::int32_t id = 0;
    std::string name;
    std::string description;
    std::array<Constituent, 4> constituent;
    std::int16_t modelType = 0;
    std::array<std::string, 3> logName;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        using repository_detail::Numbered;
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("Description", r.description);
        for (int k = 1; k <= 4; ++k) {
            auto& c = r.constituent[k - 1];
            v(Numbered("Constituent", k, "Name"), c.name);
            v(Numbered("Constituent", k, "X"), c.x);
            v(Numbered("Constituent", k, "Y"), c.y);
            v(Numbered("Constituent", k, "Z"), c.z);
        }
        v("ModelType", r.modelType);
        for (int k = 1; k <= 3; ++k) v(Numbered("Log", k, "Name"), r.logName[k - 1]);
    }
};

// Energy windows of spectral gamma processing.
struct SpectraWindowRecord {
    static constexpr const char* kTable = "SpectraWindows";
    static constexpr const char* kRecordsetClass = "CSpectraWindowsRepository";
    std::int32_t id = 0;
    std::string name;
    double upperEnergy = 0.0;
    double lowerEnergy = 0.0;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("UpperEnergy", r.upperEnergy);
        v("LowerEnergy", r.lowerEnergy);
    }
};

// Plotting templates. This table alone binds its columns alphabetically, ID among them.
struct TemplateRecord {
    static constexpr const char* kTable = "Templates";
    static constexpr const char* kRecordsetClass = "CTemplatesRepository";
    std::int32_t depthMeters = 0;
    float depthScale = 0.0f;
    std::int32_t depthVertical = 0;
    std::string description;
    std::int32_t id = 0;
    std::string name;
    std::string traceTemplateList;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v("DepthMeters", r.depthMeters);
        v("DepthScale", r.depthScale);
        v("DepthVertical", r.depthVertical);
        v("Description", r.description);
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("TraceTemplateList", r.traceTemplateList);
    }
};

// The plotting attributes a template gives one trace; named by the trace, not by a Name.
struct TraceTemplateRecord {
    static constexpr const char* kTable = "TraceTemplates";
    static constexpr const char* kRecordsetClass = "CTraceTemplatesRepository";
    std::int32_t id = 0;
    std::string traceName;
    std::int32_t track = 0;
    std::int32_t lineType = 0;
    float scaleMin = 0.0f;
    float scaleMax = 0.0f;
    std::int32_t hide = 0;
    std::int32_t aux1 = 0;
    std::int32_t aux2 = 0;
    std::int32_t color = 0;

    const std::string& RecordName() const { return traceName; }
    static constexpr const char* kNameColumn = "TraceName";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        v(kIdColumn, r.id);
        v("TraceName", r.traceName);
        v("Track", r.track);
        v("LineType", r.lineType);
        v("ScaleMin", r.scaleMin);
        v("ScaleMax", r.scaleMax);
        v("Hide", r.hide);
        v("Aux1", r.aux1);
        v("Aux2", r.aux2);
        v("Color", r.color);
    }
};

// Spectral gamma models fitted on windows: every test has five values of each kind.
struct WSpectraModelRecord {
    struct Test {
        std::array<float, 5> isotope{};
        std::array<float, 5> error{};
        std::array<float, 5> countRate{};
        std::array<float, 5> countRateError{};
    };
    static constexpr const char* kTable = "WSpectraModels";
    static constexpr const char* kRecordsetClass = "CWSpectraModelsRepository";
    std::int32_t id = 0;
    std::string name;
    std::string description;
    std::array<std::string, 5> isotopeName;
    std::array<std::string, 5> test1Window;
    std::array<Test, 5> test;

    const std::string& RecordName() const { return name; }
    static constexpr const char* kNameColumn = "Name";
    template <class Self, class Visit>
    static void Bind(Self& r, Visit&& v)
    {
        using repository_detail::Numbered;
        v(kIdColumn, r.id);
        v("Name", r.name);
        v("Description", r.description);
        for (int k = 1; k <= 5; ++k) v(Numbered("Iso", k, "Name"), r.isotopeName[k - 1]);
        for (int k = 1; k <= 5; ++k) v(Numbered("Tst1Win", k), r.test1Window[k - 1]);
        for (int k = 1; k <= 5; ++k) {
            auto& t = r.test[k - 1];
            for (int i = 1; i <= 5; ++i) v(Numbered("Tst", k, "Iso", i), t.isotope[i - 1]);
            for (int i = 1; i <= 5; ++i) v(Numbered("Tst", k, "Err", i), t.error[i - 1]);
            for (int i = 1; i <= 5; ++i) v(Numbered("Tst", k, "Cps", i), t.countRate[i - 1]);
            for (int i = 1; i <= 5; ++i) v(Numbered("Tst", k, "CErr", i), t.countRateError[i - 1]);
        }
    }
};

// Every table, in alphabetical order of table name.
using RepositoryRecordTypes =
    std::tuple<BSpectraModelRecord, CblModelRecord, EquationModelRecord, FormulaLogRecord, GraphicalModelRecord,
               SpectraWindowRecord, TemplateRecord, TraceTemplateRecord, WSpectraModelRecord>;

// Calls f(std::type_identity<Record>{}) for every table in turn.
template <class F>
void ForEachRecordType(F&& f)
{
    [&]<class... R>(std::type_identity<std::tuple<R...>>) {
        (f(std::type_identity<R>{}), ...);
    }(std::type_identity<RepositoryRecordTypes>{});
}

} // namespace ba
