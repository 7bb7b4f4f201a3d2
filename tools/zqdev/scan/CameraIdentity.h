// Who a network camera says it is, asked by what is about to command it.
#pragma once

#include "Session.h"
#include "scan/Sighting.h"

namespace ZQAPI::zqdev {

// Anybody who hears a command to all can answer it first, and has his answer taken for the camera's. So this waits for all
// answers that come within a second. Throws Failure unless they name this camera, every one of them. Nothing where the
// hardware address is not known.
void RequireIdentity(Session& session, const Sighting& sighting);

}  // namespace ZQAPI::zqdev
