// zqcamsim: simulated network and serial cameras from the command line.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Options.h"
#include "ZQSimSerialServer.h"
#include "ZQSimUdpServer.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"

namespace ZQAPI::sim {

namespace {

// Serial cameras have numbers of their own, behind those of any number of network cameras.
constexpr std::uint64_t kFirstSerialCamera = kFirstHardwareAddress + 0x10000;

// Set by a signal, or by the end of standard input.
std::atomic<bool> g_stop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

// Links COM1, COM2, ... in a folder to the ports of serial cameras; taken away with the object. A link that was left
// behind, whose port is gone or is the new one, is replaced; any other name that is taken is an error and stays.
class PortLinks {
public:
    explicit PortLinks(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    PortLinks(const PortLinks&) = delete;
    PortLinks& operator=(const PortLinks&) = delete;
    ~PortLinks() {
        for (const auto& link : m_links) {
            std::error_code ignored;
            std::filesystem::remove(link, ignored);
        }
    }

    // The link's name, empty when there is no folder to link in.
    std::string Add(const std::string& port) {
        if (m_folder.empty()) {
            return {};
        }
        std::string name = "COM" + std::to_string(m_links.size() + 1);
        const std::filesystem::path link = m_folder / name;
        if (IsLeftBehind(link, port)) {
            std::filesystem::remove(link);
        }
        std::error_code error;
        std::filesystem::create_symlink(port, link, error);
        if (error) {
            throw std::runtime_error("can't make the link " + link.string() + " (" + error.message() +
                                     "); another zqcamsim may have it: give each a folder of its own");
        }
        m_links.push_back(link);
        return name;
    }

private:
    static bool IsLeftBehind(const std::filesystem::path& link, const std::string& port) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(link, error);
        return !error && (target == port || !std::filesystem::exists(link, error));
    }

    std::filesystem::path m_folder;
    std::vector<std::filesystem::path> m_links;
};

// All cameras: those on the network, then those on serial ports.
class Cameras {
public:
    explicit Cameras(const Options& options) : m_links(options.portFolder) {
        if (options.count > 0) {
            const std::uint64_t first = options.firstHardwareAddress.empty()
                                            ? kFirstHardwareAddress
                                            : std::stoull(options.firstHardwareAddress, nullptr, 16);
            m_onNetwork = MakeCameras(options.count, ParseIpv4(options.firstAddress).value(),
                                      ParseIpv4(options.mask).value(), options.deviceType, first);
            m_network.emplace(m_onNetwork, options.settings);
        }
        if (options.nofSerial > 0) {
            m_onLines = MakeCameras(options.nofSerial, 0, 0, kSerialCameraType, kFirstSerialCamera);
            m_serial.emplace(m_onLines, options.settings.seed);
        }
    }

    // To the cameras that the options name, counted from 1, or to all.
    void SetFaults(const Options& options) {
        for (std::size_t i = 0; i < m_onNetwork.size() + m_onLines.size(); ++i) {
            const auto& only = options.onlyCameras;
            if (!only.empty() && std::find(only.begin(), only.end(), i + 1) == only.end()) {
                continue;
            }
            if (i < m_onNetwork.size()) {
                m_network->SetFaults(i, options.faults);
            } else {
                m_serial->SetFaults(i - m_onNetwork.size(), options.faults.command);
            }
        }
    }

    void Print() {
        for (const CZQSimCamera& camera : m_onNetwork) {
            PrintCamera(camera, FormatIpv4(camera.GetAddress()));
        }
        for (std::size_t i = 0; i < m_onLines.size(); ++i) {
            const std::string port = m_serial->GetPort(i);
            std::string where = m_links.Add(port);
            where.append(where.empty() ? "" : " ").append(port);
            PrintCamera(m_onLines[i], where);
        }
        std::puts("ready");
        std::fflush(stdout);
    }

private:
    static void PrintCamera(const CZQSimCamera& camera, const std::string& where) {
        const CZQSimIdentity& identity = camera.GetIdentity();
        std::printf("%s  %-15s  %-12s  %s  firmware %s\n", identity.hardwareAddress.c_str(), where.c_str(),
                    identity.deviceType.c_str(), identity.serialNumber.c_str(),
                    identity.firmwareVersion.c_str());
    }

    PortLinks m_links;
    std::vector<CZQSimCamera> m_onNetwork;
    std::vector<CZQSimCamera> m_onLines;
    std::optional<CZQSimUdpServer> m_network;
    std::optional<CZQSimSerialServer> m_serial;
};

void WaitForTheEnd(const Options& options) {
    if (options.untilEof) {
        std::thread([] {
            while (std::getchar() != EOF) {
            }
            g_stop = true;
        }).detach();
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(options.runForSeconds);
    while (!g_stop && (options.runForSeconds <= 0 || std::chrono::steady_clock::now() < end)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void Simulate(Options& options) {
    options.settings.onTrouble = [](const std::string& text) {
        std::fprintf(stderr, "zqcamsim: %s\n", text.c_str());
    };
    Cameras cameras(options);
    cameras.SetFaults(options);
    cameras.Print();
    WaitForTheEnd(options);
}

int RunTool(int argc, char** argv) {
    tools::CommandLine line(
        "Simulated cameras: on the network they answer discovery and commands over UDP, each from its own "
        "address; on serial ports they answer commands, each on a pseudo-terminal. Until SIGINT or SIGTERM; "
        "\"ready\" on standard output says that they do.\n\n"
        "  zqcamsim --count 3                      three cameras on 127.0.0.11 and up\n"
        "  zqcamsim --count 64 --first-address 10.0.0.1 --interface dummy0\n"
        "  zqcamsim --count 8 --loss 0.05 --latency 1 20 --seed 7\n"
        "                                          a bad network, the same in each run\n"
        "  zqcamsim --count 0 --serial 2 --com-ports /tmp/ports\n"
        "                                          two cameras on serial ports",
        "zqcamsim");
    Options options;
    line.AddVersionFlag("zqcamsim " ZQCAMSIM_VERSION);
    AddOptions(line, options);
    try {
        if (!line.Read(argc, argv)) {
            return 0;
        }
    } catch (const tools::WrongUsage& error) {
        std::fprintf(stderr, "%s\nRun with --help for more information.\n", error.what());
        return 2;
    }
    const std::string problem = CompleteOptions(options);
    if (!problem.empty()) {
        std::fprintf(stderr, "zqcamsim: %s\n", problem.c_str());
        return 2;
    }

    std::signal(SIGINT, [](int) { g_stop = true; });
    std::signal(SIGTERM, [](int) { g_stop = true; });
    try {
        Simulate(options);
        return 0;
    } catch (const CZQException& exception) {
        std::fprintf(stderr, "zqcamsim: %s\n", exception.GetExtraText().c_str());
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "zqcamsim: %s\n", exception.what());
    }
    return 1;
}

}  // namespace

}  // namespace ZQAPI::sim

int main(int argc, char** argv) {
    return ZQAPI::sim::RunTool(argc, argv);
}
