#include "scan/HeardCameras.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "Advice.h"
#include "Records.h"
#include "Text.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQDebugLine.h"
#include "foundation/ZQException.h"
#include "kit/ScanSettings.h"
#include "scan/Sighting.h"

namespace ZQAPI::zqdev {

namespace {

// Of a card, "192.168.1.5/24".
struct Subnet {
    std::uint32_t card;
    std::uint32_t mask;

    bool Has(std::uint32_t address) const noexcept { return ((address ^ card) & mask) == 0; }
};

std::optional<Subnet> SubnetOf(const CZQString& card) {
    std::string_view bits = card.view();
    const auto address = ParseIpv4(TakeUntil("/", bits));
    const auto mask = ParseIpv4PrefixLength(bits);
    return address && mask ? std::optional(Subnet{*address, *mask}) : std::nullopt;
}

std::uint32_t AddressOf(const SHeardCamera& camera) {
    return ParseIpv4(camera.ipAddress.view()).value_or(0);
}

// In no subnet of the cards that hear it; nobody knows of one that the system chose.
bool IsElsewhere(const SHeardCamera& camera) {
    const auto subnet = SubnetOf(camera.card);
    const auto other = SubnetOf(camera.otherCard);
    return subnet && !subnet->Has(AddressOf(camera)) && !(other && other->Has(AddressOf(camera)));
}

// "a, b and 7 others"
std::string Few(std::vector<std::string> words) {
    constexpr std::size_t kMost = 4;
    if (words.size() > kMost) {
        const std::string others = std::to_string(words.size() - kMost + 1) + " others";
        words.resize(kMost - 1);
        words.push_back(others);
    }
    return Enumerate(words);
}

Json OrNull(const std::string& text) {
    return text.empty() ? Json() : ToJson(text);
}

class Cameras {
public:
    Cameras(const Kit& kit, const ScanNews& news, const std::vector<ZQDEVICEINFO>& listed)
        : m_kit(kit), m_conflicts(news.conflicts), m_listed(listed), m_binds(BindsToNetworkCards(kit)) {
        for (const SHeardCamera& heard : news.cameras) {
            m_cameras.push_back({heard});
        }
    }

    HeardCameras Explain() {
        FindTakenAddresses();
        const auto byAddress = GroupsBy(&SHeardCamera::ipAddress);
        const auto byId = GroupsBy(&SHeardCamera::deviceId);
        FlagWhatIsNotOne(byId);
        FlagTwoCards();
        FlagTwins(byAddress);
        FlagElsewhere();
        AddSecondClaims();
        for (Camera& camera : m_cameras) {
            ExplainWhyLeftOut(camera);
        }
        m_told.json = AllJson();
        return std::move(m_told);
    }

private:
    struct Camera {
        SHeardCamera heard;
        std::string leftOut = {};  // in a word or two; empty: it is a device
        std::vector<std::string> flags = {};
        bool isOne = true;  // and so set-ip can tell it from others
        std::string setIp = {};

        void Flag(const char* flag) {
            if (std::find(flags.begin(), flags.end(), flag) == flags.end()) {
                flags.emplace_back(flag);
            }
        }
    };
    using Group = std::vector<Camera*>;

    void FindTakenAddresses() {
        std::vector<CZQComNetInterface> cards;
        try {
            CZQComNetInterface::SearchForInterfaces(cards);
        } catch (const CZQException&) {
            cards.clear();  // set-ip asks whether somebody answers at the address
        }
        std::vector<std::string> addresses;
        addresses.reserve(cards.size());
        for (const CZQComNetInterface& card : cards) {
            addresses.push_back(card.GetAddressText().str());
        }
        for (const ZQDEVICEINFO& device : m_listed) {
            addresses.emplace_back(device::Text(device.UsedAddress));
        }
        for (const Camera& camera : m_cameras) {
            addresses.push_back(camera.heard.ipAddress.str());
        }
        for (const SAddressConflict& conflict : m_conflicts) {
            addresses.push_back(conflict.otherIpAddress.str());
        }
        for (const std::string& address : addresses) {
            m_taken.insert(ParseIpv4(address).value_or(0));
        }
    }

