#include "io/LasReader.h"

#include <map>


namespace ba {
namespace {

class Refusal {}; // thrown once the refusal has been reported

struct Definition {
    std::string name; // as written
    std::size_t line = 0;
    std::vector<LasCurve> curves;
};

bool SameName(std::string_view a, std::string_view b) { return AsciiUpper(a) == AsciiUpper(b); }

std::string_view SkipBlanks(std::string_view line)
{
    std::size_t i = 0;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    return line.substr(i);
}

class LasFileReader {
public:
    LasFileReader(ILasByteSource& source, std::string_view fileName, IMessageSink& sink, std::size_t chunkBytes)
        : m_lines(source, chunkBytes), m_file(fileName), m_sink(sink), m_limited(sink)
    {
    }

    LasReadResult Read();

private:
    enum class State { Header, Collecting, ReadingData, Skipping };

    std::string Place(std::size_t line) const { return "\"" + m_file + "\" line " + std::to_string(line) + ": "; }
    std::string Whole() const { return "\"" + m_file + "\": "; }
    [[noreturn]] void Refuse(const std::string& text)
    {
        m_limited.Summarise(m_file);
        m_sink.Error("Error: " + text + "; nothing was imported.");
        throw Refusal();
    }

    std::string Decode(std::string_view line, std::size_t number);
    void OnSection(std::string_view line, std::size_t number);
    void OnHeaderItem(std::string_view line, std::size_t number);
    void OnCurveLine(std::string_view line, std::size_t number);
    void EndSection();
    const Definition* FindDefinition(std::string_view name) const;
    void StartData(const Definition& definition, const LasSectionLine& section, std::size_t number, bool log);
    // A data section that cannot be read: fatal for log data; for other data the reason is
    // kept for the end, in case no later section can be read either.
    void Reject(const std::string& text, bool log);
    void Finish();

    LasLineReader m_lines;
    std::string m_file;
    IMessageSink& m_sink;
    LasMessageLimiter m_limited; // for messages a damaged file could repeat without end
    LasReadResult m_result;

    LasSectionKind m_section = LasSectionKind::Ignored;
    State m_state = State::Header;
    bool m_anySection = false;
    bool m_ansiNoted = false;
    Definition m_collecting;
    std::optional<Definition> m_logDefinition;
    std::map<std::string, Definition> m_otherDefinitions; // by upper-case name; the first of a name counts
    bool m_nullSeen = false;

