#include "support/ScarceResources.h"

#include <pthread.h>

#include <filesystem>
#include <iterator>
#include <vector>

namespace ZQAPI::test {

std::size_t FreeThreadLocalIndices() {
    std::vector<pthread_key_t> taken;
    for (pthread_key_t key = 0; pthread_key_create(&key, nullptr) == 0;) {
        taken.push_back(key);
    }
    for (const pthread_key_t key : taken) {
        pthread_key_delete(key);
    }
    return taken.size();
}

std::size_t OpenHandles() {
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

}  // namespace ZQAPI::test
