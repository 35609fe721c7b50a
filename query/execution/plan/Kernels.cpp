// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/Kernels.h"

#include "host/expr/Expression.h"

#include <cmath>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace query::plan {

namespace {

constexpr std::array<double, gis::MaxDecimalDigits + 1> PowersOfTen { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5,
    1e6, 1e7, 1e8, 1e9, 1e10 };
/// Adding and subtracting it leaves the nearest whole number (halves to even) of numbers up to
/// `MostUnits` in magnitude.
constexpr double RoundingShift = 6755399441055744.0; // 1.5 * 2^52
constexpr double MostUnits = 2251799813685248.0; // 2^51: halves are still exact

/// Words from 64 rows at a time by `wide(first)`, the rest row by row by `single(row)`.
template <typename Wide, typename Single>
void fillWords(int count, Bits& bits, const Wide& wide, const Single& single)
{
    int row = 0;
    std::size_t word = 0;
    for (; row + 64 <= count; row += 64)
        bits[word++] = wide(row);
    if (row == count)
        return;
    std::uint64_t last = 0;
    for (int i = 0; row + i < count; ++i)
        last |= std::uint64_t(single(row + i) ? 1 : 0) << i;
    bits[word] = last;
}

template <typename Single> void fillWords(int count, Bits& bits, const Single& single)
{
    const auto wide = [&](int first) {
        std::uint64_t word = 0;
        for (int i = 0; i < 64; ++i)
            word |= std::uint64_t(single(first + i) ? 1 : 0) << i;
        return word;
    };
    fillWords(count, bits, wide, single);
}

#if defined(__SSE2__)
/// 64 answers from sixteen rows at a time; `quad` gives four lanes of 32 bits, all ones for
/// yes.
template <typename Quad> std::uint64_t wordOfQuads(int first, const Quad& quad)
{
    std::uint64_t word = 0;
    for (int i = 0; i < 64; i += 16) {
        const __m128i low = _mm_packs_epi32(quad(first + i), quad(first + i + 4));
        const __m128i high = _mm_packs_epi32(quad(first + i + 8), quad(first + i + 12));
        const auto bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
        word |= std::uint64_t(bits) << i;
    }
    return word;
}

/// Four rows of doubles as four lanes of 32 bits; `pair` gives two lanes of 64.
template <typename Pair> __m128i quadOfPairs(int first, const Pair& pair)
{
    const __m128 low = _mm_castpd_ps(pair(first));
    const __m128 high = _mm_castpd_ps(pair(first + 2));
    return _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
}

template <typename Pair> std::uint64_t wordOfPairs(int first, const Pair& pair)
{
    return wordOfQuads(first, [&](int row) { return quadOfPairs(row, pair); });
}

__m128i load(const void* at)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(at));
}
#endif

template <typename Compare, typename Right>
void compareRows(const double* left, const Right& right, int count, Bits& holds)
{
#if defined(__SSE2__)
    const auto pair
        = [&](int row) { return Compare::pair(_mm_loadu_pd(left + row), right.pair(row)); };
    fillWords(
        count, holds, [&](int first) { return wordOfPairs(first, pair); },
        [&](int row) { return Compare::single(left[row], right.single(row)); });
#else
    fillWords(count, holds, [&](int row) { return Compare::single(left[row], right.single(row)); });
#endif
}

#if defined(__SSE2__)
#define TEMATICA_COMPARISON(Name, intrinsic, symbol)                                               \
    struct Name {                                                                                  \
        static __m128d pair(__m128d a, __m128d b) { return intrinsic(a, b); }                      \
        static bool single(double a, double b) { return a symbol b; }                              \
    };
#else
#define TEMATICA_COMPARISON(Name, intrinsic, symbol)                                               \
    struct Name {                                                                                  \
        static bool single(double a, double b) { return a symbol b; }                              \
    };
