// The schedule over many goals.
//
//   scheduleLoad/N          making the controller, which loads the goals
//   scheduleDay/N           one day's list
//   scheduleCounters/N      both counters
//   scheduleTick/N          ticking a goal off, up to the store in memory
//   scheduleScreenTick/N    the same with all that the screen works out anew
//   scheduleScreenKey/N     a character typed into the sheet, with all that the screen makes of it
//   scheduleFirstFrame/N    opening the screen up to its first frame, in software

#include "ScheduleFixture.h"
#include "ScheduleView.h"
#include "StoredKeys.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QProperty>
#include <QQmlEngine>
#include <QQuickView>
#include <QtQml/qqmlextensionplugin.h>

#include <benchmark/benchmark.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace tarne;
using namespace tarne::test;
using namespace Qt::StringLiterals;

namespace {

/// Goals spread over three years around the moment at hand.
void plant(SchedulePlatformFakes &fakes, benchmark::IterationCount count) {
    std::vector<ScheduledGoal> goals;
    for (benchmark::IterationCount i = 0; i < count; ++i) {
        const Date moment = fakes.time.now() +
                            static_cast<double>((i + 548) % 1096 - 548) * 86400.0 +
                            static_cast<double>(i % 1440) * 60.0;
        goals.emplace_back(moment, moment, u"Write the report's next chapter"_s);
    }
    fakes.defaults.setObject(keys::scheduledGoals, *encodeScheduledGoals(goals));
}

void load(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    for (auto step : state)
        benchmark::DoNotOptimize(ScheduleViewModel(fakes.platform()).scheduledGoals().size());
}

void listOfADay(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    const ScheduleViewModel schedule(fakes.platform());
    for (auto step : state)
        benchmark::DoNotOptimize(schedule.goalsForSelectedDate());
}

void bothCounters(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    const ScheduleViewModel schedule(fakes.platform());
    for (auto step : state) {
        benchmark::DoNotOptimize(schedule.todaysGoals().size());
        benchmark::DoNotOptimize(schedule.upcomingGoals().size());
    }
}

void tick(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    ScheduleViewModel schedule(fakes.platform());
    const ScheduledGoal goal = schedule.scheduledGoals().back();
    for (auto step : state)
        schedule.toggleGoalCompletion(goal);
}

/// A tick on the screen: the list, both counters and the rows follow.
void tickOnTheScreen(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    QProperty<bool> isPresented(true);
    ScheduleView view(fakes.platform(), QBindable<bool>(&isPresented));
    for (auto step : state)
        view.toggleGoalCompletion(0);
}

/// A character more or less in the sheet's text.
void typeOnTheScreen(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    QProperty<bool> isPresented(true);
    ScheduleView view(fakes.platform(), QBindable<bool>(&isPresented));
    bool isLonger = false;
    for (auto step : state)
        view.addGoalSheet()->setGoalText((isLonger = !isLonger) ? u"Write"_s : u"Writ"_s);
}

/// From making the controller, which loads the goals, to the first frame, in an engine of its own.
void firstFrame(benchmark::State &state) {
    SchedulePlatformFakes fakes;
    plant(fakes, state.range());
    QProperty<bool> isPresented(true);
    for (auto step : state) {
        ScheduleView view(fakes.platform(), QBindable<bool>(&isPresented));
        auto window = std::make_unique<QQuickView>();
        QEventLoop untilDrawn;
        QObject::connect(window.get(), &QQuickWindow::frameSwapped, &untilDrawn, &QEventLoop::quit);
        window->engine()->addImportPath(u"qrc:/qt/qml"_s);
        window->setInitialProperties({{u"view"_s, QVariant::fromValue(&view)}});
        window->setSource(QUrl(u"qrc:/qt/qml/TARNE/Views/ScheduleScreen.qml"_s));
        window->resize(900, 700);
        window->show();
        untilDrawn.exec();
        state.PauseTiming(); // Its end is no part of its beginning.
        window.reset();
        state.ResumeTiming();
    }
}

#define SCHEDULE_BENCHMARK(function, name)                                                         \
    BENCHMARK(function)                                                                            \
        ->Name(name)                                                                               \
        ->RangeMultiplier(10)                                                                      \
        ->Range(100, 100'000)                                                                      \
        ->Unit(benchmark::kMillisecond)

SCHEDULE_BENCHMARK(load, "scheduleLoad");
SCHEDULE_BENCHMARK(listOfADay, "scheduleDay");
SCHEDULE_BENCHMARK(bothCounters, "scheduleCounters");
SCHEDULE_BENCHMARK(tick, "scheduleTick");
SCHEDULE_BENCHMARK(tickOnTheScreen, "scheduleScreenTick");
SCHEDULE_BENCHMARK(typeOnTheScreen, "scheduleScreenKey");
SCHEDULE_BENCHMARK(firstFrame, "scheduleFirstFrame")->UseRealTime();

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
