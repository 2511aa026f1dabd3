#include "model/Archive.h"

#include "base/Cp1252.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ba {
namespace {

static_assert(std::endian::native == std::endian::little || std::endian::native == std::endian::big,
              "mixed-endian hosts are not supported");

template <typename T>
T ByteSwapped(T value)
{
    std::uint8_t raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    std::reverse(raw, raw + sizeof(T));
    std::memcpy(&value, raw, sizeof(T));
    return value;
}

template <typename T>
void AppendLittleEndian(std::vector<std::uint8_t>& out, T value)
{
    if constexpr (std::endian::native == std::endian::big) value = ByteSwapped(value);
    const auto old = out.size();
    out.resize(old + sizeof(T));
    std::memcpy(out.data() + old, &value, sizeof(T));
}

template <typename T>
T LoadLittleEndian(const std::uint8_t* p)
{
    T value;
    std::memcpy(&value, p, sizeof(T));
    if constexpr (std::endian::native == std::endian::big) value = ByteSwapped(value);
    return value;
}

template <typename T>
void AppendArray(std::vector<std::uint8_t>& out, std::span<const T> values)
{
    const auto old = out.size();
    out.resize(old + values.size_bytes());
    if constexpr (std::endian::native == std::endian::little) {
        if (!values.empty()) std::memcpy(out.data() + old, values.data(), values.size_bytes());
    } else {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const T v = ByteSwapped(values[i]);
            std::memcpy(out.data() + old + i * sizeof(T), &v, sizeof(T));
        }
    }
}

template <typename T>
void LoadArray(const std::uint8_t* p, std::size_t n, CGrowableArray<T>& into)
{
    const std::size_t old = into.Size();
    into.Reserve(old + n);
    into.SetSize(old + n);
    if (n == 0) return;
    std::memcpy(into.Data() + old, p, n * sizeof(T));
    if constexpr (std::endian::native == std::endian::big) {
        for (std::size_t i = old; i < old + n; ++i) into[i] = ByteSwapped(into[i]);
    }
}

std::string Describe(std::size_t n, std::string_view unit)
{
    return std::to_string(n) + " " + std::string(unit) + (n == 1 ? "" : "s");
}

} // namespace

// --- writer ---------------------------------------------------------------------------

void CArchiveWriter::WriteWord(std::uint16_t value) { AppendLittleEndian(m_bytes, value); }
void CArchiveWriter::WriteInt32(std::int32_t value) { AppendLittleEndian(m_bytes, value); }
void CArchiveWriter::WriteUInt32(std::uint32_t value) { AppendLittleEndian(m_bytes, value); }
void CArchiveWriter::WriteFloat(float value) { AppendLittleEndian(m_bytes, value); }
void CArchiveWriter::WriteDouble(double value) { AppendLittleEndian(m_bytes, value); }