#endif
TEMATICA_COMPARISON(Equal, _mm_cmpeq_pd, ==)
TEMATICA_COMPARISON(NotEqual, _mm_cmpneq_pd, !=)
TEMATICA_COMPARISON(Greater, _mm_cmpgt_pd, >)
TEMATICA_COMPARISON(Less, _mm_cmplt_pd, <)
TEMATICA_COMPARISON(GreaterOrEqual, _mm_cmpge_pd, >=)
TEMATICA_COMPARISON(LessOrEqual, _mm_cmple_pd, <=)
#undef TEMATICA_COMPARISON

struct RowsRight {
    const double* values;
#if defined(__SSE2__)
    [[nodiscard]] __m128d pair(int row) const
    {
        return _mm_loadu_pd(values + row);
    }
#endif
    [[nodiscard]] double single(int row) const
    {
        return values[row];
    }
};
struct ConstantRight {
    double value;
#if defined(__SSE2__)
    [[nodiscard]] __m128d pair(int) const
    {
        return _mm_set1_pd(value);
    }
#endif
    [[nodiscard]] double single(int) const
    {
        return value;
    }
};

template <typename Right>
void compareByCode(int code, const double* left, const Right& right, int count, Bits& holds)
{
    switch (code) {
    case EEEqual:
        return compareRows<Equal>(left, right, count, holds);
    case EENotEqual:
        return compareRows<NotEqual>(left, right, count, holds);
    case EEGreater:
        return compareRows<Greater>(left, right, count, holds);
    case EELess:
        return compareRows<Less>(left, right, count, holds);
    case EEGreaterOrEqual:
        return compareRows<GreaterOrEqual>(left, right, count, holds);
    default:
        return compareRows<LessOrEqual>(left, right, count, holds);
    }
}

template <typename Left, typename Right>
void calculateByCode(int code, const Left& left, const Right& right, int count, double* out)
{
    switch (code) {
    case EEAdd:
        for (int i = 0; i < count; ++i)
            out[i] = left(i) + right(i);
        return;
    case EESubtract:
        for (int i = 0; i < count; ++i)
            out[i] = left(i) - right(i);
        return;
    case EEMultiply:
        for (int i = 0; i < count; ++i)
            out[i] = left(i) * right(i);
        return;
    default:
        for (int i = 0; i < count; ++i)
            out[i] = left(i) / right(i);
    }
}

} // namespace

void insideBits(
    const std::int32_t* values, int count, std::int32_t low, std::int32_t high, Bits& inside)
{
    const auto single = [&](int row) { return low <= values[row] && values[row] <= high; };
#if defined(__SSE2__)
    const __m128i lows = _mm_set1_epi32(low);
    const __m128i highs = _mm_set1_epi32(high);
    const auto quad = [&](int row) {
        const __m128i rows = load(values + row);
        const __m128i outside
            = _mm_or_si128(_mm_cmplt_epi32(rows, lows), _mm_cmpgt_epi32(rows, highs));
        return _mm_xor_si128(outside, _mm_set1_epi32(-1));
    };
    fillWords(
        count, inside, [&](int first) { return wordOfQuads(first, quad); }, single);
#else
    fillWords(count, inside, single);
#endif
}

void insideBits(const double* values, int count, const DecimalBounds& bounds,
    const DecimalBounds& ordinary, Bits& inside, Bits& odd)
{
    const auto within = [&](int row, const DecimalBounds& of) {
        return of.low <= values[row] && values[row] <= of.high;
    };
    const auto single = [&](int row) { return within(row, bounds); };
    const auto singleOdd = [&](int row) { return !within(row, ordinary); };
#if defined(__SSE2__)
    const auto pairWithin = [&](int row, const DecimalBounds& of) {
        const __m128d rows = _mm_loadu_pd(values + row);
        return _mm_and_pd(
            _mm_cmpge_pd(rows, _mm_set1_pd(of.low)), _mm_cmple_pd(rows, _mm_set1_pd(of.high)));
    };
    const auto pair = [&](int row) { return pairWithin(row, bounds); };
    const auto pairOrdinary = [&](int row) { return pairWithin(row, ordinary); };
    fillWords(
        count, inside, [&](int first) { return wordOfPairs(first, pair); }, single);
    fillWords(
        count, odd, [&](int first) { return ~wordOfPairs(first, pairOrdinary); }, singleOdd);
#else
    fillWords(count, inside, single);
    fillWords(count, odd, singleOdd);
#endif
}

