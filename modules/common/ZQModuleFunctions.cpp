// A command module's three functions: they check, find the connection, call it and turn exceptions into numbers.
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "ZQAPI/ZQCommandModule.h"
#include "ZQCommandConnection.h"
#include "foundation/ZQNoDestructor.h"

namespace ZQAPI {

namespace {

// The open connections, for the three functions, in whose names they throw. A connection that is in use lives on until
// that use is over. Thread-safe.
class Connections {
public:
    ZQCCM_HANDLE Add(std::shared_ptr<CZQCommandConnection> connection) {
        const std::lock_guard lock(m_mutex);
        m_connections.emplace(++m_lastHandle, std::move(connection));
        return m_lastHandle;
    }

    std::shared_ptr<CZQCommandConnection> Find(ZQCCM_HANDLE handle) const {
        const std::lock_guard lock(m_mutex);
        const auto found = m_connections.find(handle);
        if (found == m_connections.end()) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_CONNECTION_NOT_OPEN);
        }
        return found->second;
    }

    std::shared_ptr<CZQCommandConnection> Remove(ZQCCM_HANDLE handle) {
        const std::lock_guard lock(m_mutex);
        auto removed = m_connections.extract(handle);
        if (removed.empty()) {
            ZQ_THROW("ZQCCM_CloseCCM", ZQ_ERR_CONNECTION_NOT_OPEN);
        }
        return std::move(removed.mapped());
    }

private:
    mutable std::mutex m_mutex;
    std::map<ZQCCM_HANDLE, std::shared_ptr<CZQCommandConnection>> m_connections;  // empty, it owns nothing
    ZQCCM_HANDLE m_lastHandle = 0;
};

Connections& OpenConnections() {
    // Never destroyed: a connection that nobody closed must not give back sockets and ports while the module
    // is unloaded, under the loader's lock.
    static CZQNoDestructor<Connections> connections;
    return connections.Get();
}

// No exception leaves the module: each becomes its number.
template <class Body>
std::int32_t ResultOf(Body&& body) noexcept {
    try {
        body();
        return ZQ_OK;
    } catch (const CZQException& exception) {
        return exception.GetErrorNumber();
    } catch (const std::bad_alloc&) {
        return ZQ_ERR_OUT_OF_MEMORY;
    } catch (...) {
        return ZQ_ERR_UNEXPECTED;
    }
}

}  // namespace

}  // namespace ZQAPI

std::int32_t ZQCCM_OpenCCM(const char* parameter, const char* address, ZQCCM_HANDLE* handle) {
    return ZQAPI::ResultOf([&] {
        if (parameter == nullptr || address == nullptr) {
            ZQ_THROW("ZQCCM_OpenCCM", ZQ_ERR_NULL_INPUT);
        }
        if (handle == nullptr) {
            ZQ_THROW("ZQCCM_OpenCCM", ZQ_ERR_NULL_OUTPUT);
        }
        // No module of the kit uses the parameter.
        *handle = ZQAPI::OpenConnections().Add(ZQAPI::OpenCommandConnection(address));
    });
}

std::int32_t ZQCCM_CloseCCM(ZQCCM_HANDLE handle) {
    return ZQAPI::ResultOf([&] { ZQAPI::OpenConnections().Remove(handle)->Abort(); });
}

std::int32_t ZQCCM_SendCmd(ZQCCM_HANDLE handle, const char* command, char* answer, std::uint32_t answerSize) {
    return ZQAPI::ResultOf([&] {
        if (answer != nullptr && answerSize > 0) {
            *answer = '\0';
        }
        if (command == nullptr) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_NULL_INPUT);
        }
        if (answer == nullptr) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_NULL_OUTPUT);
        }
        const auto connection = ZQAPI::OpenConnections().Find(handle);
        // What follows a line feed would be a command of its own to the camera.
        const std::string_view line(command);
        if (line.size() < 2 || line.find('\n') != line.size() - 1) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_BAD_VALUE,
                     "The command is not one line with a line feed at its end");
        }
        const std::string text = connection->SendCommand(line);
        if (text.size() >= answerSize) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_BUFFER_TOO_SMALL, "NeededBytes=%zu, BufferSize=%u",
                     text.size() + 1, answerSize);
        }
        std::memcpy(answer, text.c_str(), text.size() + 1);
    });
}