    // Those that have the same text, if it is any.
    std::map<std::string, Group> GroupsBy(CZQString SHeardCamera::*text) {
        std::map<std::string, Group> groups;
        for (Camera& camera : m_cameras) {
            Group& group = groups[(camera.heard.*text).str()];
            const bool isKnown = std::any_of(group.begin(), group.end(), [&](const Camera* other) {
                return other->heard.hardwareAddress == camera.heard.hardwareAddress;
            });
            if (!isKnown) {
                group.push_back(&camera);
            }
        }
        groups.erase("");
        std::erase_if(groups, [](const auto& entry) { return entry.second.size() < 2; });
        return groups;
    }

    // Where set-ip would refuse: it could be somebody else.
    void FlagWhatIsNotOne(const std::map<std::string, Group>& byId) {
        for (const auto& [id, group] : byId) {
            std::vector<std::string> places;
            for (Camera* const camera : group) {
                camera->Flag("shared identifier");
                camera->isOne = false;
                places.push_back(PlaceOf(camera->heard));
            }
            Advise(
                m_told.addresses,
                "{places} say that they are {id}: two cameras of one serial number, or one that answered for all. "
                "Disconnect all but one, and scan again",
                {{"places", Few(places)}, {"id", id}});
        }
        for (Camera& camera : m_cameras) {
            for (const SAddressConflict& conflict : m_conflicts) {
                if (conflict.hardwareAddress == camera.heard.hardwareAddress) {
                    camera.Flag("claimed twice");
                }
                camera.isOne = camera.isOne && conflict.hardwareAddress != camera.heard.hardwareAddress &&
                               conflict.ipAddress != camera.heard.ipAddress &&
                               conflict.otherIpAddress != camera.heard.ipAddress;
            }
        }
    }

    void FlagTwoCards() {
        std::map<std::string, std::size_t> counts;
        for (Camera& camera : m_cameras) {
            if (!camera.heard.otherCard.IsEmpty()) {
                camera.Flag("two cards");
                camera.isOne = false;
                ++counts[(camera.heard.card + " and " + camera.heard.otherCard).str()];
            }
        }
        for (const auto& [cards, count] : counts) {
            Advise(
                m_told.addresses,
                "Two network cards are in one network, {cards}: {count} heard on both. To give one another address, "
                "disconnect a card first",
                {{"cards", cards},
                 {"count", std::to_string(count) + (count == 1 ? " camera is" : " cameras are")}});
        }
    }

    void FlagTwins(const std::map<std::string, Group>& byAddress) {
        for (const auto& [address, all] : byAddress) {
            Group group = all;
            std::stable_partition(group.begin(), group.end(),
                                  [](const Camera* camera) { return !IsElsewhere(camera->heard); });
            if (AddressOf(group.front()->heard) == 0) {
                continue;
            }
            std::vector<std::string> names;
            bool isBound = true;
            bool isOneIdentifier = true;
            for (Camera* const camera : group) {
                camera->Flag("shared address");
                names.push_back(NameOf(camera->heard));
                isBound = isBound && !camera->heard.card.IsEmpty();
                isOneIdentifier = isOneIdentifier && camera->heard.deviceId == group.front()->heard.deviceId;
            }
            const Words words = {{"cameras", Few(names)}, {"address", address}};
            if (!isBound) {
                Advise(
                    m_told.addresses,
                    "{cameras} have one address, {address}. Each by itself is reached only through its own network "
                    "card:",
                    words, {BindCall()});
            } else if (!isOneIdentifier) {
                group.erase(group.begin());  // that one may keep it
                Propose(group, Filled("{cameras} have one address, {address}", m_kit, words));
            }
        }
    }

