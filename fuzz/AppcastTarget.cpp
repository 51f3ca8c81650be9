// What is read has a version and at most a web page, and the order of versions is one: it holds
// both ways round and for a version with itself.

#include "Appcast.h"
#include "FuzzTargets.h"
#include "VersionOrder.h"

using namespace Qt::StringLiterals;

void tarne::fuzz::appcast(Input input) {
    const auto releases = parseAppcast(input.toByteArray());
    if (!releases)
        return;
    const auto newest = newestRelease(*releases);
    require(newest.has_value() == !releases->empty(), "there is a newest of any releases");
    for (const AppcastRelease &release : *releases) {
        require(!release.version.isEmpty(), "a release has a version");
        require(!release.displayVersion.isEmpty(), "a release has a version to show");
        require(release.page.isEmpty() || release.page.scheme() == "https"_L1 ||
                    release.page.scheme() == "http"_L1,
                "a page is a web page");
        require(compareVersions(release.version, release.version) == 0,
                "a version is as new as itself");
        require(compareVersions(release.version, newest->version) <= 0, "none is newer");
        require(compareVersions(newest->version, release.version) >= 0, "none is newer, reversed");
    }
}
