#include "tools/platform/DebugCapture.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Process.h"
#include "platform/posix/Descriptor.h"

namespace ZQAPI::platform {

namespace {

struct Pipe {
    Descriptor read;
    Descriptor write;
};

bool TakeEnds(bool opened, const std::array<int, 2>& ends, Pipe& pipe) {
    if (opened) {
        pipe.read = Descriptor(ends[0]);
        pipe.write = Descriptor(ends[1]);
    }
    return opened;
}

bool OpenPipe(Pipe& pipe) {
    std::array<int, 2> ends{};
    return TakeEnds(::pipe2(ends.data(), O_CLOEXEC) == 0, ends, pipe);
}

// A pipe that keeps apart what was written apart. It has no end of file.
bool OpenMessagePipe(Pipe& pipe) {
    std::array<int, 2> ends{};
    return TakeEnds(::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data()) == 0, ends, pipe);
}

// More than a socket takes at once, unless the machine's settings were raised.
constexpr std::size_t kLongestWrite = std::size_t{256} << 10;

constexpr const char* kOff = "0";

// Puts what was written together to lines.
class LineSplitter {
public:
    explicit LineSplitter(DebugCapture::LineCallback onLine) : m_onLine(std::move(onLine)) {}

    // What one call wrote.
    void Add(std::string_view written) {
        bool isFirst = m_pending.empty() || m_pendingIsFirst;
        m_pending += written;
        std::size_t start = 0;
        for (std::size_t end = 0; (end = m_pending.find('\n', start)) != std::string::npos; start = end + 1) {
            HandOver(std::string_view(m_pending).substr(start, end - start), std::exchange(isFirst, false));
        }
        m_pending.erase(0, start);
        m_pendingIsFirst = isFirst;
    }
    void Finish() {
        HandOver(m_pending, m_pendingIsFirst);
        m_pending.clear();
    }

private:
    void HandOver(std::string_view line, bool isFirst) {
        if (!line.empty()) {
            m_onLine(line, isFirst);
        }
    }

    DebugCapture::LineCallback m_onLine;
    std::string m_pending;
    bool m_pendingIsFirst = false;
};

}  // namespace

// Standard error (descriptor 2) is the writing end of `output` while this lives; `reader` takes the lines off
// its other end until `stop` is readable and nothing is left.
struct DebugCapture::State {
    explicit State(LineCallback onLine) : lines(std::move(onLine)) {
        std::string value;
        if (GetEnvironmentText(kDebugVariable, value)) {
            formerSwitch = value;
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        SystemErrorCode ignored = 0;
        SetEnvironmentText(kDebugVariable, formerSwitch, ignored);
        if (realStream != nullptr) {
            ::dup2(::fileno(realStream), STDERR_FILENO);
        }
        stop.write = Descriptor();
        if (reader.joinable()) {
            reader.join();
        }
        if (realStream != nullptr) {
            std::fclose(realStream);
        }
    }

    bool Start();
    void Read();

    LineSplitter lines;
    std::string formerSwitch{kOff};
    std::FILE* realStream = nullptr;
    Pipe output;
    Pipe stop;
    std::thread reader;
};

bool DebugCapture::State::Start() {
    Descriptor real(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3));
    if (!real.IsOpen() || !OpenMessagePipe(output) || !OpenPipe(stop) ||
        ::fcntl(output.read.Get(), F_SETFL, O_NONBLOCK) != 0) {
        return false;
    }
    realStream = ::fdopen(real.Get(), "w");
    if (realStream == nullptr) {
        return false;
    }
    real.Release();
    std::setvbuf(realStream, nullptr, _IONBF, 0);
    if (::dup2(output.write.Get(), STDERR_FILENO) < 0) {
        return false;
    }
    output.write = Descriptor();
    reader = std::thread([this] { Read(); });
    return true;
}

void DebugCapture::State::Read() {
    std::vector<char> buffer(kLongestWrite);
    std::array<pollfd, 2> sources{{{output.read.Get(), POLLIN, 0}, {stop.read.Get(), POLLIN, 0}}};
    for (bool stopping = false; !stopping;) {
        if (::poll(sources.data(), sources.size(), -1) < 0 && errno != EINTR) {
            break;
        }
        stopping = sources[1].revents != 0;
        ssize_t count = 0;
        while ((count = ::read(output.read.Get(), buffer.data(), buffer.size())) >= 0) {
            lines.Add({buffer.data(), static_cast<std::size_t>(count)});
        }
    }
    lines.Finish();
}

DebugCapture::DebugCapture(std::unique_ptr<State> state) : m_state(std::move(state)) {}
DebugCapture::~DebugCapture() = default;

std::unique_ptr<DebugCapture> DebugCapture::Start(LineCallback onLine, SystemErrorCode& error) {
    auto state = std::make_unique<State>(std::move(onLine));
    if (!SetEnvironmentText(kDebugVariable, kDebugForPrograms, error) || !Check(state->Start(), error)) {
        return nullptr;
    }
    return std::unique_ptr<DebugCapture>(new DebugCapture(std::move(state)));
}

std::FILE* DebugCapture::StandardError() const noexcept {
    return m_state->realStream;
}

}  // namespace ZQAPI::platform