void CArchiveWriter::WriteBytes(std::span<const std::uint8_t> bytes)
{
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

void CArchiveWriter::WriteFloats(std::span<const float> values) { AppendArray(m_bytes, values); }
void CArchiveWriter::WriteWords(std::span<const std::uint16_t> values) { AppendArray(m_bytes, values); }

void CArchiveWriter::WriteFixedText(std::string_view utf8, std::size_t size)
{
    std::string ansi = Utf8ToCp1252(utf8);
    ansi.resize(size, '\0');
    for (const char c : ansi) m_bytes.push_back(static_cast<std::uint8_t>(c));
}

void CArchiveWriter::WriteString(std::string_view utf8)
{
    const std::string ansi = Utf8ToCp1252(utf8);
    const std::size_t n = ansi.size();
    if (n < 0xFF) {
        WriteByte(static_cast<std::uint8_t>(n));
    } else if (n < 0xFFFE) {
        WriteByte(0xFF);
        WriteWord(static_cast<std::uint16_t>(n));
    } else {
        WriteByte(0xFF);
        WriteWord(0xFFFF);
        WriteUInt32(static_cast<std::uint32_t>(n));
    }
    for (const char c : ansi) m_bytes.push_back(static_cast<std::uint8_t>(c));
}

void CArchiveWriter::WriteCount(std::uint32_t count)
{
    if (count < 0xFFFF) {
        WriteWord(static_cast<std::uint16_t>(count));
    } else {
        WriteWord(0xFFFF);
        WriteUInt32(count);
    }
}

void CArchiveWriter::WriteTag(std::uint32_t index, bool isClass)
{
    if (index < kBigObjectTag) {
        WriteWord(static_cast<std::uint16_t>(isClass ? (kClassTag | index) : index));
    } else {
        WriteWord(kBigObjectTag);
        WriteUInt32(isClass ? (kBigClassTag | index) : index);
    }
}

bool CArchiveWriter::BeginObject(const void* object, std::string_view className, std::uint16_t schema)
{
    if (object == nullptr) {
        WriteWord(kNullTag);
        return false;
    }
    if (const auto seen = m_objectIndex.find(object); seen != m_objectIndex.end()) {
        WriteTag(seen->second, false);
        return false;
    }
    const std::string name(className);
    if (const auto cls = m_classIndex.find(name); cls != m_classIndex.end()) {
        WriteTag(cls->second, true);
    } else {
        WriteWord(kNewClassTag);
        WriteWord(schema);
        WriteWord(static_cast<std::uint16_t>(name.size()));
        for (const char c : name) m_bytes.push_back(static_cast<std::uint8_t>(c));
        m_classIndex.emplace(name, m_mapCount++);
    }
    m_objectIndex.emplace(object, m_mapCount++);
    return true;
}

// --- reader ---------------------------------------------------------------------------

void CArchiveReader::FailAt(ArchiveFault fault, std::uint64_t offset, const std::string& detail) const
{
    std::string what = m_context.empty() ? detail : m_context + ": " + detail;
    what += " (byte offset " + std::to_string(offset) + ")";
    throw ArchiveException(fault, offset, what);
}

void CArchiveReader::Fail(ArchiveFault fault, const std::string& detail) const { FailAt(fault, m_pos, detail); }

void CArchiveReader::Require(std::size_t n, std::string_view what)
{
    if (n > Remaining()) {
        Fail(ArchiveFault::EndOfFile, "the file ends inside " + std::string(what) + ": " + Describe(n, "byte") +
                                          " needed, " + Describe(Remaining(), "byte") + " left");
    }
}

std::uint8_t CArchiveReader::ReadByte()
{
    Require(1, "a byte field");
    return m_bytes[m_pos++];
}

std::uint16_t CArchiveReader::ReadWord()
{
    Require(2, "a 16-bit field");
    const auto v = LoadLittleEndian<std::uint16_t>(m_bytes.data() + m_pos);
    m_pos += 2;
    return v;
}

std::int32_t CArchiveReader::ReadInt32()
{
    Require(4, "a 32-bit field");
    const auto v = LoadLittleEndian<std::int32_t>(m_bytes.data() + m_pos);
    m_pos += 4;
    return v;
}

std::uint32_t CArchiveReader::ReadUInt32()
{
    Require(4, "a 32-bit field");
    const auto v = LoadLittleEndian<std::uint32_t>(m_bytes.data() + m_pos);
    m_pos += 4;
    return v;
}

float CArchiveReader::ReadFloat()
{
    Require(4, "a 32-bit float field");
    const auto v = LoadLittleEndian<float>(m_bytes.data() + m_pos);
    m_pos += 4;
    return v;
}

double CArchiveReader::ReadDouble()
{
    Require(8, "a 64-bit float field");
    const auto v = LoadLittleEndian<double>(m_bytes.data() + m_pos);
    m_pos += 8;
    return v;
}

std::span<const std::uint8_t> CArchiveReader::ReadBytes(std::size_t n)
{
    Require(n, "a block of bytes");
    const auto block = m_bytes.subspan(m_pos, n);
    m_pos += n;
    return block;
}

void CArchiveReader::ReadFloats(std::size_t n, CFloatArray& into)
{
    if (n > Remaining() / sizeof(float)) Require(n * sizeof(float), "an array of floats");
    LoadArray(m_bytes.data() + m_pos, n, into);
    m_pos += n * sizeof(float);
}

void CArchiveReader::ReadWords(std::size_t n, CWordArray& into)
{
    if (n > Remaining() / sizeof(std::uint16_t)) Require(n * sizeof(std::uint16_t), "an array of words");
    LoadArray(m_bytes.data() + m_pos, n, into);
    m_pos += n * sizeof(std::uint16_t);
}

std::string CArchiveReader::ReadFixedText(std::size_t size)
{
    Require(size, "a " + std::to_string(size) + "-byte text");
    const auto* p = reinterpret_cast<const char*>(m_bytes.data() + m_pos);
    m_pos += size;
    const std::string_view raw(p, size);
    return Cp1252ToUtf8(raw.substr(0, raw.find('\0')));
}

std::string CArchiveReader::ReadString()
{
    const std::size_t start = m_pos;
    bool wide = false;
    std::uint64_t length = ReadByte();
    if (length == 0xFF) {
        length = ReadWord();
        if (length == 0xFFFE) {
            // Unicode marker: the length follows again, in the same escalating form.
            wide = true;
            length = ReadByte();
            if (length == 0xFF) {
                length = ReadWord();
                if (length == 0xFFFF) length = ReadUInt32();
            }
        } else if (length == 0xFFFF) {
            length = ReadUInt32();
        }
    }
    const std::uint64_t bytes = wide ? length * 2 : length;
    if (bytes > Remaining()) {
        FailAt(ArchiveFault::BadCount, start,
               "a string claims " + Describe(static_cast<std::size_t>(length), "character") + " but only " +
                   Describe(Remaining(), "byte") + " remain");
    }
    const auto* p = reinterpret_cast<const char*>(m_bytes.data() + m_pos);
    m_pos += static_cast<std::size_t>(bytes);
    const std::string_view raw(p, static_cast<std::size_t>(bytes));
    return wide ? Utf16LeToUtf8(raw) : Cp1252ToUtf8(raw);
}

void CArchiveReader::ReadWordInto(std::int32_t& field)
{
    const std::uint16_t word = ReadWord();
    const auto high = static_cast<std::uint32_t>(field) & 0xFFFF0000u;
    field = static_cast<std::int32_t>(high | word);
}

std::uint32_t CArchiveReader::ReadCount()
{
    const std::uint16_t word = ReadWord();
    if (word != 0xFFFF) return word;
    return ReadUInt32();
}

std::size_t CArchiveReader::ReadElementCount(std::string_view what, std::size_t elementSize)
{
    const std::size_t at = m_pos;
    return CheckElementCount(ReadInt32(), at, what, elementSize);
}

std::size_t CArchiveReader::CheckElementCount(std::int32_t count, std::size_t countOffset, std::string_view what,
                                              std::size_t elementSize) const
{
    if (count < 0) {
        FailAt(ArchiveFault::BadCount, countOffset,
               "negative count " + std::to_string(count) + " for " + std::string(what));
    }
    const auto n = static_cast<std::size_t>(count);
    if (elementSize != 0 && n > Remaining() / elementSize) {
        FailAt(ArchiveFault::BadCount, countOffset,
               "count " + std::to_string(n) + " for " + std::string(what) + " needs " +
                   Describe(n * elementSize, "byte") + " but only " + Describe(Remaining(), "byte") + " remain");
    }
    return n;
}

ObjectRecord CArchiveReader::ReadObjectHeader()
{
    ObjectRecord record;
    record.offset = m_pos;
    const std::uint16_t word = ReadWord();
    std::uint32_t tag = 0;
    if (word == kBigObjectTag) {
        tag = ReadUInt32();
    } else {
        tag = (static_cast<std::uint32_t>(word & kClassTag) << 16) | (word & 0x7FFFu);
    }

    if ((tag & kBigClassTag) == 0) {
        // An object reference: null or an object read before.
        if (tag == 0) return record;
        if (tag >= m_map.size() || m_map[tag].isClass) {
            FailAt(ArchiveFault::BadIndex, record.offset,
                   "object tag " + std::to_string(tag) + " refers to no object read before");
        }
        record.kind = ObjectRecord::Kind::BackReference;
        record.index = tag;
        return record;
    }

    if (word == kNewClassTag) {
        const std::uint16_t schema = ReadWord();
        const std::uint16_t length = ReadWord();
        if (length > kMaxClassNameLength) {
            FailAt(ArchiveFault::BadClass, record.offset,
                   "class name of " + std::to_string(length) + " bytes is longer than " +
                       std::to_string(kMaxClassNameLength));
        }
        const auto nameBytes = ReadBytes(length);
        if (m_map.size() >= kMaxMapCount) FailAt(ArchiveFault::BadIndex, record.offset, "too many objects");
        MapEntry cls;
        cls.isClass = true;
        cls.className.assign(reinterpret_cast<const char*>(nameBytes.data()), nameBytes.size());
        cls.schema = schema;
        m_map.push_back(cls);
        record.className = cls.className;
        record.schema = schema;
    } else {
        const std::uint32_t classIndex = tag & ~kBigClassTag;
        if (classIndex < 1 || classIndex >= m_map.size() || !m_map[classIndex].isClass) {
            FailAt(ArchiveFault::BadIndex, record.offset,
                   "class tag " + std::to_string(classIndex) + " refers to no class read before");
        }
        record.className = m_map[classIndex].className;
        record.schema = m_map[classIndex].schema;
    }
    if (m_map.size() >= kMaxMapCount) FailAt(ArchiveFault::BadIndex, record.offset, "too many objects");
    record.kind = ObjectRecord::Kind::NewObject;
    record.index = static_cast<std::uint32_t>(m_map.size());
    m_map.push_back(MapEntry{});
    return record;
}

} // namespace ba