    void FlagElsewhere() {
        for (Camera& camera : m_cameras) {
            const SHeardCamera& heard = camera.heard;
            if (!IsElsewhere(heard)) {
                continue;
            }
            const bool hasAddress = AddressOf(heard) != 0;
            camera.Flag(hasAddress ? "another subnet" : "no address");
            if (!heard.deviceId.IsEmpty() && camera.setIp.empty()) {
                const Words words = {{"camera", NameOf(heard) + " at " + heard.ipAddress.str()},
                                     {"card", heard.card.str()}};
                Propose(
                    {&camera},
                    hasAddress
                        ? Filled("{camera} is in another subnet than its network card, {card}", m_kit, words)
                        : Filled("{camera} has no address yet; its network card is {card}", m_kit, words));
            }
        }
    }

    void Propose(const Group& cameras, const std::string& text) {
        Remark remark{text, {}};
        for (Camera* const camera : cameras) {
            const std::string id = camera->heard.deviceId.str();
            if (!id.empty() && camera->isOne) {
                camera->setIp =
                    m_kit.Command("set-ip " + Quoted(id, "ID") + " " + FreeAddress(camera->heard));
                AskToSave(id);
                remark.calls.push_back(camera->setIp);
            }
        }
        remark.text +=
            remark.calls.empty()
                ? Filled(". set-ip would refuse it as long as it can't be told from another", m_kit)
                : ":";
        m_told.addresses.push_back(remark);
    }

    // Once, before the first call that needs it.
    void AskToSave(const std::string& id) {
        if (!m_asksToSave && FindById(m_listed, id) == nullptr) {
            m_asksToSave = true;
            Advise(m_told.addresses,
                   "Save what was found first, for only a saved camera gets another address:", {},
                   {m_kit.Command("scan --merge")});
        }
    }

    // In the card's subnet, as near to the camera's own as can be; a word where there is none.
    std::string FreeAddress(const SHeardCamera& camera) {
        constexpr std::uint32_t kMostTried = 8192;
        const auto subnet = SubnetOf(camera.card);
        const std::uint32_t hosts = subnet ? ~subnet->mask : 0;
        for (std::uint32_t i = 0; i < std::min(hosts, kMostTried); ++i) {
            const std::uint32_t address = (subnet->card & subnet->mask) | ((AddressOf(camera) + i) & hosts);
            const bool isHosts = IsHostUnderMask(address, subnet->mask) && ClassMaskOf(address) != 0 &&
                                 IsHostUnderMask(address, ClassMaskOf(address));
            if (isHosts && m_taken.insert(address).second) {
                return FormatIpv4(address);
            }
        }
        return "ADDRESS";
    }

    // What the library left out on its side of a conflict.
    void AddSecondClaims() {
        for (const SAddressConflict& conflict : m_conflicts) {
            const auto first = std::find_if(m_cameras.begin(), m_cameras.end(), [&](const Camera& camera) {
                return camera.heard.hardwareAddress == conflict.hardwareAddress;
            });
            const bool isOtherKept =
                first != m_cameras.end() && first->heard.ipAddress == conflict.otherIpAddress;
            const CZQString& kept = isOtherKept ? conflict.otherIpAddress : conflict.ipAddress;
            Camera claim{
                {conflict.hardwareAddress, isOtherKept ? conflict.ipAddress : conflict.otherIpAddress}};
            claim.leftOut = "address claimed twice";
            claim.heard.detail = "the hardware address answers as " + kept + ", too";
            claim.Flag("claimed twice");
            Advise(
                m_told.leftOut,
                "{camera}: address claimed twice, for it answers as {address} too. Two cameras, or somebody claims "
                "to be one: disconnect whichever is not the camera",
                {{"camera", PlaceOf(claim.heard)}, {"address", kept.str()}});
            m_cameras.push_back(std::move(claim));
        }
    }