    // The data section being read, or read.
    std::unique_ptr<LasDataParser> m_parser;
    LasIssueLog m_issues;
    bool m_haveData = false;
    bool m_dataIsLog = false;
    bool m_laterDataNoted = false;
    std::string m_rejected; // why the last non-log data section could not be read
    CollectingMessageSink m_provisional; // messages about a data section that is not log data
    std::vector<std::string> m_columnNames; // of every data column, text curves included
};

std::string LasFileReader::Decode(std::string_view line, std::size_t number)
{
    bool wasAnsi = false;
    std::string text = DecodeLasLine(line, wasAnsi);
    if (wasAnsi && !m_ansiNoted) {
        m_ansiNoted = true;
        m_sink.Note("Note: " + Place(number) + "the text is not UTF-8; it was read as Windows-1252.");
    }
    return text;
}

void LasFileReader::OnHeaderItem(std::string_view line, std::size_t number)
{
    const std::string note = m_section == LasSectionKind::Version ? ApplyLasVersionItem(line, m_result.header)
                                                                  : ApplyLasWellItem(line, m_result.header);
    if (m_section == LasSectionKind::Well && AsciiUpper(LasMnemonic(line)) == "NULL") m_nullSeen = true;
    if (!note.empty()) m_limited.Report("notes on ~V and ~W lines", Severity::Note, "Note: " + Place(number) + note);
}

void LasFileReader::OnCurveLine(std::string_view line, std::size_t number)
{
    if (line.find('.') == std::string_view::npos) {
        m_limited.Report("curve section lines without a full stop", Severity::Note,
                         "Note: " + Place(number) + QuoteLasText(line) + " in the ~" + m_collecting.name +
                             " section has no full stop, so it defines no curve; it was ignored.");
        return;
    }
    LasCurve curve;
    curve.mnemonic = std::string(LasMnemonic(line));
    curve.unit = std::string(TrimLasBlanks(LasUnitToken(line)));
    curve.line = number;
    curve.text = IsLasTextFormat(LasFormatField(line));
    m_collecting.curves.push_back(std::move(curve));
}

const Definition* LasFileReader::FindDefinition(std::string_view name) const
{
    const auto found = m_otherDefinitions.find(AsciiUpper(name));
    if (found != m_otherDefinitions.end()) return &found->second;
    if (m_logDefinition && SameName(m_logDefinition->name, name)) return &*m_logDefinition;
    return nullptr;
}

void LasFileReader::EndSection()
{
    if (m_state == State::Collecting) {
        if (m_section == LasSectionKind::Curves) m_logDefinition = std::move(m_collecting);
        else m_otherDefinitions.try_emplace(AsciiUpper(m_collecting.name), std::move(m_collecting));
        m_collecting = Definition();
    } else if (m_state == State::ReadingData) {
        m_parser->Finish();
    }
    m_state = State::Header;
}

void LasFileReader::OnSection(std::string_view line, std::size_t number)
{
    EndSection();
    m_anySection = true;
    LasSectionLine section = ClassifyLasSection(line);
    m_section = section.kind;
    const std::string shown = "~" + section.name;
    switch (section.kind) {
    case LasSectionKind::Version:
    case LasSectionKind::Well:
    case LasSectionKind::Ignored: return;
    case LasSectionKind::Curves:
        if (m_haveData && m_dataIsLog) {
            m_state = State::Skipping; // after the data: covered by the note on later data
            return;
        }
        if (m_logDefinition) {
            m_limited.Report("curve sections after the first", Severity::Warning,
                             "Warning: " + Place(number) + "a second curve section " + shown +
                                 "; its curves were ignored (those of line " + std::to_string(m_logDefinition->line) +
                                 " are used).");
            m_state = State::Skipping;
            return;
        }
        [[fallthrough]];
    case LasSectionKind::Definition:
        m_collecting = Definition{section.name, number, {}};
        m_state = State::Collecting;
        return;
    case LasSectionKind::Nameless:
        if (!m_logDefinition || (m_haveData && m_dataIsLog)) return;
        m_sink.Note("Note: " + Place(number) + "a section line without a name after the curve section was read as the ~A (data) section.");
        section.name = "A";
        [[fallthrough]];
    case LasSectionKind::LogData: {
        if (m_haveData && m_dataIsLog) {
            if (!m_laterDataNoted) {
                m_sink.Note("Note: " + Place(number) + "the data section ~" + section.name + " comes after the one already read (line " +
                            std::to_string(m_result.dataSectionLine) + ") and was not imported, nor were any after it.");
                m_laterDataNoted = true;
            }
            m_state = State::Skipping;
            return;
        }
        const Definition* definition = section.association.empty() ? (m_logDefinition ? &*m_logDefinition : nullptr)
                                                                   : FindDefinition(section.association);
        if (definition == nullptr && m_haveData) {
            m_limited.Report("data sections without a definition", Severity::Note,
                             "Note: " + Place(number) + "the data section " + shown +
                                 " has no curve section that names its columns; it was not read.");
            m_state = State::Skipping;
            return;
        }
        if (definition == nullptr && section.association.empty()) {
            Refuse(Place(number) + "the data section " + shown + " comes before any curve section (~C) that would name its columns");
        }
        if (definition == nullptr) {
            Refuse(Place(number) + "the data section " + shown + " refers to ~" + section.association +
                   ", which is not defined before it");
        }
        if (m_haveData) {
            m_sink.Note("Note: " + Place(number) + "the log data " + shown + " was imported instead of ~" + m_result.dataSection +
                        " (line " + std::to_string(m_result.dataSectionLine) + ").");
        }
        StartData(*definition, section, number, true);
        return;
    }
    case LasSectionKind::Data: {
        if (m_haveData) {
            m_state = State::Skipping;
            return;
        }
        const Definition* definition = FindDefinition(section.association);
        if (definition == nullptr) {
            m_limited.Report("data sections without a definition", Severity::Note,
                             "Note: " + Place(number) + "the data section " + shown + " refers to ~" +
                                 section.association + ", which is not defined before it; it was not read.");
            m_state = State::Skipping;
            return;
        }
        StartData(*definition, section, number, false);
        return;
    }
    }
}

void LasFileReader::StartData(const Definition& definition, const LasSectionLine& section, std::size_t number, bool log)
{
    if (definition.curves.empty()) {
        return Reject(Place(number) + "the curve section ~" + definition.name + " (line " +
                          std::to_string(definition.line) + ") defines no curves, so the columns of ~" + section.name +
                          " are unknown",
                      log);
    }
    LasReadResult& r = m_result;
    r.dataSection = section.name;
    r.dataSectionLine = number;
    r.index = definition.curves.front();
    r.indexUnit = ClassifyLasIndexUnit(r.index.unit);
    r.curves.clear();
    r.index.text = false; // the index is read as a number whatever its format says

    // Messages about a data section that a log data section may still replace wait until
    // the end of the file.
    m_provisional.messages.clear();
    IMessageSink& out = log ? m_sink : static_cast<IMessageSink&>(m_provisional);
    const std::string indexPlace = Place(r.index.line);
    if (r.indexUnit.dateOrClock) {
        return Reject(indexPlace + "the index " + r.index.mnemonic + " has the unit \"" + r.index.unit +
                          "\", a date or clock time, which cannot serve as a depth or time axis",
                      log);
    }
    if (!r.indexUnit.recognised) {
        out.Note("Note: " + indexPlace + "the unit of the index " + r.index.mnemonic + " is " +
                    (r.index.unit.empty() ? std::string("empty") : "\"" + r.index.unit + "\", which is not a known length or time unit") +
                    "; the depths were read as " + (r.indexUnit.depthUnitCode == 1 ? "metres" : "feet") + ".");
    }

    LasDataLayout layout;
    layout.columns = definition.curves.size();
    layout.textColumns.assign(layout.columns, false);
    std::vector<const LasCurve*> textCurves;
    for (std::size_t c = 1; c < definition.curves.size(); ++c) {
        const LasCurve& curve = definition.curves[c];
        if (curve.text) {
            layout.textColumns[c] = true;
            textCurves.push_back(&curve);
        } else {
            r.curves.push_back(curve);
            r.curves.back().column = c + 1;
        }
    }
    if (!textCurves.empty()) {
        std::string names;
        for (std::size_t i = 0; i < textCurves.size() && i < LasMessageLimiter::kPerKind; ++i) {
            names += (i == 0 ? "" : ", ") + textCurves[i]->mnemonic + " (line " + std::to_string(textCurves[i]->line) + ")";
        }
        if (textCurves.size() > LasMessageLimiter::kPerKind) {
            names += " and " + std::to_string(textCurves.size() - LasMessageLimiter::kPerKind) + " more";
        }
        out.Note("Note: " + Whole() + (textCurves.size() == 1 ? "the curve " : "the curves ") + names +
                 (textCurves.size() == 1 ? " holds" : " hold") + " text, not numbers, and " +
                 (textCurves.size() == 1 ? "was" : "were") + " not imported.");
    }
    if (r.curves.empty()) {
        return Reject(Place(number) + "the curves of ~" + section.name + " are only the index " + r.index.mnemonic +
                          ", with no curve to import",
                      log);
    }
    if (!log) {
        out.Note("Note: " + Place(number) + "the file has no log data section (~A or ~Log_Data); its first data section ~" +
                 section.name + " was imported.");
    }
    if (!m_nullSeen) {
        out.Note("Note: " + Place(number) + "no NULL value was given before the data; only -9999.99 reads as missing.");
    }
    layout.wrapped = r.header.wrapped;
    layout.delimiters = r.header.delimiters;
    layout.nullValue = r.header.nullValue;
    layout.indexToStored = r.indexUnit.toStored;

    m_parser.reset();
    m_issues = LasIssueLog();
    m_columnNames.clear();
    for (const LasCurve& curve : definition.curves) m_columnNames.push_back(curve.mnemonic);
    r.rows = std::make_unique<LasDepthOrderedRows>(1 + r.curves.size());
    m_parser = std::make_unique<LasDataParser>(std::move(layout), *r.rows, m_issues);
    m_haveData = true;
    m_dataIsLog = log;
    m_state = State::ReadingData;
}

void LasFileReader::Reject(const std::string& text, bool log)
{
    if (log) Refuse(text);
    m_rejected = text;
    m_provisional.messages.clear();
    m_result.curves.clear();
    m_state = State::Skipping;
}

void LasFileReader::Finish()
{
    EndSection();
    LasReadResult& r = m_result;
    if (!m_haveData) {
        if (!m_rejected.empty()) Refuse(m_rejected);
        if (!m_anySection) {
            if (m_lines.LineNumber() == 0) Refuse(Whole() + "the file is empty");
            Refuse(Whole() + "no line begins with \"~\", so this is not a LAS file");
        }
        if (!m_logDefinition) Refuse(Whole() + "there is no curve section (~C) and no data section (~A)");
        Refuse(Whole() + "there is no data section (~A): the file holds only a header");
    }
    m_limited.Summarise(m_file);
    for (const Message& message : m_provisional.messages) m_sink.Report(message);
    r.dataLines = m_parser->DataLines();
    r.rowsRead = m_parser->RowsRead();

    if (r.rows->Rows() == 0) {
        if (r.dataLines == 0) Refuse(Place(r.dataSectionLine) + "the data section ~" + r.dataSection + " holds no data");
        if (m_parser->FirstBadIndexLine() != 0) {
            Refuse(Place(m_parser->FirstBadIndexLine()) + "no data row has an index that can be a depth or time (this one has " +
                   QuoteLasText(m_parser->FirstBadIndexText()) + ")");
        }
        Refuse(Place(r.dataSectionLine) + "no complete data row was found in ~" + r.dataSection);
    }
    LasIssueContext context;
    context.file = m_file;
    context.nullText = r.header.nullText;
    context.columnNames = m_columnNames;
    m_issues.Report(m_sink, context);
    if (m_parser->IncompleteRowLine() != 0) {
        m_sink.Warning("Warning: " + Place(m_parser->IncompleteRowLine()) + "the last wrapped row has only " +
                       std::to_string(m_parser->IncompleteRowValues()) + " of its " +
                       std::to_string(m_columnNames.size()) + " values; it was left out.");
    }
    r.ok = true;
}

LasReadResult LasFileReader::Read()
{
    try {
        const LasEncodingGuess& encoding = m_lines.Encoding();
        if (encoding.withoutBom) {
            m_sink.Note("Note: " + Whole() + "the file has no byte-order mark, but its zero bytes show " +
                        std::string(LasEncodingName(encoding.encoding)) + "; it was read as such.");
        }
        std::string_view raw;
        while (m_lines.Next(raw)) {
            const std::size_t number = m_lines.LineNumber();
            const std::string_view line = SkipBlanks(raw);
            if (line.empty() || line[0] == '#') continue;
            if (line[0] == '~') {
                OnSection(Decode(line, number), number);
                continue;
            }
            switch (m_state) {
            case State::ReadingData: m_parser->Line(line, number); break;
            case State::Collecting: OnCurveLine(Decode(line, number), number); break;
            case State::Header:
                if (m_section == LasSectionKind::Version || m_section == LasSectionKind::Well) {
                    OnHeaderItem(Decode(line, number), number);
                }
                break;
            case State::Skipping: break;
            }
        }
        Finish();
    } catch (const Refusal&) {
        m_result.ok = false;
        m_result.rows.reset();
    } catch (const LasInputError& e) {
        m_sink.Error("Error: " + Whole() + e.what() + "; nothing was imported.");
        m_result.ok = false;
        m_result.rows.reset();
    }
    return std::move(m_result);
}

} // namespace

LasReadResult ReadLas(ILasByteSource& source, std::string_view fileName, IMessageSink& sink, std::size_t chunkBytes)
{
    try {
        LasFileReader reader(source, fileName, sink, chunkBytes);
        return reader.Read();
    } catch (const LasInputError& e) {
        // Reading the first bytes failed, before any line.
        sink.Error("Error: \"" + std::string(fileName) + "\": " + e.what() + "; nothing was imported.");
        return {};
    }
}

} // namespace ba
