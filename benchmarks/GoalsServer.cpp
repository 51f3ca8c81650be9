// The goals API alone, for goals_api.py:  goals_server PORT
//
// Answers with what follows a session that runs, until its input ends.

#include "LocalHTTPServer.h"
#include "StandardOutputLog.h"
#include "SystemClock.h"

#include <cstdlib>
#include <iostream>

using namespace Qt::StringLiterals;

int main(int, char **argv) {
    const tarne::SystemClock clock;
    tarne::StandardOutputLog log;
    tarne::LocalHTTPServer server(clock, log, static_cast<quint16>(std::atoi(argv[1])));
    server.getCurrentSessionData = [] {
        return QVariantMap{{u"active"_s, true},
                           {u"goals"_s, u"Write report, Review"_s},
                           {u"sessionId"_s, u"D7E2C3A4-6F0B-4B7E-9A51-0C3A9B7F2E11"_s},
                           {u"timeRemaining"_s, 1234.5},
                           {u"duration"_s, 1500.0},
                           {u"progress"_s, 0.823},
                           {u"startTime"_s, 1772452800.0}};
    };
    server.start();
    std::cin.get();
}
