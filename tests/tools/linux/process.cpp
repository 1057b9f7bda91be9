#include "tests/tools/process.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <system_error>
#include <unistd.h>

#include <sys/wait.h>

namespace captionfx {
namespace {

class SpawnActions {
public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    void Redirect(int descriptor, const std::filesystem::path& file) {
        posix_spawn_file_actions_addopen(&actions_, descriptor, file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    [[nodiscard]] const posix_spawn_file_actions_t* Get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

int Wait(pid_t process) {
    int status = 0;
    if (waitpid(process, &status, 0) != process) throw std::system_error(errno, std::generic_category(), "waitpid");
    return status;
}

}  // namespace

int ProcessResult::ErrorLines() const {
    return static_cast<int>(std::count(errors.begin(), errors.end(), '\n'));
}

pid_t StartTool(const ScratchFolder& scratch, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{CAPTIONFX_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), argv.begin(), [](std::string& word) { return word.data(); });

    SpawnActions actions;
    actions.Redirect(STDOUT_FILENO, scratch / "stdout.txt");
    actions.Redirect(STDERR_FILENO, scratch / "stderr.txt");
    pid_t process = 0;
    const int error = posix_spawn(&process, CAPTIONFX_TOOL, actions.Get(), nullptr, argv.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category(), CAPTIONFX_TOOL);
    return process;
}

ProcessResult RunTool(const ScratchFolder& scratch, const std::vector<std::string>& arguments) {
    const int status = Wait(StartTool(scratch, arguments));
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(scratch / "stdout.txt"),
            ReadAll(scratch / "stderr.txt")};
}

int EndingSignal(pid_t process) {
    const int status = Wait(process);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

}  // namespace captionfx
