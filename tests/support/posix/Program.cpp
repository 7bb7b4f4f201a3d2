#include "support/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "support/FileBytes.h"

namespace ZQAPI::test {

int RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& out,
               const std::string& err) {
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
    int status = 0;
    if (error != 0 || waitpid(process, &status, 0) != process) {
        WriteBytes(err, std::string("not started: ") + std::strerror(error));
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace ZQAPI::test
