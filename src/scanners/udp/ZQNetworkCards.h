// The network cards that a scan uses, where the settings name some.
#pragma once

#include <vector>

#include "communication/ZQComNetInterface.h"
#include "foundation/ZQStringArray.h"

namespace ZQAPI {

// Whether the card has this name, as `zqdev interfaces` shows it, or this address.
bool IsNetworkCardNamed(const CZQComNetInterface& card, const CZQString& nameOrAddress);

// The cards of these names, or all when there are none, in the system's order. Errors of
// CZQComNetInterface::SearchForInterfaces.
std::vector<CZQComNetInterface> FindNetworkCards(const CZQStringArray& names);

// Whether a broadcast can be sent through it, or without `byBroadcast` whether it is up.
bool IsUsableNetworkCard(const CZQComNetInterface& card, bool byBroadcast);

// Why no usable card has this name; empty when one has. Errors as above.
CZQString NetworkCardComplaint(const CZQString& nameOrAddress, bool byBroadcast);

}  // namespace ZQAPI
