#include "scan/Sighting.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "Progress.h"
#include "Text.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "scan/ScanNews.h"

namespace ZQAPI::zqdev {

namespace {

// What the scan hears is in its debug output alone.
ScanNews ScanNetwork(Session& session, const std::string& id, std::error_code& error) {
    ScanNews heard;
    heard.whyUnheard = session.ListenDuring(
        [&](std::string_view message) { heard.Add(message); },
        [&] {
            WithProgress(session.GetConsole(), "Looking for " + Printable(id),
                         [&] { session.GetLibrary().Scan(device::Scanner::kZqUdp, error); });
        });
    if (!heard.whyUnheard.empty()) {
        throw Failure(Filled(
            "nobody can hear what the library says of '{id}' ({why}), and so not tell whether somebody else claims to "
            "be it; run it with a standard error and enough open files",
            session.GetKit(), {{"id", id}, {"why", heard.whyUnheard}}));
    }
    return heard;
}

std::string PlaceOf(const SHeardCamera& camera) {
    return (camera.hardwareAddress + " at " + camera.ipAddress).str();
}

// Throws Failure when it could be somebody else.
void RequireOnlyOne(const Kit& kit, const ScanNews& heard, const SHeardCamera& camera,
                    const std::string& id) {
    for (const SHeardCamera& other : heard.cameras) {
        if (other.deviceId == camera.deviceId && other.hardwareAddress != camera.hardwareAddress) {
            throw Failure(
                Filled("two cameras say that they are '{id}': {camera} and {other}; disconnect whichever is "
                       "not the camera and try again",
                       kit, {{"id", id}, {"camera", PlaceOf(camera)}, {"other", PlaceOf(other)}}));
        }
    }
    for (const SAddressConflict& conflict : heard.conflicts) {
        if (conflict.hardwareAddress == camera.hardwareAddress || conflict.ipAddress == camera.ipAddress ||
            conflict.otherIpAddress == camera.ipAddress) {
            throw Failure(
                Filled("'{id}' is in conflict, since the hardware address {hardware-address} answers as "
                       "{address} and as {other}; disconnect whichever is not the camera and try again",
                       kit,
                       {{"id", id},
                        {"hardware-address", conflict.hardwareAddress.str()},
                        {"address", conflict.ipAddress.str()},
                        {"other", conflict.otherIpAddress.str()}}));
        }
    }
    if (!camera.otherCard.IsEmpty()) {
        throw Failure(Filled(
            "'{id}' is heard on two network cards, {card} and {other}: two cameras, or two cards in one "
            "network; disconnect one and try again",
            kit, {{"id", id}, {"card", camera.card.str()}, {"other", camera.otherCard.str()}}));
    }
}

// The card that leads to this camera and to no other. None: whoever has its address is reached as the system routes.
std::string CardOf(const Kit& kit, const ScanNews& heard, const SHeardCamera& camera, const std::string& id) {
    if (!camera.card.IsEmpty()) {
        return camera.card.str();
    }
    const auto shares = [&](const SHeardCamera& other) {
        return other.ipAddress == camera.ipAddress && other.hardwareAddress != camera.hardwareAddress;
    };
    if (std::any_of(heard.cameras.begin(), heard.cameras.end(), shares)) {
        throw Failure(Filled(
            "another camera has the address {address} of '{id}' too; each is reached through its own network card "
            "with \"{zqdev config set BindToNetworkCard true}\"",
            kit, {{"id", id}, {"address", camera.ipAddress.str()}}));
    }
    return OnlyCardInNetworkOf(camera.ipAddress.str());
}

std::optional<Sighting> LookOnNetwork(Session& session, const ZQDEVICEINFO& saved) {
    const std::string id(device::Text(saved.DeviceID));
    device::Library& library = session.GetLibrary();
    std::error_code error;
    const ScanNews heard = ScanNetwork(session, id, error);
    session.Check(error, "can't look for '" + id + "'", Subject::kOneScanner);
    const std::vector<ZQDEVICEINFO> found = library.Devices();
    library.Load(error);  // the scan has replaced the list
    session.Check(error, "can't load the device list", Subject::kLoading);

    const ZQDEVICEINFO* const now = FindById(found, id);
    const auto camera = std::find_if(heard.cameras.begin(), heard.cameras.end(),
                                     [&](const SHeardCamera& one) { return one.deviceId.view() == id; });
    if (now == nullptr || camera == heard.cameras.end()) {
        return std::nullopt;
    }
    RequireOnlyOne(session.GetKit(), heard, *camera, id);
    Sighting sighting{saved, camera->hardwareAddress.str(), CardOf(session.GetKit(), heard, *camera, id)};
    for (const SHeardCamera& other : heard.cameras) {
        if (other.hardwareAddress != camera->hardwareAddress) {
            sighting.others.emplace(other.ipAddress.str(), other.hardwareAddress.str());
        }
    }
    std::copy(std::begin(now->UsedAddress), std::end(now->UsedAddress), sighting.camera.UsedAddress);
    std::copy(std::begin(now->CCMAddress), std::end(now->CCMAddress), sighting.camera.CCMAddress);
    std::copy(std::begin(now->IAMAddress), std::end(now->IAMAddress), sighting.camera.IAMAddress);
    std::copy(std::begin(now->FirmwareVersion), std::end(now->FirmwareVersion),
              sighting.camera.FirmwareVersion);
    return sighting;
}

std::vector<CZQComNetInterface> CardsInNetworkOf(const std::string& address) {
    std::vector<CZQComNetInterface> cards;
    CZQComNetInterface::SearchForInterfaces(cards);
    const auto wanted = ParseIpv4(address);
    std::erase_if(cards, [&](const CZQComNetInterface& card) {
        const auto own = ParseIpv4(card.GetAddressText().view());
        const auto mask = ParseIpv4(card.GetMaskText().view());
        return !card.IsUp() || !wanted || !own || !mask || ((*wanted ^ *own) & *mask) != 0;
    });
    return cards;
}

}  // namespace

std::optional<Sighting> LookFor(Session& session, const ZQDEVICEINFO& saved) {
    if (device::Text(saved.UsedScanner) == ZQDEV_SCANNER_NAME_ZQ_UDP) {
        return LookOnNetwork(session, saved);
    }
    const std::string id(device::Text(saved.DeviceID));
    Sighting sighting{saved, {}, {}};
    std::error_code error;
    WithProgress(session.GetConsole(), "Looking for " + Printable(id),
                 [&] { session.GetLibrary().Rescan(sighting.camera, error); });
    if (error == ZQ_ERR_DEVICE_NOT_FOUND) {
        return std::nullopt;
    }
    session.Check(error, "can't look for '" + id + "'", Subject::kRescan);
    return sighting;
}

std::string OnlyCardInNetworkOf(const std::string& address) {
    std::vector<CZQComNetInterface> cards = CardsInNetworkOf(address);
    std::erase_if(cards, [](const CZQComNetInterface& card) { return !card.IsSuitableForBroadcast(); });
    return cards.size() == 1 ? cards.front().GetCidrText().str() : std::string();
}

bool IsInNetworkOfACard(const std::string& address) {
    return !CardsInNetworkOf(address).empty();
}

bool IsAddressOfACard(const std::string& address) {
    const std::vector<CZQComNetInterface> cards = CardsInNetworkOf(address);
    return std::any_of(cards.begin(), cards.end(), [&](const CZQComNetInterface& card) {
        return card.GetAddressText().view() == address;
    });
}

}  // namespace ZQAPI::zqdev
