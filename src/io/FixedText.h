#pragma once
// Fixed-point number text exactly as printf's "%W.Pf" writes it, without printf's cost:
// the exports write tens of millions of numbers.

#include <string>

namespace ba {

// Appends `value` as std::snprintf(..., "%<width>.<precision>f", double(value)) would
// write it: rounded to `precision` decimals (ties to even, as the C library rounds the
// exact binary value), a '-' for negative values and negative zero, right-aligned in
// `width` characters, "nan" and "inf" as printf spells them. `precision` is 0 to 17.
void AppendFixed(std::string& out, float value, int width, int precision);

} // namespace ba
