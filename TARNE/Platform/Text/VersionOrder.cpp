#include "VersionOrder.h"

#include <algorithm>

namespace tarne {
namespace {

enum class Kind { Number, Letters, End };

struct Run {
    Kind kind = Kind::End;
    QStringView text; ///< Numbers without leading zeros.
};

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

QStringView withoutBuild(QStringView version) {
    version = version.trimmed();
    const auto end =
        std::ranges::find_if(version, [](QChar c) { return c == u'+' || c.isSpace(); });
    return version.first(end - version.begin());
}

/// Takes the next run off the front of `rest`.
Run takeRun(QStringView &rest) {
    const auto begin =
        std::ranges::find_if(rest, [](QChar c) { return isDigit(c) || c.isLetter(); });
    if (begin == rest.end())
        return {};
    const bool number = isDigit(*begin);
    const auto end = std::find_if(begin, rest.end(),
                                  [&](QChar c) { return number ? !isDigit(c) : !c.isLetter(); });
    QStringView text(begin, end);
    rest = QStringView(end, rest.end());
    while (number && text.startsWith(u'0'))
        text = text.sliced(1);
    return {number ? Kind::Number : Kind::Letters, text};
}

std::weak_ordering order(int comparison) {
    return comparison <=> 0;
}

std::weak_ordering compareNumbers(QStringView a, QStringView b) {
    if (a.size() != b.size())
        return a.size() <=> b.size();
    return order(a.compare(b));
}

std::weak_ordering compareRuns(const Run &a, const Run &b) {
    const bool aIsLetters = a.kind == Kind::Letters;
    const bool bIsLetters = b.kind == Kind::Letters;
    if (aIsLetters != bIsLetters)
        return bIsLetters <=> aIsLetters;
    return aIsLetters ? order(a.text.compare(b.text)) : compareNumbers(a.text, b.text);
}

} // namespace

std::weak_ordering compareVersions(QStringView a, QStringView b) {
    a = withoutBuild(a);
    b = withoutBuild(b);
    while (true) {
        const Run runA = takeRun(a);
        const Run runB = takeRun(b);
        if (runA.kind == Kind::End && runB.kind == Kind::End)
            return std::weak_ordering::equivalent;
        if (const auto result = compareRuns(runA, runB); result != 0)
            return result;
    }
}

} // namespace tarne
