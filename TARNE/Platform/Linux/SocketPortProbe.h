#pragma once

#include "PortProbe.h"

namespace tarne {

class SocketPortProbe final : public PortProbe {
public:
    bool canBind(int port) override;
};

} // namespace tarne
