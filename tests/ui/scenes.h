#pragma once

#include "support/storefixture.h"

// The situations the panel is looked at in, shared by the widget tests and the renderer.
namespace Scenes {

void allOperational(StoreFixture &fixture);
// Down, degraded, unknown and operational rows, a silenced source and a silenced component.
void mixed(StoreFixture &fixture);
void manyRows(StoreFixture &fixture, int count);
// Open incidents: on a degraded source, and on one that stays operational.
void incidents(StoreFixture &fixture);
// Maintenance in progress and to come.
void maintenance(StoreFixture &fixture);

} // namespace Scenes
