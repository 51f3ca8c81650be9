#include "SymbolTable.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

// Every file named here is embedded by symbols.cmake, which reads this table.
constexpr std::array outlines{
    SymbolOutline{"arrow.clockwise"_L1, "arrow-clockwise"_L1},
    SymbolOutline{"arrow.right"_L1, "arrow-right"_L1},
    SymbolOutline{"bell.fill"_L1, "bell-fill"_L1},
    SymbolOutline{"book.closed"_L1, "journal"_L1},
    SymbolOutline{"brain.head.profile"_L1, "cpu"_L1},
    SymbolOutline{"calendar"_L1, "calendar3"_L1},
    SymbolOutline{"calendar.badge.clock"_L1, "calendar-week"_L1},
    SymbolOutline{"calendar.badge.plus"_L1, "calendar-plus"_L1},
    SymbolOutline{"chart.bar"_L1, "bar-chart"_L1},
    SymbolOutline{"chart.bar.fill"_L1, "bar-chart-fill"_L1},
    SymbolOutline{"checkmark"_L1, "check-lg"_L1},
    SymbolOutline{"checkmark.circle.fill"_L1, "check-circle-fill"_L1, "circle-fill"_L1,
                  "check-lg"_L1},
    SymbolOutline{"chevron.down"_L1, "chevron-down"_L1},
    SymbolOutline{"chevron.left"_L1, "chevron-left"_L1},
    SymbolOutline{"chevron.right"_L1, "chevron-right"_L1},
    SymbolOutline{"chevron.up"_L1, "chevron-up"_L1},
    SymbolOutline{"circle"_L1, "circle"_L1},
    SymbolOutline{"clock"_L1, "clock"_L1},
    SymbolOutline{"clock.arrow.circlepath"_L1, "clock-history"_L1},
    SymbolOutline{"command"_L1, "command"_L1},
    SymbolOutline{"exclamationmark.triangle.fill"_L1, "exclamation-triangle-fill"_L1},
    SymbolOutline{"eye"_L1, "eye"_L1},
    SymbolOutline{"eye.slash"_L1, "eye-slash"_L1},
    SymbolOutline{"flame.fill"_L1, "fire"_L1},
    SymbolOutline{"gear"_L1, "gear"_L1},
    SymbolOutline{"heart.fill"_L1, "heart-fill"_L1},
    SymbolOutline{"lightbulb.fill"_L1, "lightbulb-fill"_L1},
    // At 17 points a unit of the grid is a point, and the three lines lie on whole pixels.
    SymbolOutline{"line.3.horizontal"_L1, "list"_L1, {}, {}, 16.0 / 17},
    SymbolOutline{"link"_L1, "link-45deg"_L1},
    SymbolOutline{"magnifyingglass"_L1, "search"_L1},
    SymbolOutline{"minus"_L1, "dash-lg"_L1},
    SymbolOutline{"minus.circle.fill"_L1, "dash-circle-fill"_L1, "circle-fill"_L1, "dash-lg"_L1},
    SymbolOutline{"note.text"_L1, "card-text"_L1},
    SymbolOutline{"pause.fill"_L1, "pause-fill"_L1, {}, {}, 1.4},
    SymbolOutline{"pencil"_L1, "pencil"_L1},
    SymbolOutline{"play.fill"_L1, "play-fill"_L1, {}, {}, 1.4},
    SymbolOutline{"plus"_L1, "plus-lg"_L1},
    SymbolOutline{"return"_L1, "arrow-return-left"_L1},
    SymbolOutline{"safari"_L1, "compass"_L1},
    SymbolOutline{"square.and.arrow.up"_L1, "box-arrow-up"_L1},
    SymbolOutline{"stop.fill"_L1, "stop-fill"_L1, {}, {}, 1.4},
    SymbolOutline{"target"_L1, "bullseye"_L1},
    SymbolOutline{"timer"_L1, "stopwatch"_L1},
    SymbolOutline{"trash"_L1, "trash"_L1},
    SymbolOutline{"trophy.fill"_L1, "trophy-fill"_L1},
    SymbolOutline{"xmark"_L1, "x-lg"_L1},
    SymbolOutline{"xmark.circle.fill"_L1, "x-circle-fill"_L1, "circle-fill"_L1, "x-lg"_L1},
};

} // namespace

std::span<const SymbolOutline> symbolTable() {
    return outlines;
}

const SymbolOutline *symbolOutline(QStringView symbol) {
    const auto found = std::ranges::find_if(
        outlines, [symbol](const SymbolOutline &entry) { return entry.symbol == symbol; });
    return found == outlines.end() ? nullptr : &*found;
}

} // namespace tarne
