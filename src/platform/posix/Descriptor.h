#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// A file descriptor, closed with the object and not inherited by programs that this one starts.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int value) noexcept : m_value(value) {}
    Descriptor(const std::string& path, int flags) noexcept
        : m_value(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {
    }  // NOLINT(cppcoreguidelines-pro-type-vararg)
    Descriptor(const Descriptor& folder, const std::string& name, int flags) noexcept
        : m_value(::openat(folder.m_value, name.c_str(), flags | O_CLOEXEC, 0666)) {
    }  // NOLINT(cppcoreguidelines-pro-type-vararg)
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : m_value(std::exchange(other.m_value, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Descriptor() { Close(); }

    bool IsOpen() const noexcept { return m_value >= 0; }
    int Get() const noexcept { return m_value; }
    // The caller's from now on.
    int Release() noexcept { return std::exchange(m_value, -1); }
    // False when the system reports only now that something written was lost.
    bool Close() noexcept { return m_value < 0 || ::close(Release()) == 0; }

    // The whole content, in as many steps as it takes.
    bool WriteAll(std::string_view content, SystemErrorCode& error) const noexcept {
        while (!content.empty()) {
            const ssize_t count = ::write(m_value, content.data(), content.size());
            if (count >= 0) {
                content.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno != EINTR) {
                return Check(false, error);
            }
        }
        return Check(true, error);
    }

private:
    int m_value = -1;
};

}  // namespace ZQAPI::platform
