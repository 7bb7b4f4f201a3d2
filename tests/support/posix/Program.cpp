#include "support/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "platform/posix/Descriptor.h"
#include "support/FileBytes.h"

namespace ZQAPI::test {

int RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& out,
               const std::string& err, std::chrono::milliseconds limit) {
    std::vector<char*> words = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);

    posix_spawn_file_actions_t outputs;
    posix_spawn_file_actions_init(&outputs);
    posix_spawn_file_actions_addopen(&outputs, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&outputs, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t process = 0;
    const int error = posix_spawn(&process, program.c_str(), &outputs, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&outputs);
    if (error != 0) {
        WriteBytes(err, std::string("not started: ") + std::strerror(error));
        return -1;
    }
    const platform::Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
    pollfd end = {handle.Get(), POLLIN, 0};
    const bool hasEnded = poll(&end, 1, static_cast<int>(limit.count())) == 1;
    if (!hasEnded) {
        kill(process, SIGKILL);
    }
    int status = 0;
    waitpid(process, &status, 0);
    if (!hasEnded) {
        return kHadToBeEnded;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace ZQAPI::test
