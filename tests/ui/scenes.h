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
// Maintenance in progress and to come, and a source degraded by maintenance alone.
void maintenance(StoreFixture &fixture);
// Long names, details and incident titles on a down, three degraded and an unknown source,
// with notifications paused: what has to fit in any language.
void longTexts(StoreFixture &fixture);
// A week of passes every 90 minutes: an outage, a degraded afternoon and a night asleep.
void week(StoreFixture &fixture);

} // namespace Scenes
