#include "recording/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrel::recording_test {

ChildProcess::ChildProcess(const std::vector<std::string>& arguments)
{
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0) return;
    // Everything exec needs is prepared before fork: the child may only call async-safe code.
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
        dup2(pipeEnds[1], STDOUT_FILENO);
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(pipeEnds[1]);
    output_ = pipeEnds[0];
}

ChildProcess::~ChildProcess()
{
    if (pid_ > 0 && !waited_) {
        ::kill(pid_, SIGKILL);
        wait();
    }
    if (output_ >= 0) close(output_);
}

bool ChildProcess::readLine(std::string& line)
{
    for (;;) {
        if (const auto end = buffered_.find('\n'); end != std::string::npos) {
            line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            return true;
        }
        std::array<char, 256> chunk {};
        const ssize_t got = read(output_, chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        buffered_.append(chunk.data(), static_cast<std::size_t>(got));
    }
}

void ChildProcess::kill(int signal)
{
    if (pid_ > 0 && !waited_) ::kill(pid_, signal);
}

int ChildProcess::wait()
{
    if (pid_ <= 0) return -1;
    if (!waited_) {
        while (waitpid(pid_, &status_, 0) < 0 && errno == EINTR) { }
        waited_ = true;
    }
    return status_;
}

} // namespace ostrel::recording_test
