#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleExport.h"

#include <map>
#include <memory>
#include <tuple>
#include <unicode/idna.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/ucurr.h>
#include <unicode/unistr.h>

namespace {

constexpr std::size_t cacheLimit = 32; // formatters, each some 100 KB; a screen uses one or two

std::string utf8(const icu::UnicodeString& text)
{
    std::string result;
    return text.toUTF8String(result);
}

icu::Locale localeOf(const std::string& tag)
{
    UErrorCode error = U_ZERO_ERROR;
    // en-US-POSIX is no well-formed language tag for ICU's parser, which wants the variant as an extension.
    const icu::Locale locale = tag == "en-US-POSIX" ? icu::Locale("en", "US", "POSIX") : icu::Locale::forLanguageTag(tag, error);
    return U_FAILURE(error) || locale.isBogus() ? icu::Locale::getUS() : locale;
}

class Icu final : public platform::IcuModule {
public:
    bool isKnownTimeZone(const std::string& zone) const override
    {
        const std::unique_ptr<icu::TimeZone> found(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
        return *found != icu::TimeZone::getUnknown();
    }

    std::optional<std::string> formatDate(
        double secondsSince1970, const std::string& pattern, const std::string& locale, const std::string& zone) override
    {
        auto& formatter = dateFormatters[{ pattern, locale, zone }];
        if (!formatter) {
            UErrorCode error = U_ZERO_ERROR;
            auto made = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern), localeOf(locale), error);
            if (U_FAILURE(error)) {
                dateFormatters.erase({ pattern, locale, zone });
                return std::nullopt;
            }
            made->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
            formatter = std::move(made);
        }
        icu::UnicodeString text;
        UErrorCode error = U_ZERO_ERROR;
        formatter->format(secondsSince1970 * 1000, text, nullptr, error);
        if (U_FAILURE(error))
            return std::nullopt;
        if (dateFormatters.size() > cacheLimit)
            dateFormatters.clear();
        return utf8(text);
    }

    std::optional<std::string> formatCurrency(
        double value, const std::string& locale, const std::string& code, bool grouping) override
    {
        auto& formatter = currencyFormatters[{ locale, code, grouping }];
        if (!formatter) {
            UErrorCode error = U_ZERO_ERROR;
            std::unique_ptr<icu::NumberFormat> made(icu::NumberFormat::createCurrencyInstance(localeOf(locale), error));
            if (made && U_SUCCESS(error))
                made->setCurrency(icu::UnicodeString::fromUTF8(code).getTerminatedBuffer(), error);
            if (!made || U_FAILURE(error)) {
                currencyFormatters.erase({ locale, code, grouping });
                return std::nullopt;
            }
            made->setGroupingUsed(grouping);
            formatter = std::move(made);
        }
        icu::UnicodeString text;
        formatter->format(value, text);
        if (currencyFormatters.size() > cacheLimit)
            currencyFormatters.clear();
        return utf8(text);
    }

    std::optional<std::string> currencyCode(const std::string& locale) const override
    {
        constexpr int codeLength = 3;
        UChar code[codeLength + 1] = {};
        UErrorCode error = U_ZERO_ERROR;
        const int32_t length = ucurr_forLocale(localeOf(locale).getName(), code, codeLength + 1, &error);
        return U_SUCCESS(error) && length == codeLength ? std::optional(utf8(icu::UnicodeString(code, length))) : std::nullopt;
    }

    std::optional<std::string> asciiHost(const std::string& host) const override
    {
        UErrorCode error = U_ZERO_ERROR;
        constexpr std::uint32_t rules
            = UIDNA_USE_STD3_RULES | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII;
        static const std::unique_ptr<icu::IDNA> names(icu::IDNA::createUTS46Instance(rules, error));
        if (!names)
            return std::nullopt;
        icu::UnicodeString ascii;
        icu::IDNAInfo info;
        names->nameToASCII(icu::UnicodeString::fromUTF8(host), ascii, info, error);
        return U_SUCCESS(error) && !info.hasErrors() ? std::optional(utf8(ascii)) : std::nullopt;
    }

private:
    std::map<std::tuple<std::string, std::string, std::string>, std::unique_ptr<icu::DateFormat>> dateFormatters;
    std::map<std::tuple<std::string, std::string, bool>, std::unique_ptr<icu::NumberFormat>> currencyFormatters;
};

} // namespace

MIVORA_EXPORT_MODULE(platform::IcuModule, Icu);
