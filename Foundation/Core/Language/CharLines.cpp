// Which characters may not begin or end a line in Chinese, Japanese and Korean text.
#include <algorithm>
#include <string_view>

#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Language/Language.h"

namespace {

constexpr std::u16string_view kTraditionalNoStart =
    u"!),.:;?]}\u00B7\u2013\u2014\u2019\u201D\u2025\u2026\u2027\u2032\u2574\u3001\u3002\u3009"
    u"\u300B\u300D\u300F\u3011\u3015\u301E\uFE30\uFE31\uFE33\uFE34\uFE36\uFE38\uFE3A\uFE3C"
    u"\uFE3E\uFE40\uFE42\uFE44\uFE4F\uFE50\uFE51\uFE52\uFE54\uFE55\uFE56\uFE57\uFE5A\uFE5C"
    u"\uFE5E\uFF01\uFF09\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF5C\uFF5D";
constexpr std::u16string_view kSimplifiedNoStart =
    u"!),.:;?]}\u00A8\u02C7\u02C9\u2015\u2016\u2019\u201D\u2022\u2026\u2236\u3001\u3002\u3003"
    u"\u3005\u3009\u300B\u300D\u300F\u3011\u3015\u3017\uFF01\uFF02\uFF07\uFF09\uFF0C\uFF0E"
    u"\uFF1A\uFF1B\uFF1F\uFF3D\uFF40\uFF5C\uFF5D\uFF5E";
constexpr std::u16string_view kJapaneseNoStart =
    u"!%),.:;?]}\u00A2\u00B0\u2010\u2019\u201D\u2030\u2032\u2033\u2103\u3001\u3002\u3005\u3009"
    u"\u300B\u300D\u300F\u3011\u3015\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087"
    u"\u308E\u309B\u309C\u309D\u309E\u30A1\u30A3\u30A5\u30A7\u30A9\u30C3\u30E3\u30E5\u30E7"
    u"\u30EE\u30F5\u30F6\u30FB\u30FC\u30FD\u30FE\uFF01\uFF05\uFF09\uFF0C\uFF0E\uFF1A\uFF1B"
    u"\uFF1F\uFF3D\uFF5D\uFF61\uFF63\uFF64\uFF65\uFF67\uFF68\uFF69\uFF6A\uFF6B\uFF6C\uFF6D"
    u"\uFF6E\uFF6F\uFF70\uFF9E\uFF9F\uFFE0";
constexpr std::u16string_view kKoreanNoStart =
    u"!%),.:;?]}\u00B0\u2019\u201D\u2032\u2033\u2103\u3001\u3009\u300B\u300D\u300F\u3011\u3015"
    u"\uFF01\uFF05\uFF09\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF3D\uFF5D\uFFE0\uFFE6";
constexpr std::u16string_view kTraditionalNoEnd =
    u"([{\u2018\u201C\u2035\u3008\u300A\u300C\u300E\u3010\u3014\u301D\uFE35\uFE37\uFE39\uFE3B"
    u"\uFE3D\uFE3F\uFE41\uFE43\uFE59\uFE5B\uFE5D\uFF08\uFF5B";
constexpr std::u16string_view kSimplifiedNoEnd =
    u"([{\u2018\u201C\u3008\u300A\u300C\u300E\u3010\u3014\u3016\uFF08\uFF0E\uFF10\uFF11\uFF12"
    u"\uFF13\uFF14\uFF15\uFF16\uFF17\uFF18\uFF19\uFF3B\uFF5B";
constexpr std::u16string_view kJapaneseNoEnd =
    u"$([\\{\u00A3\u00A5\u2018\u201C\u3008\u300A\u300C\u300E\u3010\u3014\uFF04\uFF08\uFF3B"
    u"\uFF5B\uFF62\uFFE1\uFFE5";
constexpr std::u16string_view kKoreanNoEnd =
    u"([\\{\u2018\u201C\u3008\u300A\u300C\u300E\u3010\u3014\uFF04\uFF08\uFF3B\uFF5B\uFFE6";

struct Rule {
    std::u16string_view no_start, no_end;
};
constexpr Rule kTraditional = {kTraditionalNoStart, kTraditionalNoEnd};
constexpr Rule kSimplified = {kSimplifiedNoStart, kSimplifiedNoEnd};
constexpr Rule kJapanese = {kJapaneseNoStart, kJapaneseNoEnd};
constexpr Rule kKorean = {kKoreanNoStart, kKoreanNoEnd};

constexpr bool AreSorted() {
    for (const Rule& rule : {kTraditional, kSimplified, kJapanese, kKorean}) {
        if (!std::ranges::is_sorted(rule.no_start) || !std::ranges::is_sorted(rule.no_end)) {
            return false;
        }
    }
    return true;
}
static_assert(AreSorted(), "the lists are searched by halves");

Rule RuleOf(unsigned int language_id) {
    switch (CT_Language::seo_GetPrimary(language_id)) {
        case CT_Language::kChinese:
            switch (CT_Language::seo_GetSub(language_id)) {
                case CT_Language::kSubNeutral:
                case CT_Language::kSubDefault:
                case CT_Language::kChineseTaiwan:
                case CT_Language::kChineseHongKong:
                    return kTraditional;
                default:
                    return kSimplified;
            }
        case CT_Language::kJapanese:
            return kJapanese;
        case CT_Language::kKorean:
            return kKorean;
        default:
            return {};
    }
}

}  // namespace

BOOL CT_CharProperties::sb_CanStartLine(char16_t unit, unsigned int language_id) {
    return !std::ranges::binary_search(RuleOf(language_id).no_start, unit);
}

BOOL CT_CharProperties::sb_CanEndLine(char16_t unit, unsigned int language_id) {
    return !std::ranges::binary_search(RuleOf(language_id).no_end, unit);
}
