#pragma once

#include <QByteArray>
#include <QString>

#include <unicode/udat.h>
#include <unicode/udatpg.h>

#include <string>

namespace tarne::test {

/// Locales of many scripts, orders of a date, digits and clocks.
inline constexpr const char *cldrLocales[] = {
    "ar_EG", "ar_SA", "bg_BG", "bn_BD", "ca_ES", "cs_CZ", "cy_GB", "da_DK", "de_AT", "de_CH",
    "de_DE", "el_GR", "en_AU", "en_CA", "en_GB", "en_IN", "en_US", "en_ZA", "es_ES", "es_MX",
    "es_US", "et_EE", "eu_ES", "fa_IR", "fi_FI", "fr_CA", "fr_CH", "fr_FR", "ga_IE", "gl_ES",
    "he_IL", "hi_IN", "hr_HR", "hu_HU", "id_ID", "is_IS", "it_IT", "ja_JP", "ko_KR", "lt_LT",
    "lv_LV", "mk_MK", "mr_IN", "mt_MT", "nb_NO", "nl_NL", "pl_PL", "pt_BR", "pt_PT", "ro_RO",
    "ru_RU", "sk_SK", "sl_SI", "sq_AL", "sr_RS", "sv_SE", "ta_IN", "th_TH", "tr_TR", "uk_UA",
    "ur_PK", "vi_VN", "zh_CN", "zh_TW"};

/// What ICU's C interface writes in a locale, with the time zone in its own hands. As in our texts
/// a blank stands for each narrow no-break space.
class CldrTexts {
public:
    CldrTexts(const char *locale, const QString &zone)
        : m_locale(QByteArray(locale) + "@calendar=gregorian"), m_zone(zone.toStdU16String()) {}

    [[nodiscard]] QString text(UDateFormatStyle timeStyle, UDateFormatStyle dateStyle,
                               double unixSeconds) const {
        return text(timeStyle, dateStyle, {}, unixSeconds);
    }
    [[nodiscard]] QString monthAndYear(double unixSeconds) const {
        UErrorCode error = U_ZERO_ERROR;
        UDateTimePatternGenerator *generator = udatpg_open(m_locale.constData(), &error);
        std::u16string pattern(100, u'\0');
        pattern.resize(static_cast<std::size_t>(
            udatpg_getBestPattern(generator, u"yMMMM", -1, pattern.data(),
                                  static_cast<int32_t>(pattern.size()), &error)));
        udatpg_close(generator);
        return text(UDAT_PATTERN, UDAT_PATTERN, pattern, unixSeconds);
    }

private:
    [[nodiscard]] QString text(UDateFormatStyle timeStyle, UDateFormatStyle dateStyle,
                               const std::u16string &pattern, double unixSeconds) const {
        UErrorCode error = U_ZERO_ERROR;
        UDateFormat *format =
            udat_open(timeStyle, dateStyle, m_locale.constData(), m_zone.c_str(), -1,
                      pattern.c_str(), static_cast<int32_t>(pattern.size()), &error);
        std::u16string text(200, u'\0');
        text.resize(static_cast<std::size_t>(udat_format(format, unixSeconds * 1000, text.data(),
                                                         static_cast<int32_t>(text.size()), nullptr,
                                                         &error)));
        udat_close(format);
        if (U_FAILURE(error))
            return QString::fromLatin1(u_errorName(error));
        return QString::fromStdU16String(text).replace(u'\u202F', u' ');
    }

    QByteArray m_locale;
    std::u16string m_zone;
};

} // namespace tarne::test
