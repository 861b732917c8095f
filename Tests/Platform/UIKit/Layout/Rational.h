#pragma once

#include <cmath>
#include <cstdint>
#include <numeric>

namespace layouttests {

// An exact fraction. Numbers that outgrow 64 bits set `hasOverflowed`, and the result is then worthless.
class Rational {
public:
    Rational(std::int64_t whole = 0) // NOLINT(google-explicit-constructor): whole numbers are fractions
        : numerator(whole)
    {
    }
    static Rational from(double value) // exact for the halves, quarters and so on that the tests use
    {
        constexpr std::int64_t denominator = 1 << 10;
        return reduced(static_cast<std::int64_t>(std::llround(value * denominator)), denominator);
    }

    double toDouble() const { return static_cast<double>(numerator) / static_cast<double>(denominator); }
    int sign() const { return numerator > 0 ? 1 : numerator < 0 ? -1 : 0; }

    Rational operator-() const { return reduced(-static_cast<Wide>(numerator), denominator); }
    Rational operator+(const Rational& other) const
    {
        return reduced(static_cast<Wide>(numerator) * other.denominator + static_cast<Wide>(other.numerator) * denominator,
            static_cast<Wide>(denominator) * other.denominator);
    }
    Rational operator-(const Rational& other) const { return *this + -other; }
    Rational operator*(const Rational& other) const
    {
        return reduced(static_cast<Wide>(numerator) * other.numerator, static_cast<Wide>(denominator) * other.denominator);
    }
    Rational operator/(const Rational& other) const
    {
        const Wide sign = other.numerator < 0 ? -1 : 1;
        return reduced(
            static_cast<Wide>(numerator) * other.denominator * sign, static_cast<Wide>(denominator) * other.numerator * sign);
    }
    bool operator==(const Rational& other) const = default;
    bool operator<(const Rational& other) const
    {
        return static_cast<Wide>(numerator) * other.denominator < static_cast<Wide>(other.numerator) * denominator;
    }

    static inline bool hasOverflowed = false;

private:
    __extension__ using Wide = __int128;

    static Rational reduced(Wide numerator, Wide denominator)
    {
        if (numerator == 0)
            return {};
        Wide a = numerator < 0 ? -numerator : numerator;
        Wide b = denominator;
        while (b > INT64_MAX || a > INT64_MAX) {
            if (b == 0)
                break;
            a %= b;
            std::swap(a, b);
        }
        const Wide divisor = a == 0 || b == 0 ? a + b : std::gcd(static_cast<std::int64_t>(a), static_cast<std::int64_t>(b));
        numerator /= divisor;
        denominator /= divisor;
        if (numerator > INT64_MAX || numerator < -INT64_MAX || denominator > INT64_MAX) {
            hasOverflowed = true;
            return {};
        }
        Rational result;
        result.numerator = static_cast<std::int64_t>(numerator);
        result.denominator = static_cast<std::int64_t>(denominator);
        return result;
    }

    std::int64_t numerator = 0;
    std::int64_t denominator = 1;
};

} // namespace layouttests
