#include "scanners/udp/ZQNetworkCards.h"

#include <algorithm>

namespace ZQAPI {

namespace {

std::vector<CZQComNetInterface> AllCards() {
    std::vector<CZQComNetInterface> cards;
    CZQComNetInterface::SearchForInterfaces(cards);
    return cards;
}

// "eth0 (192.168.1.5), 10.0.0.1"
CZQString ListText(const std::vector<CZQComNetInterface>& cards) {
    CZQString text;
    for (const CZQComNetInterface& card : cards) {
        const CZQString address = card.GetAddressText();
        text += text.IsEmpty() ? "" : ", ";
        text += card.GetName().empty() ? address : card.GetName() + " (" + address + ")";
    }
    return text.IsEmpty() ? "none" : text;
}

}  // namespace

bool IsNetworkCardNamed(const CZQComNetInterface& card, const CZQString& nameOrAddress) {
    return nameOrAddress == card.GetAddressText() || nameOrAddress == card.GetName().c_str();
}

std::vector<CZQComNetInterface> FindNetworkCards(const CZQStringArray& names) {
    std::vector<CZQComNetInterface> cards = AllCards();
    std::erase_if(cards, [&](const CZQComNetInterface& card) {
        return names.GetSize() > 0 && std::none_of(names.begin(), names.end(), [&](const CZQString& name) {
                   return IsNetworkCardNamed(card, name);
               });
    });
    return cards;
}

bool IsUsableNetworkCard(const CZQComNetInterface& card, bool byBroadcast) {
    return byBroadcast ? card.IsSuitableForBroadcast() : card.IsUp();
}

CZQString NetworkCardComplaint(const CZQString& nameOrAddress, bool byBroadcast) {
    const std::vector<CZQComNetInterface> cards = AllCards();
    const auto isNamed = [&](const CZQComNetInterface& card) {
        return IsNetworkCardNamed(card, nameOrAddress);
    };
    if (std::none_of(cards.begin(), cards.end(), isNamed)) {
        return "there is no network card '" + nameOrAddress + "'; there are: " + ListText(cards);
    }
    const bool isUsable = std::any_of(cards.begin(), cards.end(), [&](const CZQComNetInterface& card) {
        return isNamed(card) && IsUsableNetworkCard(card, byBroadcast);
    });
    return isUsable ? CZQString()
                    : "the network card '" + nameOrAddress + "' is " +
                          (byBroadcast ? "down, or none for broadcasts" : "down");
}

}  // namespace ZQAPI
