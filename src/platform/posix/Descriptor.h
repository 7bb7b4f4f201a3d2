#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace ZQAPI::platform {

// A file descriptor, closed with the object and not inherited by programs that this one starts.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int value) noexcept : m_value(value) {}
    Descriptor(const std::string& path, int flags) noexcept
        : m_value(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {
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

private:
    int m_value = -1;
};

}  // namespace ZQAPI::platform