void equalBits(const std::uint32_t* codes, int count, std::uint32_t code, Bits& equal)
{
    const auto single = [&](int row) { return codes[row] == code; };
#if defined(__SSE2__)
    const __m128i sought = _mm_set1_epi32(static_cast<int>(code));
    const auto quad = [&](int row) { return _mm_cmpeq_epi32(load(codes + row), sought); };
    fillWords(
        count, equal, [&](int first) { return wordOfQuads(first, quad); }, single);
#else
    fillWords(count, equal, single);
#endif
}

void trueBits(const std::uint8_t* values, int count, Bits& isTrue)
{
    fillWords(count, isTrue, [&](int row) { return values[row] != 0; });
}

void memberBits(const std::uint32_t* codes, int count, const std::uint64_t* members,
    std::uint32_t memberCount, Bits& isMember)
{
    // Rows without a value may hold any code: those out of range look at the first one.
    fillWords(count, isMember, [&](int row) {
        const std::uint32_t code = codes[row] < memberCount ? codes[row] : 0;
        return (members[code / 64] >> (code % 64) & 1) != 0;
    });
}

void roundDecimals(const double* values, int count, int digits, double* rounded, Bits& doubtful)
{
    // The nearest whole number of units of the last digit, divided by an exact power of ten, is the
    // double nearest to the text's number. Next to a half the product's own rounding might decide
    // wrongly; those rows are given back as doubtful.
    const double power = PowersOfTen[static_cast<std::size_t>(digits)];
    const auto single = [&](int row) {
        const double scaled = values[row] * power;
        const double units = (scaled + RoundingShift) - RoundingShift;
        rounded[row] = units / power;
        return !(std::fabs(scaled) < MostUnits) || std::fabs(scaled - units) == 0.5;
    };
#if defined(__SSE2__)
    const __m128d signBit = _mm_set1_pd(-0.0);
    const __m128d powers = _mm_set1_pd(power);
    const __m128d shift = _mm_set1_pd(RoundingShift);
    const auto pair = [&](int row) {
        const __m128d scaled = _mm_mul_pd(_mm_loadu_pd(values + row), powers);
        const __m128d units = _mm_sub_pd(_mm_add_pd(scaled, shift), shift);
        _mm_storeu_pd(rounded + row, _mm_div_pd(units, powers));
        const __m128d magnitude = _mm_andnot_pd(signBit, scaled);
        const __m128d rest = _mm_andnot_pd(signBit, _mm_sub_pd(scaled, units));
        return _mm_or_pd(
            _mm_cmpnlt_pd(magnitude, _mm_set1_pd(MostUnits)), _mm_cmpeq_pd(rest, _mm_set1_pd(0.5)));
    };
    fillWords(
        count, doubtful, [&](int first) { return wordOfPairs(first, pair); }, single);
#else
    fillWords(count, doubtful, single);
#endif
}

void compareBits(int code, const double* left, const double* right, int count, Bits& holds)
{
    compareByCode(code, left, RowsRight { right }, count, holds);
}

void compareBits(int code, const double* left, double right, int count, Bits& holds)
{
    compareByCode(code, left, ConstantRight { right }, count, holds);
}

void calculate(int code, const double* left, const double* right, int count, double* out)
{
    calculateByCode(
        code, [&](int i) { return left[i]; }, [&](int i) { return right[i]; }, count, out);
}

void calculate(int code, const double* left, double right, int count, double* out)
{
    calculateByCode(
        code, [&](int i) { return left[i]; }, [&](int) { return right; }, count, out);
}

void calculate(int code, double left, const double* right, int count, double* out)
{
    calculateByCode(
        code, [&](int) { return left; }, [&](int i) { return right[i]; }, count, out);
}

void finiteBits(const double* values, int count, Bits& isFinite)
{
    constexpr double Most = std::numeric_limits<double>::max();
    Bits odd;
    insideBits(values, count, { -Most, Most }, { -Most, Most }, isFinite, odd);
}

} // namespace query::plan
