// Cameras at 127.1.0.1 and upwards for bench_scan, which times the scan and not them: one socket for all of them per
// port, and a time that does not depend on how many there are. Linux alone.
//   camera_farm CAMERAS LATENCY-MS DISCOVERY-LATENCY-MS LOSS     until its standard input ends; says "ready"
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ZQSimCamera.h"

namespace ZQAPI::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t kFirstAddress = 0x7F010001;
constexpr std::uint32_t kMask = 0xFF000000;
constexpr std::uint16_t kDiscoveryPort = 19380;
constexpr std::uint16_t kCommandPort = 19383;
constexpr std::size_t kAddressFieldLength = 12;
// Answers to discovery that are sent before commands are looked for again.
constexpr int kPortion = 16;

struct Datagram {
    std::string text;
    sockaddr_in peer{};
    in_addr own{};  // the address that it came to or comes from
};

// One port on all addresses.
class Port {
public:
    explicit Port(std::uint16_t port) : m_socket(socket(AF_INET, SOCK_DGRAM, 0)) {
        constexpr int kOn = 1;
        constexpr int kRoom = 16 << 20;
        sockaddr_in any{};
        any.sin_family = AF_INET;
        any.sin_port = htons(port);
        setsockopt(m_socket, SOL_SOCKET, SO_RCVBUFFORCE, &kRoom, sizeof kRoom);
        if (setsockopt(m_socket, IPPROTO_IP, IP_PKTINFO, &kOn, sizeof kOn) != 0 ||
            bind(m_socket, reinterpret_cast<const sockaddr*>(&any), sizeof any) != 0) {
            throw std::runtime_error("no port " + std::to_string(port));
        }
    }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    ~Port() { close(m_socket); }

    int Socket() const { return m_socket; }

    std::optional<Datagram> Receive() {
        std::array<char, 512> text{};
        Datagram datagram;
        Message message(datagram, text.data(), text.size());
        const ssize_t size = recvmsg(m_socket, &message.header, MSG_DONTWAIT);
        if (size < 0) {
            return std::nullopt;
        }
        datagram.text.assign(text.data(), static_cast<std::size_t>(size));
        datagram.own = message.Info().ipi_addr;
        return datagram;
    }

    void Send(Datagram& datagram) {
        Message message(datagram, datagram.text.data(), datagram.text.size());
        message.Info().ipi_spec_dst = datagram.own;
        sendmsg(m_socket, &message.header, 0);
    }

private:
    struct Message {
        Message(Datagram& datagram, char* text, std::size_t size) : part{text, size} {
            header.msg_name = &datagram.peer;
            header.msg_namelen = sizeof datagram.peer;
            header.msg_iov = &part;
            header.msg_iovlen = 1;
            header.msg_control = control.data();
            header.msg_controllen = control.size();
            cmsghdr* const info = CMSG_FIRSTHDR(&header);
            info->cmsg_level = IPPROTO_IP;
            info->cmsg_type = IP_PKTINFO;
            info->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
        }
        in_pktinfo& Info() { return *reinterpret_cast<in_pktinfo*>(CMSG_DATA(CMSG_FIRSTHDR(&header))); }

        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> control{};
        iovec part;
        msghdr header{};
    };

    const int m_socket;
};

class Farm {
public:
    Farm(std::size_t cameras, milliseconds latency, milliseconds discoveryLatency, double loss)
        : m_cameras(sim::MakeCameras(cameras, kFirstAddress, kMask)),
          m_latency(latency),
          m_discoveryLatency(discoveryLatency),
          m_loss(loss) {}

    void Run() {
        for (bool isEnd = false; !isEnd;) {
            while (auto command = m_commandPort.Receive()) {
                Hear(*command, ntohl(command->own.s_addr) - kFirstAddress, m_latency, m_commands);
            }
            while (auto request = m_discoveryPort.Receive()) {
                for (std::size_t i = 0; i < m_cameras.size(); ++i) {
                    Hear(*request, i, m_discoveryLatency, m_discoveries);
                }
            }
            while (!m_commands.empty() && m_commands.front().due <= Clock::now()) {
                SendNext(m_commandPort, m_commands);
            }
            for (int i = 0;
                 i < kPortion && !m_discoveries.empty() && m_discoveries.front().due <= Clock::now(); ++i) {
                SendNext(m_discoveryPort, m_discoveries);
            }
            isEnd = Wait();
        }
    }

private:
    struct Answer {
        Clock::time_point due;
        Datagram datagram;
    };
    using Answers = std::deque<Answer>;  // in the order in which they are due

    void Hear(const Datagram& request, std::size_t index, milliseconds latency, Answers& answers) {
        if (index >= m_cameras.size() || request.text.size() < kAddressFieldLength + 2 || IsLost() ||
            IsLost()) {
            return;
        }
        sim::CZQSimCamera& camera = m_cameras[index];
        Datagram answer = request;
        answer.own.s_addr = htonl(camera.GetAddress());
        answer.text.pop_back();
        answer.text = camera.GetIdentity().hardwareAddress + ":" +
                      camera.Execute(std::string_view(answer.text).substr(kAddressFieldLength + 1)) + "\n";
        answers.push_back({Clock::now() + latency, std::move(answer)});
    }

    // A request or an answer.
    bool IsLost() { return std::bernoulli_distribution(m_loss)(m_random); }

    static void SendNext(Port& port, Answers& answers) {
        port.Send(answers.front().datagram);
        answers.pop_front();
    }

    // True at the end of the input.
    bool Wait() {
        auto wait = Clock::duration(milliseconds(1000));
        for (const Answers* const answers : {&m_commands, &m_discoveries}) {
            if (!answers->empty()) {
                wait = std::clamp(answers->front().due - Clock::now(), Clock::duration::zero(), wait);
            }
        }
        pollfd entries[] = {{m_commandPort.Socket(), POLLIN, 0},
                            {m_discoveryPort.Socket(), POLLIN, 0},
                            {STDIN_FILENO, POLLIN, 0}};
        const timespec limit{wait / std::chrono::seconds(1), (wait % std::chrono::seconds(1)).count()};
        ppoll(entries, std::size(entries), &limit, nullptr);
        return entries[2].revents != 0;
    }

    std::vector<sim::CZQSimCamera> m_cameras;
    const milliseconds m_latency;
    const milliseconds m_discoveryLatency;
    const double m_loss;
    std::mt19937 m_random{std::random_device()()};
    Port m_commandPort{kCommandPort};
    Port m_discoveryPort{kDiscoveryPort};
    Answers m_commands;
    Answers m_discoveries;
};

}  // namespace
}  // namespace ZQAPI::bench

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "camera_farm CAMERAS LATENCY-MS DISCOVERY-LATENCY-MS LOSS\n");
        return 2;
    }
    ZQAPI::bench::Farm farm(std::stoul(argv[1]), std::chrono::milliseconds(std::stoi(argv[2])),
                            std::chrono::milliseconds(std::stoi(argv[3])), std::stod(argv[4]));
    std::puts("ready");
    std::fflush(stdout);
    farm.Run();
    return 0;
}
