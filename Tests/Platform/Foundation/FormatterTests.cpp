#include "Platform/Foundation/DateComponentsFormatter.h"
#include "Platform/Foundation/DateFormatter.h"
#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NumberFormatter.h"
#include "Platform/Foundation/PlainDateFormat.h"
#include "Platform/Foundation/PlainMoneyFormat.h"
#include "Tests/Platform/Foundation/QuietTest.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace platform {

namespace {

// The environment's zone, set before anything asks for it.
const int zoneIsSet = ::setenv("TZ", "America/New_York", 1);

constexpr Date spring { 1741953600 }; // 14 March 2025, 12:00 UTC
constexpr const char* cardPattern = "MMM d, h:mm a";

class FormatterTests : public QuietTest {
protected:
    void TearDown() override
    {
        Locale::setCurrent(std::nullopt);
        TimeZone::setCurrent(std::nullopt);
        QuietTest::TearDown();
    }
};

std::string written(Date date, const char* pattern, const char* locale, const char* zone)
{
    DateFormatter formatter;
    formatter.setDateFormat(pattern);
    formatter.setLocale({ locale });
    formatter.setTimeZone({ zone });
    return formatter.string(date);
}

std::optional<std::string> money(double value, const char* locale, std::optional<std::string> code = std::nullopt)
{
    NumberFormatter formatter;
    formatter.setLocale({ locale });
    formatter.setCurrencyCode(std::move(code));
    return formatter.currencyString(value);
}

TEST(NumberFormatter, writesAmericanAmountsWithoutIcuAsIcuDoes)
{
    auto* icu = loadModule<IcuModule>("icu");
    ASSERT_TRUE(icu);
    std::vector<double> values = { 0, -0.0, 0.005, 0.015, 1.005, 1.015, 2.5, 3.5, 0.125, 999.995, 999999.995, 1234.5, -1234.5,
        -0.001, 99.999, 1e11, 123456789.12, 0.1 + 0.2, 1e-7 };
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-3, 11.5);
    for (int i = 0; i < 3000; ++i)
        values.push_back(std::pow(10, exponent(random)) * (i % 2 ? 1 : -1));
    for (const char* code : { "USD", "EUR", "GBP", "JPY", "CAD", "AUD", "INR", "KRW" }) {
        for (const double value : values) {
            for (const bool grouping : { true, false })
                ASSERT_EQ(plainCurrencyString(value, code, grouping), icu->formatCurrency(value, "en-US", code, grouping))
                    << value << code;
        }
    }
    EXPECT_FALSE(plainCurrencyString(1, "CHF", true));
    EXPECT_FALSE(plainCurrencyString(1e12, "USD", true));
}

} // namespace

TEST_F(FormatterTests, writesDatesInLocaleAndZone)
{
    struct Case {
        const char* locale;
        const char* zone;
        const char* text;
    };
    const Case cases[] = {
        { "en_US_POSIX", "UTC", "Mar 14, 12:00 PM" },
        { "en_US_POSIX", "America/New_York", "Mar 14, 8:00 AM" },
        { "en_US_POSIX", "Asia/Kolkata", "Mar 14, 5:30 PM" },
        { "en_US", "Pacific/Auckland", "Mar 15, 1:00 AM" },
        { "en-GB", "Europe/London", "Mar 14, 12:00 pm" },
        { "de_DE", "Europe/Berlin", "März 14, 1:00 PM" },
        { "ja_JP", "Asia/Tokyo", "3月 14, 9:00 午後" },
        { "fr_FR.UTF-8", "GMT+02:00", "mars 14, 2:00 PM" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.locale) + " " + c.zone);
        EXPECT_EQ(written(spring, cardPattern, c.locale, c.zone), c.text);
    }
    // Arabic readers get their own digits and words.
    EXPECT_EQ(written(spring, cardPattern, "ar_EG", "UTC"), "مارس ١٤, ١٢:٠٠ م");
}

TEST_F(FormatterTests, followsTheDevicesLocaleAndZone)
{
    DateFormatter formatter;
    formatter.setDateFormat(cardPattern);
    EXPECT_EQ(formatter.string(spring), "Mar 14, 8:00 AM");
    Locale::setCurrent(Locale { "de_DE" });
    TimeZone::setCurrent(TimeZone { "Europe/Berlin" });
    EXPECT_EQ(formatter.string(spring), "März 14, 1:00 PM");
}

TEST_F(FormatterTests, anUnknownZoneIsSaidOnceAndCountsAsUTC)
{
    EXPECT_EQ(written(spring, cardPattern, "en_US_POSIX", "Mars/Olympus"), "Mar 14, 12:00 PM");
    EXPECT_EQ(written(spring, cardPattern, "de_DE", "Mars/Olympus"), "März 14, 12:00 PM");
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(written(spring, cardPattern, "en_US", ""), "Mar 14, 12:00 PM");
    EXPECT_EQ(takeLines().size(), 1u);
}

TEST_F(FormatterTests, hostileInputGivesNoText)
{
    EXPECT_EQ(written(spring, "", "en_US", "UTC"), "");
    EXPECT_EQ(written({ std::nan("") }, cardPattern, "en_US", "UTC"), "");
    EXPECT_EQ(written({ std::numeric_limits<double>::infinity() }, cardPattern, "de_DE", "UTC"), "");
    EXPECT_EQ(written(spring, "J 'b", "de_DE", "UTC"), "");
    EXPECT_EQ(takeLines().size(), 1u) << "the malformed pattern";
    written({ 1e300 }, cardPattern, "en_US", "UTC");
    written({ -1e300 }, cardPattern, "no such locale", "UTC");
    written(spring, cardPattern, std::string(5000, 'x').c_str(), "UTC");
}

