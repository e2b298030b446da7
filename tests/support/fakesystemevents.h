#pragma once

#include "platform/systemevents.h"

// The system's network and sleep events, as a test says they happen.
class FakeSystemEvents : public lanternic::SystemEvents {
public:
    bool isOffline() const override { return m_offline; }

    void setOffline(bool offline)
    {
        m_offline = offline;
        Q_EMIT offlineChanged(offline);
    }

private:
    bool m_offline = false;
};
