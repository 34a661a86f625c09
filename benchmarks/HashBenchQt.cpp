// The peer of HashBench.cpp: QHash.
#include <QHash>
#include <QString>
#include <map>

#include "benchmarks/HashBench.h"

namespace bench {
namespace {

const Keys<QString>& QtTextsOf(std::int64_t count) {
    static std::map<std::int64_t, Keys<QString>> all;
    Keys<QString>& texts = all[count];
    if (texts.present.empty()) {
        const auto copy = [](const std::vector<std::u16string>& from, std::vector<QString>& to) {
            for (const auto& text : from) to.push_back(QString::fromStdU16String(text));
        };
        copy(TextsOf(count).present, texts.present);
        copy(TextsOf(count).wanted, texts.wanted);
        copy(TextsOf(count).absent, texts.absent);
    }
    return texts;
}

template <typename Key>
class Qt {
public:
    void Insert(const Key& key, const Data& data) { table_.insert(key, data); }
    bool Find(const Key& key) const {
        const auto found = table_.constFind(key);
        if (found == table_.constEnd()) return false;
        Data data = found.value();
        benchmark::DoNotOptimize(data);
        return true;
    }
    bool Erase(const Key& key) {
        const auto found = table_.find(key);
        if (found == table_.end()) return false;
        Data data = found.value();
        benchmark::DoNotOptimize(data);
        table_.erase(found);
        return true;
    }

private:
    QHash<Key, Data> table_;
};

const TableBenchmarks<Qt<QString>> qt_texts("Texts", "QHash", QtTextsOf);
const TableBenchmarks<Qt<quint32>> qt_numbers("Numbers", "QHash", NumbersOf);

}  // namespace
}  // namespace bench
