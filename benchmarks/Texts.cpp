#include "benchmarks/Texts.h"

#include <array>
#include <cstdint>
#include <sstream>
#include <string_view>

#include "Foundation/Platform/Text/Utf.h"

namespace platform = zelkor::platform;

namespace bench {
namespace {

constexpr std::string_view kEnglish =
    "the of and a to in is it was for on are as with his they at be this from I have or by one had "
    "not but what all were when we there can an your which their said if do will each about how up "
    "out them then she many some so these would other into has more her two like him see time "
    "could no make than first been its who now people my made over did down only way find use may "
    "water long little very after words called just where most know translation dictionary "
    "terminology Friday understanding international sentence 1998 42 house-keeping";

constexpr std::string_view kGerman =
    "der die und in den von zu das mit sich des auf für ist im dem nicht ein eine als auch es an "
    "werden aus er hat dass sie nach wird bei einer um am sind noch wie einem über einen so zum "
    "war haben nur oder aber vor zur bis mehr durch man sein wurde sei Prozent hatte kann gegen "
    "vom können schon wenn habe seine Mark ihre dann unter wir soll ich eines Jahr zwei Jahren "
    "diese dieser wieder keine Uhr seiner worden will zwischen immer Millionen was sagte "
    "Übersetzer "
    "Wörterbuch Straße größer Äpfel Häuser Verständigung außerdem natürlich 1998 fünf";

constexpr std::string_view kRussian =
    "и в не на я быть он с что а по это она этот к но они мы весь который из у то за свой что "
    "весь год от так о для ты же все тот мочь вы человек такой его сказать только или ещё бы себя "
    "один как уже до время если сам когда другой вот говорить наш мой знать стать при чтобы дело "
    "жизнь кто первый очень два день её новый рука даже во со раз где там под можно ну какой после "
    "их работа без самый потом надо хотеть ли слово идти большой должен место перевод словарь "
    "предложение Москва понимание 1998";

constexpr std::string_view kJapanese =
    "私は 東京 に 行きます です ます した 日本語 の 辞書 を 使って 翻訳 する 人々 が 新しい 言葉 "
    "で 話す こと から まで 今日 明日 時間 会社 の 情報 は 非常に 重要 である コンピュータ "
    "システム データ テキスト 文字 コード 変換 と 検索 したがって 問題 について 研究 している "
    "世界 の 国々 では 一九九八年 用語集 ください という もの として 場合";

constexpr std::string_view kChinese =
    "的 一 是 不 了 在 人 有 我 他 这 中国 大 来 上 国家 和 地方 到 时候 年 得 就 那 要 下 出 会 "
    "可以 "
    "也 你们 对 生 能 而 子 说 学生 自己 之 工作 问题 发展 经济 社会 词典 翻译 语言 信息 技术 世界 "
    "北京 时间 今天 汉字 编码 转换 计算机 系统";

constexpr std::string_view kOther =
    "café naïve Ελληνικά λέξη κείμενο € → ™ “quoted” ½ ≤ 😀 🚀 𝒳 𠀋 "
    "👍🏽 "
    "한국어 "
    "שלום "
    "ไทย";

std::string_view ListOf(Language language) {
    constexpr std::array<std::string_view, 6> kLists{kEnglish,  kGerman,  kRussian,
                                                     kJapanese, kChinese, kOther};
    return kLists[static_cast<std::size_t>(language)];
}

bool HasSpaces(Language language) {
    return language != Language::Japanese && language != Language::Chinese;
}

// Marsaglia 2003, xorshift32; the high bits pick.
class Picker {
public:
    std::size_t Below(std::size_t limit) {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return static_cast<std::size_t>(static_cast<std::uint64_t>(state_) * limit >> 32);
    }

private:
    std::uint32_t state_ = 2463534242;
};

// What stands between two words.
std::string Separator(Language language, Picker& pick) {
    const std::size_t chance = pick.Below(40);
    if (HasSpaces(language)) return chance < 3 ? ", " : chance < 5 ? ". " : " ";
    return chance < 3 ? "、" : chance < 5 ? "。" : "";
}

}  // namespace

const char* NameOf(Language language) {
    constexpr std::array<const char*, 6> kNames{"ASCII",    "German",  "Russian",
                                                "Japanese", "Chinese", "mixed"};
    return kNames[static_cast<std::size_t>(language)];
}

std::vector<std::string> Words(Language language) {
    std::vector<std::string> words;
    const auto add = [&words](Language source) {
        std::istringstream list{std::string(ListOf(source))};
        for (std::string word; list >> word;) words.push_back(word);
    };
    if (language == Language::Mixed) {
        using enum Language;
        for (const Language source : {Ascii, German, Russian, Japanese, Chinese}) add(source);
        add(Mixed);
        add(Mixed);
    } else {
        add(language);
    }
    return words;
}

std::string Utf8Text(Language language, std::size_t size) {
    const std::vector<std::string> words = Words(language);
    Picker pick;
    std::string text;
    std::size_t line_start = 0;
    const std::size_t line_size =
        language == Language::Ascii || language == Language::German ? 70 : 150;
    for (;;) {
        std::string next = words[pick.Below(words.size())] + Separator(language, pick);
        if (text.size() + next.size() - line_start > line_size) {
            next += '\n';
            line_start = text.size() + next.size();
        }
        if (text.size() + next.size() > size) return text;
        text += next;
    }
}

std::u16string Utf16Text(Language language, std::size_t utf8_size) {
    const std::string bytes = Utf8Text(language, utf8_size);
    std::u16string text(bytes.size(), u'\0');
    const platform::UtfProgress done =
        platform::Utf8ToUtf16(bytes.data(), bytes.size(), text.data(), text.size());
    text.resize(done.written);
    return text;
}

}  // namespace bench
