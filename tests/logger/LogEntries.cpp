// log_entries FOLDER NAME COUNT: logs so many entries with the logger in the folder, from each of two threads.
#include <cstdlib>
#include <thread>

#include "foundation/ZQAPILogger.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        return 2;
    }
    ZQAPI::CZQAPILogger logger(argv[1]);
    const auto log = [&](char thread) {
        for (int i = 0; i < std::atoi(argv[3]); ++i) {
            logger.Log(0, ZQAPI::CZQException(ZQ_HERE("Main::Log"), ZQ_ERR_BAD_VALUE, "Entry=%s.%c.%d;",
                                              argv[2], thread, i));
        }
    };
    std::thread other(log, 'b');
    log('a');
    other.join();
    return 0;
}
