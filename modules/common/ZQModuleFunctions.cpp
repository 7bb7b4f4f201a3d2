// A command module's three functions: they check, find the connection, call it and turn
// exceptions into numbers.
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>

#include "ZQAPI/ZQCommandModule.h"
#include "ZQCommandConnection.h"
#include "foundation/ZQException.h"
#include "foundation/ZQNoDestructor.h"

namespace ZQAPI {

namespace {

// The open connections. A connection that is in use lives on until that use is over. Thread-safe.
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
            ZQ_THROW("Connections::Find", ZQ_ERR_CONNECTION_NOT_OPEN);
        }
        return found->second;
    }

    std::shared_ptr<CZQCommandConnection> Remove(ZQCCM_HANDLE handle) {
        const std::lock_guard lock(m_mutex);
        auto removed = m_connections.extract(handle);
        if (removed.empty()) {
            ZQ_THROW("Connections::Remove", ZQ_ERR_CONNECTION_NOT_OPEN);
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

void RequireInput(const void* input) {
    if (input == nullptr) {
        ZQ_THROW("RequireInput", ZQ_ERR_NULL_INPUT);
    }
}

void RequireOutput(const void* output) {
    if (output == nullptr) {
        ZQ_THROW("RequireOutput", ZQ_ERR_NULL_OUTPUT);
    }
}

// A module takes one line at a time: what follows a line feed would be a command of its own to the camera.
void RequireOneLine(std::string_view command) {
    if (command.size() < 2 || command.find('\n') != command.size() - 1) {
        ZQ_THROW("RequireOneLine", ZQ_ERR_BAD_VALUE,
                 "The command is not one line with a line feed at its end");
    }
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
        ZQAPI::RequireInput(parameter);  // used by no module of the kit
        ZQAPI::RequireInput(address);
        ZQAPI::RequireOutput(handle);
        *handle = ZQAPI::OpenConnections().Add(ZQAPI::OpenCommandConnection(address));
    });
}

std::int32_t ZQCCM_CloseCCM(ZQCCM_HANDLE handle) {
    return ZQAPI::ResultOf([&] { ZQAPI::OpenConnections().Remove(handle)->Abort(); });
}

std::int32_t ZQCCM_SendCmd(ZQCCM_HANDLE handle, const char* command, char* answer, std::uint32_t answerSize) {
    return ZQAPI::ResultOf([&] {
        ZQAPI::RequireInput(command);
        ZQAPI::RequireOutput(answer);
        if (answerSize > 0) {
            *answer = '\0';
        }
        const auto connection = ZQAPI::OpenConnections().Find(handle);
        ZQAPI::RequireOneLine(command);
        const std::string text = connection->SendCommand(command);
        if (text.size() >= answerSize) {
            ZQ_THROW("ZQCCM_SendCmd", ZQ_ERR_BUFFER_TOO_SMALL, "NeededBytes=%zu, BufferSize=%u",
                     text.size() + 1, answerSize);
        }
        std::memcpy(answer, text.c_str(), text.size() + 1);
    });
}
