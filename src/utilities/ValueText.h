#pragma once
// A value as the utilities' messages write it.

#include <string>

namespace ba {

// The shortest text that reads back to the same 32-bit float ("0.1", "-9999.99", "150").
std::string ValueText(float value);

} // namespace ba
