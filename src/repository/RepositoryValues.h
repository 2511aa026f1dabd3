#pragma once
// Between a record's members and the values SQLite stores. A Single is stored as the REAL
// (double) that holds it exactly and read back through float, so it round-trips bit for
// bit. NULL (a column another program left empty) reads as zero or empty text.

#include "repository/RepositoryDatabase.h"

#include <cstdint>
#include <string>

namespace ba {

RepositoryDatabase::Value ToStored(std::int32_t value);
RepositoryDatabase::Value ToStored(std::int16_t value);
RepositoryDatabase::Value ToStored(float value);
RepositoryDatabase::Value ToStored(double value);
RepositoryDatabase::Value ToStored(const std::string& value);

// Each returns an empty string on success, or what is wrong with the stored value
// ("text where a Long is expected", "70000, which is out of range for a Short").
std::string FromStored(const RepositoryDatabase::Value& stored, std::int32_t& value);
std::string FromStored(const RepositoryDatabase::Value& stored, std::int16_t& value);
std::string FromStored(const RepositoryDatabase::Value& stored, float& value);
std::string FromStored(const RepositoryDatabase::Value& stored, double& value);
std::string FromStored(const RepositoryDatabase::Value& stored, std::string& value);

} // namespace ba
