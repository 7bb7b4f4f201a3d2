// The network cards that a scan uses, where the settings name some.
#pragma once

#include <vector>

#include "communication/ZQComNetInterface.h"
#include "foundation/ZQStringArray.h"

namespace ZQAPI {

// Whether the card has this name, as `zqdev interfaces` shows it, or this address.
bool IsNetworkCardNamed(const CZQComNetInterface& card, const CZQString& nameOrAddress);

// The cards of these names, or all when there are none, as far as a broadcast can be sent through them (`byBroadcast`) or
// they are up; in the system's order. Errors of CZQComNetInterface::SearchForInterfaces.
std::vector<CZQComNetInterface> ChooseNetworkCards(const CZQStringArray& names, bool byBroadcast);

// Why no card is chosen by this name; empty when one is. Errors as above.
CZQString NetworkCardComplaint(const CZQString& nameOrAddress, bool byBroadcast);

}  // namespace ZQAPI