    void ExplainWhyLeftOut(Camera& camera) {
        const SHeardCamera& heard = camera.heard;
        if (!heard.deviceId.IsEmpty() || !camera.leftOut.empty()) {
            return;
        }
        const std::string detail = heard.detail.str();
        std::vector<Remark>& told = m_told.leftOut;
        const bool isOutside = heard.card.IsEmpty() && !m_binds && !IsInNetworkOfACard(heard.ipAddress.str());
        Words words = {{"camera", PlaceOf(heard)}, {"detail", detail}};
        if (heard.reason == EWhyLeftOut::kNotReachable ||
            (heard.reason == EWhyLeftOut::kSilent && isOutside)) {
            camera.leftOut = "not reachable from here";
            if (isOutside && (AddressOf(heard) == 0 || IsIpv4Unicast(AddressOf(heard)))) {
                Advise(
                    told,
                    "{camera}: not reachable from here, its address is in no network of this PC. To go through the "
                    "network card that hears it:",
                    words, {BindCall()});
            } else {
                Advise(told, "{camera}: not reachable from here, {detail}", words);
            }
        } else if (heard.reason == EWhyLeftOut::kSilent) {
            camera.leftOut = "silent";
            Advise(told, "{camera}: silent, it answers no command. Switch it off and on", words);
        } else if (heard.reason == EWhyLeftOut::kUnknownType) {
            camera.leftOut = "unknown type";
            words.emplace_back("folder", m_kit.CameraConfigFolder());
            Advise(
                told,
                "{camera}: unknown type \"{detail}\" without configuration file. Put its {detail}.ccf into "
                "{folder}",
                words);
        } else if (heard.reason == EWhyLeftOut::kNoTime) {
            camera.leftOut = "no time left";
            Advise(told,
                   "{camera}: not all its answers came in time. Scan again, or look for what slows it down",
                   words);
        } else {
            camera.leftOut = heard.reason == EWhyLeftOut::kBadText ? "bad text" : "failed";
            const int number = ReasonIn(heard.detail).number;
            told.push_back({PlaceOf(heard) + ": " + camera.leftOut + ", " + detail +
                            (number == 0 ? "" : std::string(" (") + device::Condition(number) + ")")});
        }
    }

    Json AllJson() const {
        Json json = Json::Array();
        for (const Camera& camera : m_cameras) {
            const SHeardCamera& heard = camera.heard;
            Json flags = Json::Array();
            for (const std::string& flag : camera.flags) {
                flags.Add(flag);
            }
            json.Add({{"hardwareAddress", heard.hardwareAddress.str()},
                      {"address", heard.ipAddress.str()},
                      {"card", OrNull(heard.card.str())},
                      {"otherCard", OrNull(heard.otherCard.str())},
                      {"device", OrNull(heard.deviceId.str())},
                      {"leftOut", OrNull(camera.leftOut)},
                      {"detail", OrNull(heard.detail.str())},
                      {"flags", flags},
                      {"setIp", OrNull(camera.setIp)}});
        }
        return json;
    }

    void Advise(std::vector<Remark>& remarks, std::string_view text, const Words& words,
                const std::vector<std::string>& calls = {}) const {
        remarks.push_back({Filled(text, m_kit, words), calls});
    }

    std::string BindCall() const { return m_kit.Command("config set BindToNetworkCard true"); }

    static std::string PlaceOf(const SHeardCamera& heard) {
        return heard.hardwareAddress.str() + " at " + heard.ipAddress.str() +
               (heard.card.IsEmpty() ? "" : " on " + heard.card.str());
    }

    static std::string NameOf(const SHeardCamera& heard) {
        return heard.deviceId.IsEmpty() ? heard.hardwareAddress.str()
                                        : heard.deviceId.str() + " (" + heard.hardwareAddress.str() + ")";
    }

    const Kit& m_kit;
    const std::vector<SAddressConflict>& m_conflicts;
    const std::vector<ZQDEVICEINFO>& m_listed;
    std::vector<Camera> m_cameras;
    std::set<std::uint32_t> m_taken;  // addresses that are somebody's
    const bool m_binds;  // cards that are not told are so because hosts were asked by their addresses
    HeardCameras m_told;
    bool m_asksToSave = false;
};

}  // namespace

HeardCameras ExplainCameras(const Kit& kit, const ScanNews& news, const std::vector<ZQDEVICEINFO>& listed) {
    return Cameras(kit, news, listed).Explain();
}

}  // namespace ZQAPI::zqdev
