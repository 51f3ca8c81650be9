// Thousands of store files, each damaged in another way, and what a start serves of them.

#include "DefaultsSaver.h"
#include "Proof.h"
#include "Rounds.h"
#include "StoreTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const int files = rounds(5'000) * (isLongProof() ? 10 : 1);
constexpr qsizetype page = 8192;
constexpr qint64 longestStartMilliseconds = 5'000;

/// Changes bytes as disks, cables and other programs do.
class Damage {
public:
    explicit Damage(unsigned seed) : m_random(seed) {}

    qsizetype below(qsizetype limit) {
        return static_cast<qsizetype>(m_random() %
                                      static_cast<unsigned>(std::max<qsizetype>(limit, 1)));
    }

    void change(QByteArray &bytes) {
        if (bytes.isEmpty())
            return grow(bytes);
        using Change = void (Damage::*)(QByteArray &);
        constexpr std::array<Change, 8> changes{
            &Damage::turnABit, &Damage::turnABit,  &Damage::overwrite, &Damage::zero,
            &Damage::swap,     &Damage::duplicate, &Damage::cut,       &Damage::grow};
        (this->*changes.at(static_cast<std::size_t>(below(changes.size()))))(bytes);
    }

private:
    /// In every second case near the beginning of a page, where a file's structure is.
    qsizetype place(const QByteArray &bytes) {
        if (below(2) == 0)
            return below(bytes.size());
        return std::min(below(bytes.size() / page) * page + below(128), bytes.size() - 1);
    }
    /// A sector, a page of the memory, or one of the file.
    qsizetype unit() {
        return std::array<qsizetype, 3>{512, 4096, page}.at(static_cast<std::size_t>(below(3)));
    }

    void turnABit(QByteArray &bytes) {
        const qsizetype at = place(bytes);
        bytes[at] = static_cast<char>(bytes.at(at) ^ (1 << below(8)));
    }
    void overwrite(QByteArray &bytes) {
        const qsizetype from = place(bytes);
        const qsizetype to = std::min(from + 1 + below(64), bytes.size());
        for (qsizetype at = from; at < to; ++at)
            bytes[at] = static_cast<char>(below(256));
    }
    void zero(QByteArray &bytes) {
        const qsizetype size = unit();
        const qsizetype from = below(bytes.size() / size) * size;
        const qsizetype length = std::min(size, bytes.size() - from);
        bytes.replace(from, length, QByteArray(length, below(2) == 0 ? '\0' : '\xff'));
    }
    void swap(QByteArray &bytes) {
        const qsizetype size = unit();
        const qsizetype one = below(bytes.size() / size) * size;
        const qsizetype other = below(bytes.size() / size) * size;
        if (std::max(one, other) + size > bytes.size())
            return turnABit(bytes);
        const QByteArray kept = bytes.mid(one, size);
        bytes.replace(one, size, bytes.mid(other, size));
        bytes.replace(other, size, kept);
    }
    void duplicate(QByteArray &bytes) {
        const qsizetype size = unit();
        const qsizetype from = below(bytes.size() / size) * size;
        const qsizetype to = below(bytes.size() / size) * size;
        if (std::max(from, to) + size > bytes.size())
            return turnABit(bytes);
        bytes.replace(to, size, bytes.mid(from, size));
    }
    void cut(QByteArray &bytes) {
        const qsizetype length = below(bytes.size());
        bytes.truncate(below(2) == 0 ? length : length / page * page);
    }
    void grow(QByteArray &bytes) {
        const qsizetype length = 1 + below(3 * page);
        const bool isNoise = below(2) == 0;
        for (qsizetype added = 0; added < length; ++added)
            bytes += isNoise ? static_cast<char>(below(256)) : '\0';
    }

    std::minstd_rand m_random;
};

/// A store of three days, in the files of a run that ended and in those of one that was killed.
class DamagedFiles : public StoreTest {
protected:
    using Files = QMap<QString, QByteArray>; ///< By their paths below the folder.

    DamagedFiles() {
        for (int today = 1; today <= 3; ++today) {
            open();
            storeAll(today * 10);
            reopen(); // What follows is in the log alone, and no page of the history.
            for (int change = 1; change < 4; ++change)
                storeSmall(today * 10 + change);
            if (today == 3)
                m_bases.push_back(filesNow());
            close();
            time.advance(day);
        }
        m_bases.push_back(filesNow());
    }