TEST_F(FormatterTests, plainEnglishDatesAreWhatIcuWrites)
{
    IcuModule* const icu = loadModule<IcuModule>("icu");
    ASSERT_NE(icu, nullptr);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> moments(0, 2145916800); // 1970 to 2038
    for (int round = 0; round < 3000; ++round) {
        const Date date { moments(random) };
        for (const char* zone : { "UTC", "America/New_York" }) {
            for (const char* pattern : { cardPattern, "EEEE, MMMM dd yyyy HH:mm:ss", "E d/M/yy hh 'o' a" }) {
                const auto plain = plainDateString(date, pattern, zone);
                if (!plain) {
                    ASSERT_NE(std::string(pattern).find('\''), std::string::npos) << pattern << " in " << zone;
                    continue;
                }
                ASSERT_EQ(plain, icu->formatDate(date.secondsSince1970, pattern, "en-US-POSIX", zone)) << date.secondsSince1970;
                ASSERT_EQ(plain, icu->formatDate(date.secondsSince1970, pattern, "en-US", zone)) << date.secondsSince1970;
            }
        }
    }
    EXPECT_EQ(plainDateString(spring, cardPattern, "Europe/Berlin"), std::nullopt) << "no rules at hand";
    EXPECT_EQ(plainDateString(spring, "YYYY", "UTC"), std::nullopt);
}

TEST_F(FormatterTests, writesMoneyAsItsReadersDo)
{
    EXPECT_EQ(money(1234.5, "en_US", "USD"), "$1,234.50");
    EXPECT_EQ(money(1234.5, "en_US"), "$1,234.50");
    EXPECT_EQ(money(1234.5, "en_US_POSIX", "USD"), "$1,234.50");
    EXPECT_EQ(money(1200, "ja_JP"), "￥1,200");
    EXPECT_EQ(money(1200.4, "en_US", "JPY"), "¥1,200");
    EXPECT_EQ(money(1234567.891, "de_DE", "EUR"), "1.234.567,89\u00a0€");
    EXPECT_EQ(money(1234567.5, "en_IN"), "₹12,34,567.50");
    EXPECT_EQ(money(-5, "en_US", "usd"), "-$5.00");
    EXPECT_EQ(money(0, "pt_BR"), "R$\u00a00,00");
    EXPECT_EQ(money(1, "en_US", "XYZ"), "XYZ\u00a01.00") << "a code without a sign stands for itself";
    EXPECT_EQ(money(std::nan(""), "en_US"), std::nullopt);
    EXPECT_EQ(money(std::numeric_limits<double>::infinity(), "en_US"), std::nullopt);
    EXPECT_EQ(money(1, "en_US", "dollars"), std::nullopt);
    EXPECT_EQ(money(1, "en_US", ""), std::nullopt);

    NumberFormatter formatter;
    formatter.setLocale({ "en_US" });
    formatter.setUsesGroupingSeparator(false);
    EXPECT_EQ(formatter.currencyString(1234.5), "$1234.50");
}

TEST_F(FormatterTests, moneyFollowsTheDevicesLocale)
{
    EXPECT_EQ(NumberFormatter().currencyString(2), "$2.00");
    Locale::setCurrent(Locale { "de_AT" });
    EXPECT_EQ(NumberFormatter().currencyString(2), "€\u00a02,00");
    EXPECT_EQ(Locale::current().currencyCode(), "EUR");
}

TEST(Locale, knowsItsDirectionAndTag)
{
    for (const char* tag : { "ar", "he_IL", "fa-IR", "ur", "az_Arab_IR", "ar_EG.UTF-8" })
        EXPECT_TRUE(Locale { tag }.isRightToLeft()) << tag;
    for (const char* tag : { "en_US", "de", "ja-JP", "uz_Cyrl", "ku_Latn", "arn", "" })
        EXPECT_FALSE(Locale { tag }.isRightToLeft()) << tag;
    EXPECT_EQ(Locale { "pt_BR.UTF-8@euro" }.languageTag(), "pt-BR");
}

TEST(DateComponentsFormatter, writesWhatAPlayerShows)
{
    DateComponentsFormatter minutes;
    minutes.setAllowsHours(false);
    minutes.setZeroFormatting(ZeroFormatting::pad);
    EXPECT_EQ(minutes.string(0), "00:00");
    EXPECT_EQ(minutes.string(65.99), "01:05");
    EXPECT_EQ(minutes.string(3725), "62:05");
    EXPECT_EQ(minutes.string(360000), "6000:00");

    DateComponentsFormatter hours;
    EXPECT_EQ(hours.string(5), "0:05");
    EXPECT_EQ(hours.string(65), "1:05");
    EXPECT_EQ(hours.string(3725), "1:02:05");
    hours.setZeroFormatting(ZeroFormatting::pad);
    EXPECT_EQ(hours.string(65), "00:01:05");
    EXPECT_EQ(hours.string(36000), "10:00:00");

    for (const double senseless : { -1.0, std::nan(""), std::numeric_limits<double>::infinity(), 1e16 })
        EXPECT_EQ(minutes.string(senseless), std::nullopt);
}

TEST_F(FormatterTests, aModuleThatIsMissingOrOfAnotherBuildIsSaidOnce)
{
    EXPECT_EQ(loadModuleObject("nonesuch", "any 1"), nullptr);
    EXPECT_EQ(loadModuleObject("nonesuch", "any 1"), nullptr);
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(loadModuleObject("icu", "icu 0"), nullptr);
    EXPECT_EQ(loadModuleObject("icu", "icu 0"), nullptr);
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(loadModule<IcuModule>("icu"), loadModule<IcuModule>("icu"));
}

} // namespace platform
