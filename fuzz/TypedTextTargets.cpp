// What the user types.

#include "DecimalInteger.h"
#include "FocusSession.h"
#include "FuzzTargets.h"

#include <QRegularExpression>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::fuzz {

/// Every goal is a trimmed piece in the order of the line. A comma divides unless one of its
/// neighbours is a combining mark or another character that can join it, all above U+02FF.
void goalLine(Input input) {
    const QString line = QString::fromUtf8(input);
    qsizetype from = 0;
    for (const SessionGoal &goal : FocusSession::parseGoals(line)) {
        require(!goal.text.isEmpty(), "a goal has a text");
        static const QRegularExpression lonelyComma(
            u"(?:^|[\\x{0}-\\x{2FF}]),(?:$|[\\x{0}-\\x{2FF}])"_s);
        require(!goal.text.contains(lonelyComma), "a comma divides");
        require(goal.text.trimmed() == goal.text, "a goal is trimmed");
        from = line.indexOf(goal.text, from);
        require(from >= 0, "goals stand in the order of the line");
        from += goal.text.size();
    }
}

/// An integer is a text of digits with at most one sign, whatever the width that is asked for.
void integers(Input input) {
    const QString text = QString::fromUtf8(input);
    const auto wide = decimalInteger(text);
    if (wide) {
        const bool isSigned = text.startsWith(u'-') || text.startsWith(u'+');
        for (const QChar digit : QStringView(text).sliced(isSigned ? 1 : 0))
            require(digit >= u'0' && digit <= u'9', "an integer has no other characters");
        require(*wide == 0 || (*wide < 0) == text.startsWith(u'-'), "the sign is kept");
    }
    const auto narrow = decimalInteger<qint32>(text);
    const bool fits = wide && *wide >= std::numeric_limits<qint32>::min() &&
                      *wide <= std::numeric_limits<qint32>::max();
    require(narrow.has_value() == fits, "an integer is read where it fits, and only there");
    require(!narrow || *narrow == *wide, "the width changes no value");
}

} // namespace tarne::fuzz
