#pragma once

#include "Workspace.h"

#include <vector>

namespace tarne::test {

/// Opens no page, but remembers which it was asked for.
class RecordingWorkspace final : public Workspace {
public:
    void open(const QUrl &url) override { opened.push_back(url); }

    std::vector<QUrl> opened;
};

} // namespace tarne::test
