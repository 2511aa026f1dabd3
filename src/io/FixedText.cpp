#include "io/FixedText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace ba {
namespace {

constexpr int kMaxPrecision = 17;

// Up to this many decimals a float times 10^precision is exact in a double: the float's
// 24 significant bits and the 5^precision factor (at most 21 bits) fit in 53 bits.
constexpr int kMaxExactPrecision = 9;

constexpr std::array<std::uint64_t, kMaxExactPrecision + 1> kPowersOfTen = {
    1ULL, 10ULL, 100ULL, 1'000ULL, 10'000ULL, 100'000ULL, 1'000'000ULL, 10'000'000ULL, 100'000'000ULL,
    1'000'000'000ULL,
};

constexpr char kDigitPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
                               "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
                               "8081828384858687888990919293949596979899";

// Below 2^53 every integer is a double, so the scaled value converts without loss.
constexpr double kExactIntegerLimit = 9007199254740992.0;
constexpr double kTwoTo52 = 4503599627370496.0;

// Appends text[0..length) right-aligned in `width` characters.
void AppendPadded(std::string& out, const char* text, std::size_t length, int width)
{
    if (static_cast<int>(length) < width) out.append(static_cast<std::size_t>(width) - length, ' ');
    out.append(text, length);
}

} // namespace

void AppendFixed(std::string& out, float value, int width, int precision)
{
    if (precision < 0 || precision > kMaxPrecision) throw std::invalid_argument("AppendFixed: precision out of range");
    const double wide = value;
    if (precision <= kMaxExactPrecision) {
        const double scale = static_cast<double>(kPowersOfTen[static_cast<std::size_t>(precision)]);
        const double scaled = std::fabs(wide) * scale; // exact, see kMaxExactPrecision
        if (scaled < kExactIntegerLimit) {
            // The product is the exact decimal value shifted, so rounding it to an integer in
            // the current rounding mode rounds exactly as printf does. Adding and taking away
            // 2^52 is that rounding: it leaves no bits below the units place.
            const double rounded = scaled < kTwoTo52 ? (scaled + kTwoTo52) - kTwoTo52 : scaled;
            auto units = static_cast<std::uint64_t>(rounded);
            // Written from the last digit backwards, two digits at a time, then the point
            // is opened up among them; padding goes in front and the field is appended at once.
            char text[64];
            char* const end = text + sizeof text;
            char* p = end;
            int digits = 0;
            while (units >= 100) {
                p -= 2;
                std::memcpy(p, &kDigitPairs[2 * (units % 100)], 2);
                units /= 100;
                digits += 2;
            }
            if (units >= 10) {
                p -= 2;
                std::memcpy(p, &kDigitPairs[2 * units], 2);
                digits += 2;
            } else {
                *--p = static_cast<char>('0' + units);
                digits += 1;
            }
            for (; digits <= precision; ++digits) *--p = '0'; // at least one digit before the point
            if (precision > 0) {
                const int whole = digits - precision;
                for (int i = 0; i < whole; ++i) p[i - 1] = p[i];
                --p;
                p[whole] = '.';
            }
            if (std::signbit(value)) *--p = '-';
            if (width > static_cast<int>(sizeof text)) {
                AppendPadded(out, p, static_cast<std::size_t>(end - p), width);
                return;
            }
            const auto length = static_cast<int>(end - p);
            if (length < width) {
                p -= width - length;
                std::memset(p, ' ', static_cast<std::size_t>(width - length));
            }
            out.append(p, static_cast<std::size_t>(end - p));
            return;
        }
    }
    // Large values, infinities and NaN: the library conversion, which rounds like printf.
    char text[400];
    const auto result = std::to_chars(text, text + sizeof text, wide, std::chars_format::fixed, precision);
    AppendPadded(out, text, static_cast<std::size_t>(result.ptr - text), width);
}

} // namespace ba
