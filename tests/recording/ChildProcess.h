#pragma once

// Runs the recording helper in a process of its own, so that a test can kill it mid-recording
// or give it resource limits without touching the test process.
#include <string>
#include <sys/types.h>
#include <vector>

namespace ostrel::recording_test {

class ChildProcess {
public:
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    // The next line of standard output without its newline; false at the end of output.
    bool readLine(std::string& line);
    void kill(int signal);
    // The wait status, as waitpid gives it.
    int wait();

private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffered_;
    bool waited_ = false;
    int status_ = 0;
};

} // namespace ostrel::recording_test