    void storeAll(int number) {
        set(historyKey, QByteArray::number(number).repeated(10'000 + 100 * number));
        storeSmall(number);
    }
    void storeSmall(int number) {
        set(preferencesKey, QByteArray("{\"lastGoal\":\"" + QByteArray::number(number) + "\"}"));
        set(goalsKey, QByteArray('[' + QByteArray::number(number) + ']'));
        set(timerKey, Date::fromReferenceSeconds(7.9e8 + number / 3.0));
        set(u"TimerOriginalDuration"_s, 60.0 * number);
        set(u"TimerSessionGoal"_s, u"Überblick %1 🙂"_s.arg(number));
        set(u"TimerIsActive"_s, number % 2 == 0);
        set(u"SessionActive"_s, qint64{number});
        set(passingKey, 0.1 * number);
        store().synchronize();
        runPosted();
        ASSERT_TRUE(comesToHold(u"SessionActive"_s, std::to_string(number)));
    }
    void set(const QString &name, const DefaultsValue &value) {
        store().setObject(name, value);
        m_stored[name].push_back(value);
    }

    Files filesNow() const {
        Files found;
        for (const QString &name : {u"defaults.sqlite"_s, u"defaults.sqlite-wal"_s})
            if (QFile::exists(folder() + u'/' + name))
                found[name] = bytesOf(folder() + u'/' + name);
        for (const QString &name : filesIn(copiesFolder()))
            found[u"copies/"_s + name] = bytesOf(copiesFolder() + u'/' + name);
        return found;
    }

    static void lay(const Files &laid, const QString &folder) {
        QDir(folder).removeRecursively();
        QDir().mkpath(folder + u"/copies"_s);
        for (auto one = laid.cbegin(); one != laid.cend(); ++one) {
            QFile file(folder + u'/' + one.key());
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            ASSERT_EQ(file.write(one.value()), one.value().size());
        }
    }

    bool wasStored(const QString &name, const DefaultsValue &value) const {
        const auto found = m_stored.constFind(name);
        return found != m_stored.cend() &&
               std::ranges::any_of(
                   *found, [&](const DefaultsValue &one) { return isSameValue(one, value); });
    }

    /// How many of the values are none that was stored under their keys.
    int wrongOnes(const DefaultsValues &values, const std::string &place) const {
        int wrong = 0;
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            if (wasStored(value.key(), value.value()))
                continue;
            ++wrong;
            ADD_FAILURE() << place << " serves a wrong " << qPrintable(value.key());
        }
        return wrong;
    }

    QMap<QString, std::vector<DefaultsValue>> m_stored;
    std::vector<Files> m_bases;
};

/// In memory where there is such a folder: what is damaged is damaged there too.
QString damagedTemplate() {
    const QString name = u"damaged-XXXXXX"_s;
    return QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm/"_s + name
                                                 : QDir::temp().filePath(name);
}

TEST_F(DamagedFiles, ServeWhatWasStoredOnceOrNothingAndGoOn) {
    const QTemporaryDir parent(damagedTemplate());
    const DefaultsFolder damaged(parent.filePath(u"store"_s));
    const QStringList restored{preferencesKey, historyKey, goalsKey};
    const DefaultsValue newHistory = QByteArray(60'000, 'z');
    m_stored[historyKey].push_back(newHistory);
    Damage damage(proofSeed());
    int whole = 0;
    int setAside = 0;
    int wrong = 0;
    qint64 longest = 0;
    for (int number = 0; number < files; ++number) {
        const std::string place = "file " + std::to_string(number);
        Files laid = m_bases.at(static_cast<std::size_t>(damage.below(2)));
        const QStringList names = laid.keys();
        damage.change(laid[u"defaults.sqlite"_s]);
        // In every third case something else is damaged too: the log, or a copy.
        if (damage.below(3) == 0)
            damage.change(laid[names.at(damage.below(names.size()))]);
        lay(laid, parent.filePath(u"store"_s));

        const StoreDiagnostics diagnostics;
        QElapsedTimer timer;
        timer.start();
        OpenedDefaults opened = openDefaults(damaged, restored, time.now());
        longest = std::max(longest, timer.elapsed());
        wrong += wrongOnes(opened.values, place);
        const bool isSetAside =
            !QDir(parent.filePath(u"store"_s)).entryList({u"defaults.damaged-*"_s}).isEmpty();
        ++(isSetAside ? setAside : whole);
        {
            // What could not be noticed in reading must not come out by writing.
            DefaultsSaver saver(damaged, std::move(opened), time.now());
            saver.keep({{{historyKey, newHistory}}, time.now()});
            saver.save();
        }
        timer.restart();
        wrong += wrongOnes(openDefaults(damaged, restored, time.now()).values, place + " later");
        longest = std::max(longest, timer.elapsed());
    }
    EXPECT_LT(longest, longestStartMilliseconds);
    EXPECT_GT(setAside, files / 10); // The damage is such.
    printProof("store-damage",
               QByteArray::number(files) + " changed store files, " + QByteArray::number(setAside) +
                   " set aside, " + QByteArray::number(whole) + " read as they were, " +
                   QByteArray::number(wrong) + " wrong values served, longest start " +
                   QByteArray::number(longest) + " ms");
}

} // namespace
} // namespace tarne::test
